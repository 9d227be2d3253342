#include "portability/appleevents/CallQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/portability/tasks/WaitingThreads.h"

namespace portability {
namespace {

void* doubled(void* parameter) {
    return reinterpret_cast<void*>(2 * reinterpret_cast<intptr_t>(parameter));
}

void* const kFour = reinterpret_cast<void*>(intptr_t{4});
void* const kEight = reinterpret_cast<void*>(intptr_t{8});

std::atomic<int> wakeUps;

void countWakeUps() {
    ++wakeUps;
}

class CallQueueTest : public testing::Test {
  protected:
    CallQueueTest() { wakeUps = 0; }

    /// Calls doubled(4) on another thread. The result is null if the queue rejects the call.
    std::future<void*> callInThread() {
        return inThread([this]() -> void* {
            void* result = nullptr;
            return queue_.run(doubled, kFour, &result, countWakeUps) ? result : nullptr;
        });
    }

    void waitForCall() const {
        ASSERT_TRUE(dovrel::test::waitUntil([this] { return queue_.hasCalls(); }));
    }

    CallQueue queue_;
};

TEST_F(CallQueueTest, Run_WhileTheQueueIsClosed_IsFalseAndWakesNobody) {
    EXPECT_EQ(callInThread().get(), nullptr);
    queue_.open();
    queue_.close();
    EXPECT_EQ(callInThread().get(), nullptr);
    EXPECT_EQ(wakeUps, 0);
}

TEST_F(CallQueueTest, Run_IsServedByTheThreadOfTheLoop) {
    queue_.open();
    auto call = callInThread();
    waitForCall();
    queue_.serveOldest();
    EXPECT_FALSE(queue_.hasCalls());
    EXPECT_EQ(takeResult(call), kEight);
    EXPECT_EQ(wakeUps, 1);
}

TEST_F(CallQueueTest, Run_NotBegunWithinASecond_IsTakenBack) {
    queue_.open();
    auto call = callInThread();
    EXPECT_EQ(takeResult(call), nullptr);
    EXPECT_FALSE(queue_.hasCalls());
    queue_.serveOldest();
}

TEST_F(CallQueueTest, Run_BegunInTime_IsWaitedForHoweverLongItTakes) {
    const auto slow = [](void* parameter) -> void* {
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        return doubled(parameter);
    };
    queue_.open();
    auto call = inThread([&]() -> void* {
        void* result = nullptr;
        return queue_.run(slow, kFour, &result, countWakeUps) ? result : nullptr;
    });
    waitForCall();
    queue_.serveOldest();
    EXPECT_EQ(takeResult(call), kEight);
}

TEST_F(CallQueueTest, Close_GivesBackTheCallsThatNobodyHasBegun) {
    queue_.open();
    auto first = callInThread();
    auto second = callInThread();
    untilAllOthersWait();
    queue_.close();
    EXPECT_EQ(takeResult(first), nullptr);
    EXPECT_EQ(takeResult(second), nullptr);
    EXPECT_FALSE(queue_.hasCalls());
}

TEST_F(CallQueueTest, ServeOldest_WithoutACall_DoesNothing) {
    queue_.serveOldest();
    queue_.open();
    queue_.serveOldest();
    EXPECT_FALSE(queue_.hasCalls());
}

TEST_F(CallQueueTest, ServeOldest_FromWithinACall_ServesTheNextOne) {
    queue_.open();
    const auto serveNext = [](void* queue) -> void* {
        static_cast<CallQueue*>(queue)->serveOldest();
        return kFour;
    };
    auto outer = inThread([&]() -> void* {
        void* result = nullptr;
        return queue_.run(serveNext, &queue_, &result, countWakeUps) ? result : nullptr;
    });
    waitForCall();
    auto inner = callInThread();
    EXPECT_TRUE(dovrel::test::waitUntil([&] { return wakeUps >= 2; }));
    queue_.serveOldest();
    EXPECT_EQ(takeResult(outer), kFour);
    EXPECT_EQ(takeResult(inner), kEight);
}

}  // namespace
}  // namespace portability
