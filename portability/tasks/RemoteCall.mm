#include <CoreServices/Multiprocessing.h>
#import <Foundation/Foundation.h>

#include <condition_variable>
#include <deque>
#include <mutex>

#include "appkit/WindowServer.h"
#include "events/EventLoop.h"
#include "tasks/MainThread.h"

namespace {

// A procedure on its way to the run loop of the main thread; lives on the stack of the thread that waits for
// it.
struct PendingCall {
    MPRemoteProcedure procedure;
    void* parameter;
    void* result = nullptr;
    bool finished = false;
};

// The calls that the run loop has been asked to serve, the oldest first. The loop is only told that there is
// one more: what passes between the threads passes here.
class PendingCalls {
   public:
    void add(PendingCall& call) {
        std::lock_guard<std::mutex> lock(mutex_);
        calls_.push_back(&call);
    }

    void serveOldest() {
        std::unique_lock<std::mutex> lock(mutex_);
        PendingCall& call = *calls_.front();
        calls_.pop_front();
        // Unlocked, because the procedure may run a loop of its own that serves the next call.
        lock.unlock();
        void* result = call.procedure(call.parameter);
        lock.lock();
        call.result = result;
        call.finished = true;
        finished_.notify_all();
    }

    void* waitForResult(const PendingCall& call) {
        std::unique_lock<std::mutex> lock(mutex_);
        finished_.wait(lock, [&call] { return call.finished; });
        return call.result;
    }

   private:
    std::mutex mutex_;
    std::condition_variable finished_;
    std::deque<PendingCall*> calls_;
};

// Never destroyed: tasks may still be waiting while the process ends.
PendingCalls& pendingCalls() {
    static auto& calls = *new PendingCalls;
    return calls;
}

}  // namespace

// What the run loop calls.
@interface PortabilityRemoteCall : NSObject
+ (void)serveOldest;
@end

@implementation PortabilityRemoteCall

+ (void)serveOldest {
    pendingCalls().serveOldest();
}

@end

namespace {

void* callOnRunLoop(MPRemoteProcedure procedure, void* parameter) {
    PendingCall call{procedure, parameter};
    pendingCalls().add(call);
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    [PortabilityRemoteCall performSelectorOnMainThread:@selector(serveOldest)
                                            withObject:nil
                                         waitUntilDone:NO];
    [pool release];
    return pendingCalls().waitForResult(call);
}

}  // namespace

void* MPRemoteCall(MPRemoteProcedure remoteProc, void* parameter, MPRemoteContext /*context*/) {
    if (portability::isMainThread()) return remoteProc(parameter);
    void* result = nullptr;
    if (portability::runOnEventLoop(remoteProc, parameter, &result)) return result;
    // Without windows there is no run loop either, and nothing would ever answer the call.
    if (!portability::WindowServer().answers()) return remoteProc(parameter);
    return callOnRunLoop(remoteProc, parameter);
}
