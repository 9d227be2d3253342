#include "portability/appleevents/EventLoop.h"

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <thread>
#include <vector>

#include "Events.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryEnvironment.h"
#include "tests/support/WaitUntil.h"

extern "C" {
void RunApplicationEventLoop(void);
void QuitApplicationEventLoop(void);
}

using namespace portability;
using dovrel::test::waitUntil;

namespace {

constexpr OSType kSignature = 'LooP';

void* doubled(void* parameter) {
    return reinterpret_cast<void*>(reinterpret_cast<intptr_t>(parameter) * 2);
}

void* currentThread(void*) {
    return reinterpret_cast<void*>(pthread_self());
}

// Repeats the call until the main thread's loop runs.
void* callWhenRunning(void* (*function)(void*), void* parameter) {
    void* result = nullptr;
    while (!runOnEventLoop(function, parameter, &result))
        std::this_thread::yield();
    return result;
}

EndpointClaim claimed() {
    EndpointClaim claim;
    EXPECT_EQ(EndpointClaim::claim(kSignature, claim), EndpointClaim::Outcome::claimed);
    return claim;
}

class EventLoopTest : public testing::Test {
  protected:
    // Sends the quit event and returns the result of the send.
    static OSStatus sendQuit() {
        Descriptor event = makeEvent(makeAddress("LooP"), kAEQuitApplication, kCoreEventClass);
        Descriptor reply;
        return AESendMessage(event.get(), reply.get(), kAEWaitReply, kAEDefaultTimeout);
    }

    TemporaryEnvironment environment_;
};

std::atomic<int> quitsSeen;

OSErr ownQuit(const AppleEvent*, AppleEvent*, SRefCon) {
    if (++quitsSeen == 2) QuitApplicationEventLoop();
    return noErr;
}

}  // namespace

TEST_F(EventLoopTest, RunOnEventLoop_WithoutLoop_IsFalseAndTouchesNothing) {
    int odd = 0;
    void* result = &odd;
    EXPECT_FALSE(runOnEventLoop(doubled, nullptr, &result));
    EXPECT_EQ(result, &odd);
    std::thread([&] { EXPECT_FALSE(runOnEventLoop(doubled, nullptr, &result)); }).join();
    EXPECT_EQ(result, &odd);
}

TEST_F(EventLoopTest, RunOnEventLoop_RunsOnTheLoopsThreadAndHandsBackTheResult) {
    void* thread = nullptr;
    void* number = nullptr;
    std::thread caller([&] {
        thread = callWhenRunning(currentThread, nullptr);
        number = callWhenRunning(doubled, reinterpret_cast<void*>(intptr_t{21}));
        QuitApplicationEventLoop();
    });
    runEventLoop(claimed());
    caller.join();
    EXPECT_EQ(thread, reinterpret_cast<void*>(pthread_self()));
    EXPECT_EQ(reinterpret_cast<intptr_t>(number), 42);
}

TEST_F(EventLoopTest, RunOnEventLoop_FromManyThreads_EachGetsItsOwnResult) {
    std::atomic<int> wrong{0};
    std::thread callers([&wrong] {
        std::vector<std::thread> threads;
        for (intptr_t t = 1; t <= 8; ++t) {
            threads.emplace_back([t, &wrong] {
                for (intptr_t i = 0; i < 100; ++i) {
                    const intptr_t number = t * 1000 + i;
                    void* result = callWhenRunning(doubled, reinterpret_cast<void*>(number));
                    if (reinterpret_cast<intptr_t>(result) != 2 * number) ++wrong;
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QuitApplicationEventLoop();
    });
    runEventLoop(claimed());
    callers.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(EventLoopTest, RunOnEventLoop_FromWithinTheLoop_RunsAtOnce) {
    const auto nested = [](void* parameter) -> void* {
        void* result = nullptr;
        EXPECT_TRUE(runOnEventLoop(doubled, parameter, &result));
        return result;
    };
    void* number = nullptr;
    std::thread caller([&] {
        number = callWhenRunning(nested, reinterpret_cast<void*>(intptr_t{4}));
        QuitApplicationEventLoop();
    });
    runEventLoop(claimed());
    caller.join();
    EXPECT_EQ(reinterpret_cast<intptr_t>(number), 8);
}

TEST_F(EventLoopTest, RunOnEventLoop_LoopEndsBefore_IsFalse) {
    static std::atomic<bool> waiting;
    waiting = false;
    const auto quitWhileOthersWait = [](void*) -> void* {
        // The other call either waits behind this one or finds no loop. In
        // both cases the result must be false.
        waiting = true;
        QuitApplicationEventLoop();
        return nullptr;
    };
    std::atomic<bool> ran{true};
    std::thread first([&] { callWhenRunning(quitWhileOthersWait, nullptr); });
    std::thread second([&] {
        EXPECT_TRUE(waitUntil([&] { return waiting.load(); }));
        void* result = nullptr;
        ran = runOnEventLoop(doubled, nullptr, &result);
    });
    runEventLoop(claimed());
    first.join();
    second.join();
    EXPECT_FALSE(ran);
}

TEST_F(EventLoopTest, Quit_FromASignalHandler_EndsTheLoop) {
    signal(SIGUSR1, [](int) { QuitApplicationEventLoop(); });
    std::thread sender([main = pthread_self()] {
        callWhenRunning(doubled, nullptr);
        pthread_kill(main, SIGUSR1);
    });
    runEventLoop(claimed());
    sender.join();
    signal(SIGUSR1, SIG_DFL);
}

TEST_F(EventLoopTest, Quit_BeforeTheLoop_EndsTheNextOneAndNoOther) {
    QuitApplicationEventLoop();
    RunApplicationEventLoop();
    QuitApplicationEventLoop();
    RunApplicationEventLoop();
    std::thread caller([] {
        callWhenRunning(doubled, nullptr);
        QuitApplicationEventLoop();
    });
    RunApplicationEventLoop();
    caller.join();
}

TEST_F(EventLoopTest, Run_OffTheMainThread_ReturnsAtOnce) {
    std::thread([] { RunApplicationEventLoop(); }).join();
}

TEST_F(EventLoopTest, QuitEvent_EndsTheLoop_AndItsHandlerLastsNoLonger) {
    std::thread sender([] {
        callWhenRunning(doubled, nullptr);
        EXPECT_EQ(sendQuit(), noErr);
    });
    runEventLoop(claimed());
    sender.join();
    EXPECT_EQ(AERemoveEventHandler(kCoreEventClass, kAEQuitApplication, nullptr, false),
              errAEHandlerNotFound);
}

TEST_F(EventLoopTest, QuitEvent_OwnHandler_TakesThePlaceOfTheDefault) {
    quitsSeen = 0;
    ASSERT_EQ(AEInstallEventHandler(kCoreEventClass, kAEQuitApplication, ownQuit, SRefCon(), false), noErr);
    std::thread sender([] {
        callWhenRunning(doubled, nullptr);
        EXPECT_EQ(sendQuit(), noErr);
        EXPECT_EQ(sendQuit(), noErr) << "the first one did not end the loop";
    });
    runEventLoop(claimed());
    sender.join();
    EXPECT_EQ(quitsSeen, 2);
    EXPECT_EQ(AERemoveEventHandler(kCoreEventClass, kAEQuitApplication, ownQuit, false), noErr);
}

TEST_F(EventLoopTest, LoopThatEnded_GivesUpItsEndpoint) {
    QuitApplicationEventLoop();
    runEventLoop(claimed());
    EXPECT_EQ(sendQuit(), procNotFound);
    EndpointClaim again;
    EXPECT_EQ(EndpointClaim::claim(kSignature, again), EndpointClaim::Outcome::claimed);
}

TEST_F(EventLoopTest, Loop_CanRunInAForkedProcess) {
    QuitApplicationEventLoop();
    runEventLoop(EndpointClaim());
    EXPECT_EQ(inForkedProcess([] {
                  std::thread caller([] {
                      callWhenRunning(doubled, nullptr);
                      QuitApplicationEventLoop();
                  });
                  runEventLoop(EndpointClaim());
                  caller.join();
                  return 0;
              }),
              0);
}
