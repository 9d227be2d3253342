#include "tasks/WindowSystem.h"

#include <dlfcn.h>

#include <cstdlib>

namespace portability {

bool windowSystemAnswers() {
    const char* display = std::getenv("DISPLAY");
    if (display == nullptr || *display == '\0') return false;
    // Opened at run time, so that a process without windows never has the library in memory.
    void* library = dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return false;
    const auto open = reinterpret_cast<void* (*)(const char*)>(dlsym(library, "XOpenDisplay"));
    const auto close = reinterpret_cast<int (*)(void*)>(dlsym(library, "XCloseDisplay"));
    void* connection = open != nullptr && close != nullptr ? open(nullptr) : nullptr;
    if (connection != nullptr) close(connection);
    dlclose(library);
    return connection != nullptr;
}

}  // namespace portability
