// Contract tests of remote calls.
#include <Carbon/Carbon.h>
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "tests/support/TemporaryEnvironment.h"
#include "WaitingThreads.h"

extern "C" {
// The platform also exports both functions in 64-bit programs, but declares them only for 32-bit programs.
void RunApplicationEventLoop(void);
void QuitApplicationEventLoop(void);
}

namespace {

using dovrel::test::waitUntil;

// The observations of the called procedure.
struct Visit {
    std::thread::id thread;
    std::atomic<int> count{0};
};

void* visit(void* parameter) {
    Visit& seen = *static_cast<Visit*>(parameter);
    seen.thread = std::this_thread::get_id();
    ++seen.count;
    return &seen;
}

class RemoteCall : public testing::Test {
   protected:
    // A host with a run loop has used Foundation before it starts threads. Two threads that use it first at
    // the same time can crash in GNUstep.
    RemoteCall() {
        NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
        [[NSThread currentThread] threadDictionary];
        [NSRunLoop class];
        [pool release];
    }

    void* call(MPRemoteProcedure procedure) {
        ++calls_;
        return MPRemoteCall(procedure, &seen_, kMPOwningProcessRemoteContext);
    }

    /// Repeats the call until the main thread has run it. Before its loop runs, the calls run in place.
    void* callUntilServed() {
        void* result = nullptr;
        do {
            result = call(visit);
        } while (seen_.thread != mainThread_);
        return result;
    }

    TemporaryEnvironment environment_;
    const std::thread::id mainThread_ = std::this_thread::get_id();
    Visit seen_;
    std::atomic<int> calls_{0};
};

}  // namespace

// Fires inside the run loop of the main thread.
@interface LoopVisitor : NSObject {
   @public
    std::atomic<bool>* isInside;
    std::future<void>* awaited;  // awaited inside the loop unless null
}
- (void)visit:(NSTimer*)timer;
@end

@implementation LoopVisitor

- (void)visit:(NSTimer*)timer {
    static_cast<void>(timer);
    *isInside = true;
    if (awaited != nullptr) awaited->wait_for(kLongEnough);
}

@end

namespace {

/// Foundation's run loop of the main thread, with a timer that fires in it.
class RunLoop {
   public:
    explicit RunLoop(NSString* mode = NSDefaultRunLoopMode, std::future<void>* awaited = nullptr)
        : mode_(mode) {
        visitor_->isInside = &isInside_;
        visitor_->awaited = awaited;
        NSTimer* const timer = [NSTimer timerWithTimeInterval:0.01
                                                       target:visitor_
                                                     selector:@selector(visit:)
                                                     userInfo:nil
                                                      repeats:YES];
        [[NSRunLoop currentRunLoop] addTimer:timer forMode:mode_];
        timer_ = timer;
    }
    ~RunLoop() {
        [timer_ invalidate];
        [pool_ release];
    }

    bool isInside() const { return isInside_; }

    /// Runs the loop until the future is ready.
    template <class Result>
    void runUntil(std::future<Result>& task) const {
        const auto giveUp = std::chrono::steady_clock::now() + kLongEnough;
        while (task.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
            if (std::chrono::steady_clock::now() > giveUp) std::terminate();
            [[NSRunLoop currentRunLoop] runMode:mode_ beforeDate:[NSDate dateWithTimeIntervalSinceNow:10]];
        }
    }

   private:
    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    LoopVisitor* const visitor_ = [[[LoopVisitor alloc] init] autorelease];
    NSString* const mode_;
    std::atomic<bool> isInside_{false};
    NSTimer* timer_;
};

TEST_F(RemoteCall, OnTheMainThread_RunsDirectly) {
    EXPECT_EQ(call(visit), &seen_);
    EXPECT_EQ(seen_.thread, std::this_thread::get_id());
}

// The platform would wait forever for a loop that never runs.
TEST_F(RemoteCall, InATaskWhileTheMainThreadRunsNoLoop_RunsInPlace) {
    auto task = inThread([this] { return std::make_pair(call(visit), std::this_thread::get_id()); });
    const auto [result, thread] = takeResult(task);
    EXPECT_EQ(result, &seen_);
    EXPECT_EQ(seen_.thread, thread);
    EXPECT_EQ(seen_.count, 1);
}

TEST_F(RemoteCall, InATaskAfterTheMainThreadHasLeftItsLoops_RunsInPlace) {
    auto inRunLoop = inThread([&] { callUntilServed(); });
    RunLoop().runUntil(inRunLoop);
    auto inEventLoop = inThread([&] {
        seen_.thread = {};
        callUntilServed();
        QuitApplicationEventLoop();
    });
    RunApplicationEventLoop();
    inEventLoop.get();
    auto task = inThread([this] { return std::make_pair(call(visit), std::this_thread::get_id()); });
    const auto [result, thread] = takeResult(task);
    EXPECT_EQ(result, &seen_);
    EXPECT_EQ(seen_.thread, thread);
    EXPECT_EQ(seen_.count, calls_);
}

TEST_F(RemoteCall, InATask_RunsOnTheMainThreadInsideItsEventLoop) {
    auto task = inThread([&] {
        void* const result = callUntilServed();
        QuitApplicationEventLoop();
        return result;
    });
    RunApplicationEventLoop();
    EXPECT_EQ(takeResult(task), &seen_);
}

TEST_F(RemoteCall, InManyTasks_EachRunsOnceInsideTheEventLoop) {
    constexpr int kTasks = 8;
    std::atomic<bool> loops{false};
    std::atomic<int> returned{0};
    std::vector<std::future<void>> tasks;
    auto probe = inThread([&] {
        const auto isMainThread = [](void*) -> void* {
            static char yes;
            return MPTaskIsPreemptive(kInvalidID) ? nullptr : &yes;
        };
        while (MPRemoteCall(isMainThread, nullptr, kMPAnyRemoteContext) == nullptr) {
        }
        loops = true;
    });
    for (int i = 0; i < kTasks; ++i) {
        tasks.push_back(inThread([&] {
            EXPECT_TRUE(waitUntil([&] { return loops.load(); }));
            call(visit);
            if (++returned == kTasks) QuitApplicationEventLoop();
        }));
    }
    RunApplicationEventLoop();
    for (auto& task : tasks) task.get();
    probe.get();
    EXPECT_EQ(seen_.count, kTasks);
    EXPECT_EQ(seen_.thread, std::this_thread::get_id());
}

TEST_F(RemoteCall, InATask_RunsOnTheMainThreadInsideItsRunLoop) {
    const RunLoop loop;
    auto task = inThread([&] {
        EXPECT_TRUE(waitUntil([&] { return loop.isInside(); }));
        return callUntilServed();
    });
    loop.runUntil(task);
    EXPECT_EQ(task.get(), &seen_);
}

// Otherwise the main thread and the task would wait for each other.
TEST_F(RemoteCall, InATaskThatTheMainThreadWaitsForInsideItsRunLoop_RunsInPlaceAndOnce) {
    std::thread::id thread;
    std::future<void> task;
    const RunLoop loop(NSDefaultRunLoopMode, &task);
    task = inThread([&] {
        EXPECT_TRUE(waitUntil([&] { return loop.isInside(); }));
        call(visit);
        thread = std::this_thread::get_id();
    });
    loop.runUntil(task);
    EXPECT_EQ(seen_.thread, thread);
    // The loop still has its message about the call, which must not run the call again.
    auto next = inThread([&] { callUntilServed(); });
    loop.runUntil(next);
    EXPECT_EQ(seen_.count, calls_);
}

TEST_F(RemoteCall, InATaskThatTheMainThreadWaitsForInsideItsEventLoop_RunsInPlaceAndOnce) {
    struct Waiting {
        Visit* seen;
        std::thread::id thread;
    } waiting{&seen_, {}};
    const auto callInAThread = [](void* parameter) -> void* {
        Waiting& all = *static_cast<Waiting*>(parameter);
        if (MPTaskIsPreemptive(kInvalidID)) return nullptr;
        std::thread([&all] {
            MPRemoteCall(visit, all.seen, kMPAnyRemoteContext);
            all.thread = std::this_thread::get_id();
        }).join();
        return parameter;
    };
    auto task = inThread([&] {
        while (MPRemoteCall(callInAThread, &waiting, kMPAnyRemoteContext) == nullptr) {
        }
        QuitApplicationEventLoop();
    });
    RunApplicationEventLoop();
    takeResult(task);
    EXPECT_EQ(seen_.thread, waiting.thread);
    EXPECT_EQ(seen_.count, 1);
}

TEST_F(RemoteCall, InATaskWhileTheRunLoopIsInAModeOfTheHostsOwn_RunsInPlace) {
    const RunLoop loop(@"OwnMode");
    auto task = inThread([&] {
        EXPECT_TRUE(waitUntil([&] { return loop.isInside(); }));
        call(visit);
        return std::this_thread::get_id();
    });
    loop.runUntil(task);
    EXPECT_EQ(seen_.thread, task.get());
    EXPECT_EQ(seen_.count, 1);
}

}  // namespace
