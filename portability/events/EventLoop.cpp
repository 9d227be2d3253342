#include "events/EventLoop.h"

#include <CoreServices/AppleEvents.h>
#include <sys/eventfd.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>

#include "events/ErrnoKeeper.h"
#include "events/EventEndpoint.h"
#include "events/EventReceiver.h"
#include "events/EventServer.h"
#include "events/FileDescriptor.h"
#include "events/HandlerTable.h"
#include "events/OwnSignature.h"
#include "events/ProcessMark.h"
#include "tasks/MainThread.h"

extern "C" {
// The platform exports both in 64-bit programs, too, but declares them only for 32-bit ones.
void RunApplicationEventLoop(void);
void QuitApplicationEventLoop(void);
}

namespace portability {

namespace {

// A function on its way to the loop's thread; lives on the stack of the thread that waits for it.
struct Call {
    void* (*function)(void*);
    void* parameter;
    void* result = nullptr;
    bool finished = false;
    bool ran = false;
};

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
        EventServer server(std::move(claim), wake_.load(), receiver);
        if (!server.isReady()) return;
        begin();
        const bool hasDefaultQuit = HandlerTable::shared().installIfAbsent(kDefaultQuit);
        while (!quit_.load()) {
            if (server.serve()) drainWakeDescriptor();
            runCalls();
        }
        if (hasDefaultQuit) HandlerTable::shared().remove(kDefaultQuit);
        end();
    }

    // May be called from a signal handler.
    void quit() {
        const ErrnoKeeper errnoKeeper;
        quit_.store(true);
        wakeUp();
    }

    bool call(void* (*function)(void*), void* parameter, void** result) {
        if (isMainThread() && isRunning()) {
            *result = function(parameter);
            return true;
        }
        Call call{function, parameter};
        std::unique_lock<std::mutex> lock(mutex_);
        if (!running_) return false;
        calls_.push_back(&call);
        hasCalls_.store(true);
        wakeUp();
        finished_.wait(lock, [&call] { return call.finished; });
        if (call.ran) *result = call.result;
        return call.ran;
    }

  private:
    bool isRunning() {
        std::lock_guard<std::mutex> lock(mutex_);
        return running_;
    }

    // The descriptor lives as long as the process, because a signal handler may be using it at any time. A
    // forked process needs one of its own.
    bool makeWakeDescriptor() {
        if (wake_.load() >= 0 && owner_ == processMark()) return true;
        wake_.store(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        owner_ = processMark();
        return wake_.load() >= 0;
    }

    void wakeUp() {
        const eventfd_t once = 1;
        const int descriptor = wake_.load();
        // It can fail only when the counter is full, and then the loop is about to wake up.
        if (descriptor >= 0) eventfd_write(descriptor, once);
    }

    void drainWakeDescriptor() {
        eventfd_t count;
        eventfd_read(wake_.load(), &count);
    }

    void begin() {
        std::lock_guard<std::mutex> lock(mutex_);
        running_ = true;
    }

    void end() {
        std::lock_guard<std::mutex> lock(mutex_);
        running_ = false;
        quit_.store(false);
        for (Call* call : calls_)
            call->finished = true;
        calls_.clear();
        hasCalls_.store(false);
        finished_.notify_all();
    }

    void runCalls() {
        while (hasCalls_.load() && !quit_.load()) {
            std::unique_lock<std::mutex> lock(mutex_);
            Call* call = calls_.front();
            calls_.pop_front();
            hasCalls_.store(!calls_.empty());
            lock.unlock();
            void* result = call->function(call->parameter);
            lock.lock();
            call->result = result;
            call->ran = true;
            call->finished = true;
            finished_.notify_all();
        }
    }

    std::atomic<int> wake_{-1};
    uint32_t owner_ = 0;
    std::atomic<bool> quit_{false};
    std::atomic<bool> hasCalls_{false};
    std::mutex mutex_;
    std::condition_variable finished_;
    std::deque<Call*> calls_;
    bool running_ = false;
};

EventLoop loop;

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
