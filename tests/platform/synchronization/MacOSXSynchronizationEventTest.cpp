#include "platform/synchronization/MacOSXSynchronizationEvent.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "platform/synchronization/SynchronizationFactory.h"

namespace dovrel {
namespace {

TEST(MacOSXSynchronizationEvent, Wait_OnAnArmedEventWithAnythingButMinusOne_IsFalseAtOnce) {
    const auto event = createSynchronizationEvent(true, false);
    const auto start = std::chrono::steady_clock::now();
    for (const int32_t timeout : {0, 1, 500, 3600000, -2, -3600000})
        EXPECT_FALSE(event->wait(timeout)) << timeout;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::minutes(30)) << "an hour was waited";
}

TEST(MacOSXSynchronizationEvent, Wait_OnASignalledEvent_IsTrueWithAnyTimeout) {
    const auto event = createSynchronizationEvent(true, false);
    event->signal();
    for (const int32_t timeout : {0, 500, kWaitForever, -2})
        EXPECT_TRUE(event->wait(timeout)) << timeout;
}

TEST(MacOSXSynchronizationEvent, Signalled_StaysSoUntilItIsReset) {
    const auto event = createSynchronizationEvent(false, false);
    event->signal();
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(event->wait(0));
    event->reset();
    EXPECT_FALSE(event->wait(0));
    event->signal();
    EXPECT_TRUE(event->wait(0));
}

TEST(MacOSXSynchronizationEvent, Signal_Twice_ChangesNothingMore) {
    const auto event = createSynchronizationEvent(true, false);
    event->signal();
    event->signal();
    EXPECT_TRUE(event->wait(kWaitForever));
    event->reset();
    EXPECT_FALSE(event->wait(0));
}

TEST(MacOSXSynchronizationEvent, Signal_ReleasesEveryWaiter) {
    const auto event = createSynchronizationEvent(true, false);
    std::atomic<int> released{0};
    std::vector<std::thread> waiters;
    for (int i = 0; i < 5; ++i) {
        waiters.emplace_back([&] { released += event->wait(kWaitForever); });
    }
    EXPECT_EQ(released, 0);
    event->signal();
    for (auto& waiter : waiters)
        waiter.join();
    EXPECT_EQ(released, 5);
}

TEST(MacOSXSynchronizationEvent, ConstructorFlags_ChangeNothing) {
    for (const bool manualReset : {false, true}) {
        for (const bool initiallySignalled : {false, true}) {
            MacOSXSynchronizationEvent event(manualReset, initiallySignalled);
            EXPECT_FALSE(event.wait(0)) << "it starts armed";
            event.signal();
            EXPECT_TRUE(event.wait(0));
            EXPECT_TRUE(event.wait(0)) << "a wait does not arm it again";
        }
    }
}

TEST(MacOSXSynchronizationEvent, Reset_OfAnArmedEvent_LeavesItArmed) {
    MacOSXSynchronizationEvent event(true, false);
    event.reset();
    EXPECT_FALSE(event.wait(0));
    event.signal();
    EXPECT_TRUE(event.wait(0));
}

TEST(MacOSXSynchronizationEvent, Signal_WhileTheWaiterDeletesTheEvent_TouchesNothingAfterwards) {
    for (int round = 0; round < 200; ++round) {
        auto event = createSynchronizationEvent(true, false);
        std::thread signaller([raw = event.get()] { raw->signal(); });
        event->wait(kWaitForever);
        event.reset();
        signaller.join();
    }
}

}  // namespace
}  // namespace dovrel
