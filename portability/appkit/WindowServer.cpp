#include "appkit/WindowServer.h"

#include <dlfcn.h>
#include <poll.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

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

void takeCloseRequests(void* display, unsigned long window) {
    using Atom = unsigned long;
    const WindowLibrary library;
    const auto atomOf = library.function<Atom(void*, const char*, int)>("XInternAtom");
    const auto protocolsOf = library.function<int(void*, Atom, Atom**, int*)>("XGetWMProtocols");
    const auto setProtocols = library.function<int(void*, Atom, Atom*, int)>("XSetWMProtocols");
    const auto free = library.function<int(void*)>("XFree");
    if (!atomOf || !protocolsOf || !setProtocols || !free) return;
    Atom* known = nullptr;
    int count = 0;
    if (protocolsOf(display, window, &known, &count) == 0) count = 0;
    std::vector<Atom> protocols(known, known + count);
    if (known != nullptr) free(known);
    const Atom closing = atomOf(display, "WM_DELETE_WINDOW", 0);
    if (std::find(protocols.begin(), protocols.end(), closing) != protocols.end()) return;
    protocols.push_back(closing);
    setProtocols(display, window, protocols.data(), static_cast<int>(protocols.size()));
}

}  // namespace portability
