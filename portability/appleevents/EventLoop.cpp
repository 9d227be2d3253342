#include "portability/appleevents/EventLoop.h"

#include <CoreServices/AppleEvents.h>
#include <sys/eventfd.h>

#include <atomic>

#include "portability/appleevents/CallQueue.h"
#include "portability/appleevents/EventReceiver.h"
#include "portability/appleevents/HandlerTable.h"
#include "portability/appleevents/OwnSignature.h"
#include "portability/posix/ErrnoKeeper.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/posix/MainThread.h"
#include "portability/posix/ProcessMark.h"
#include "portability/transport/Endpoint.h"
#include "portability/transport/RequestServer.h"

extern "C" {
// The platform exports both functions in 32-bit and 64-bit programs, but declares them only for 32-bit ones.
void RunApplicationEventLoop(void);
void QuitApplicationEventLoop(void);
}

namespace portability {

namespace {

OSErr quitApplication(const AppleEvent*, AppleEvent*, SRefCon) {
    QuitApplicationEventLoop();
    return noErr;
}

constexpr HandlerTable::Entry kDefaultQuit{false, kCoreEventClass, kAEQuitApplication, quitApplication,
                                           SRefCon()};

EndpointClaim claimOwnEndpoint() {
    EndpointClaim claim;
    OSType signature;
    if (!readOwnSignature(signature)) return claim;
    const bool isLaunched = EndpointClaim::adoptInherited(signature, claim);
    if (!isLaunched && isInstalled()) EndpointClaim::claim(signature, claim);
    return claim;
}

class EventLoop {
  public:
    void run(EndpointClaim claim) {
        if (isRunning() || !makeWakeDescriptor()) return;
        EventReceiver receiver;
        RequestServer server(std::move(claim), wake_.load(), receiver, quit_);
        if (!server.isReady()) return;
        calls_.open();
        const bool hasDefaultQuit = HandlerTable::shared().installIfAbsent(kDefaultQuit);
        while (!quit_.load()) {
            if (server.serve()) drainWakeDescriptor();
            while (calls_.hasCalls() && !quit_.load())
                calls_.serveOldest();
        }
        if (hasDefaultQuit) HandlerTable::shared().remove(kDefaultQuit);
        end();
    }

    // May be called by a signal handler.
    void quit() {
        const ErrnoKeeper errnoKeeper;
        quit_.store(true);
        wakeUp();
    }

    bool call(CallQueue::Procedure procedure, void* parameter, void** result) {
        if (isMainThread() && isRunning()) {
            *result = procedure(parameter);
            return true;
        }
        return calls_.run(procedure, parameter, result, wakeUpForCall);
    }

  private:
    bool isRunning() const { return calls_.isOpen(); }

    // The descriptor is never closed, because a signal handler may use it at any time. A forked process needs
    // its own.
    bool makeWakeDescriptor() {
        if (wake_.load() >= 0 && owner_ == processMark()) return true;
        wake_.store(aboveStandardStreams(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)).release());
        owner_ = processMark();
        return wake_.load() >= 0;
    }

    void wakeUp() {
        const eventfd_t once = 1;
        const int descriptor = wake_.load();
        // The write fails only if the counter is full; then the loop is about to wake up anyway.
        if (descriptor >= 0) eventfd_write(descriptor, once);
    }

    static void wakeUpForCall();

    void drainWakeDescriptor() {
        eventfd_t count;
        eventfd_read(wake_.load(), &count);
    }

    void end() {
        // The next loop must not be ended by a quit() that was meant for this one.
        quit_.store(false);
        calls_.close();
    }

    std::atomic<int> wake_{-1};
    uint32_t owner_ = 0;
    std::atomic<bool> quit_{false};
    CallQueue calls_;
};

// Never destroyed, because other threads may make calls, and a handler may quit the loop, while the
// process exits.
EventLoop& loop = *new EventLoop;

void EventLoop::wakeUpForCall() {
    loop.wakeUp();
}

}  // namespace

bool runOnEventLoop(void* (*function)(void*), void* parameter, void** result) {
    return loop.call(function, parameter, result);
}

void runEventLoop(EndpointClaim claim) {
    loop.run(std::move(claim));
}

}  // namespace portability

extern "C" void RunApplicationEventLoop(void) {
    if (!portability::isMainThread()) return;
    portability::runEventLoop(portability::claimOwnEndpoint());
}

extern "C" void QuitApplicationEventLoop(void) {
    portability::loop.quit();
}
