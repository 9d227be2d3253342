#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSDisplayServer.h>
#include <dlfcn.h>

#include "appkit/AlertClosing.h"
#include "appkit/HostState.h"
#include "appkit/ReadableHostTexts.h"
#include "appkit/WindowServer.h"
#include "tasks/MainThread.h"

namespace {

enum class State { notLoaded, loaded, unusable };

/// Null when the library is not installed. It stays in the process for good, as every library with classes.
void* openWindowLibrary() { return dlopen(PORTABILITY_WINDOW_LIBRARY, RTLD_NOW | RTLD_LOCAL); }

// No object of C++ lives in a function with @try: their exceptions do not mix everywhere.
BOOL makeApplication() {
    BOOL made = NO;
    @try {
        // A host's alert has no icon of its own on the desktop.
        [[NSUserDefaults standardUserDefaults]
            registerDefaults:[NSDictionary dictionaryWithObject:@"YES" forKey:@"GSSuppressAppIcon"]];
        id application = [NSClassFromString(@"NSApplication") sharedApplication];
        made = application != nil && [[NSClassFromString(@"NSScreen") screens] count] > 0;
        // Without it no key reaches a panel.
        if (made) [application finishLaunching];
    } @catch (...) {
        made = NO;
    }
    return made;
}

/// The window classes' function that tells their connection; null when there is none.
auto currentServerIn(void* library) {
    return reinterpret_cast<GSDisplayServer* (*)()>(dlsym(library, "GSCurrentServer"));
}

/// The connection of the window classes to the X server; null when it cannot be told.
void* displayOf(void* library) {
    const auto currentServer = currentServerIn(library);
    return currentServer != nullptr ? [currentServer() serverDevice] : nullptr;
}

// The exception is caught where the alert is run.
void leaveAlert() {
    [NSException raise:NSGenericException format:@"The connection to the window system is lost."];
}

class Application {
   public:
    /// Makes the application object at the first call that finds a window system. False, for good, once that
    /// has gone.
    bool load() {
        if (state_ == State::notLoaded) make();
        if (state_ == State::loaded) check();
        return state_ == State::loaded;
    }

   private:
    void make() {
        portability::makeHostTextsReadable();
        // The window classes cannot be tried again once they have missed the server.
        const portability::WindowServer server;
        if (!server.answers()) return;
        const portability::HostSignals signals;
        const portability::HostLocale locale;
        const portability::HostTexts texts;
        library_ = openWindowLibrary();
        if (library_ == nullptr) return;
        portability::keepWindowClassesAlone();
        portability::letAlertsBeClosed(currentServerIn(library_));
        state_ = makeApplication() ? State::loaded : State::unusable;
    }

    void check() {
        void* const display = displayOf(library_);
        if (display == nullptr) return;
        portability::setLossHandler(display, leaveAlert);
        if (!portability::isConnected(display)) state_ = State::unusable;
    }

    State state_ = State::notLoaded;
    void* library_ = nullptr;
};

}  // namespace

BOOL NSApplicationLoad(void) {
    // An application off the main thread would be of no use. So there is but one thread here.
    if (!portability::isMainThread()) return NO;
    static Application application;
    return application.load() ? YES : NO;
}
