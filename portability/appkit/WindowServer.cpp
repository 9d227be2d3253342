#include "appkit/WindowServer.h"

#include <dlfcn.h>
#include <poll.h>

#include <cstdlib>

namespace portability {

namespace {

using LossHandler = int(void* display);

LossHandler* previousHandler = nullptr;
void* watchedDisplay = nullptr;
void (*watchedHandler)() = nullptr;

int onLoss(void* display) {
    if (display == watchedDisplay) watchedHandler();
    return previousHandler != nullptr ? previousHandler(display) : 0;
}

bool environmentNamesServer() {
    const char* display = std::getenv("DISPLAY");
    return display != nullptr && *display != '\0';
}

}  // namespace

WindowLibrary::WindowLibrary() : handle_(dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL)) {}

WindowLibrary::~WindowLibrary() {
    if (handle_ != nullptr) dlclose(handle_);
}

void* WindowLibrary::find(const char* name) const {
    return handle_ != nullptr ? dlsym(handle_, name) : nullptr;
}

WindowServer::WindowServer() {
    if (!environmentNamesServer()) return;
    const auto open = library_.function<void*(const char*)>("XOpenDisplay");
    if (open != nullptr) display_ = open(nullptr);
}

WindowServer::~WindowServer() {
    if (display_ != nullptr) library_.function<int(void*)>("XCloseDisplay")(display_);
}

bool isConnected(void* display) {
    const WindowLibrary library;
    const auto descriptorOf = library.function<int(void*)>("XConnectionNumber");
    if (descriptorOf == nullptr) return false;
    // What the server sent before its end may still be there to be read, so reading would not tell.
    pollfd state = {descriptorOf(display), POLLRDHUP, 0};
    return poll(&state, 1, 0) == 0;
}

void setLossHandler(void* display, void (*handler)()) {
    const WindowLibrary library;
    const auto setHandler = library.function<LossHandler*(LossHandler*)>("XSetIOErrorHandler");
    if (setHandler == nullptr) return;
    watchedDisplay = display;
    watchedHandler = handler;
    LossHandler* const previous = setHandler(onLoss);
    if (previous != onLoss) previousHandler = previous;
}

}  // namespace portability
