// What the platform promises about remote calls.
#include <Carbon/Carbon.h>
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <atomic>

#include "../events/TemporaryEnvironment.h"
#include "WaitingThreads.h"
#include "tests/support/Screen.h"

extern "C" {
// The platform exports both in 64-bit programs, too, but declares them only for 32-bit ones.
void RunApplicationEventLoop(void);
void QuitApplicationEventLoop(void);
}

namespace {

// What a called procedure saw.
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
    void SetUp() override { unsetenv("DISPLAY"); }

    void* call(MPRemoteProcedure procedure) {
        return MPRemoteCall(procedure, &seen_, kMPOwningProcessRemoteContext);
    }

    TemporaryEnvironment environment_;
    Visit seen_;
};

TEST_F(RemoteCall, OnTheMainThread_RunsDirectly) {
    EXPECT_EQ(call(visit), &seen_);
    EXPECT_EQ(seen_.thread, std::this_thread::get_id());
}

// The platform would wait for a loop that never comes.
TEST_F(RemoteCall, InATaskWithoutWindowsAndWithoutALoop_RunsInPlace) {
    for (const char* display : {"", ":no such server"}) {
        setenv("DISPLAY", display, 1);
        auto task = inThread([this] { return std::make_pair(call(visit), std::this_thread::get_id()); });
        const auto [result, thread] = resultOf(task);
        EXPECT_EQ(result, &seen_);
        EXPECT_EQ(seen_.thread, thread) << display;
    }
}

TEST_F(RemoteCall, InATask_RunsOnTheMainThreadInsideItsEventLoop) {
    const std::thread::id mainThread = std::this_thread::get_id();
    auto task = inThread([&] {
        // Until the loop runs, the calls run in place.
        void* result = nullptr;
        do {
            result = call(visit);
        } while (seen_.thread != mainThread);
        QuitApplicationEventLoop();
        return result;
    });
    RunApplicationEventLoop();
    EXPECT_EQ(resultOf(task), &seen_);
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
            while (!loops) std::this_thread::yield();
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

TEST_F(RemoteCall, InATaskOfAProcessWithWindows_RunsOnTheMainThreadInsideItsRunLoop) {
    const dovrel::test::Screen screen;
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    const auto giveUp = std::chrono::steady_clock::now() + kLongEnough;
    auto task = inThread([this] { return call(visit); });
    while (seen_.count == 0 && std::chrono::steady_clock::now() < giveUp) {
        [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                                 beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.05]];
    }
    EXPECT_EQ(resultOf(task), &seen_);
    EXPECT_EQ(seen_.thread, std::this_thread::get_id());
    EXPECT_EQ(seen_.count, 1);
    [pool release];
}

}  // namespace
