#include "platform/synchronization/MacOSXMutex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "platform/synchronization/SynchronizationFactory.h"

namespace dovrel {
namespace {

TEST(MacOSXMutex, New_IsFree) {
    MacOSXMutex mutex;
    EXPECT_TRUE(mutex.lock(0));
}

TEST(MacOSXMutex, Lock_WithZeroOnAHeldMutex_IsFalseAtOnce) {
    MacOSXMutex mutex;
    ASSERT_TRUE(mutex.lock(0));
    EXPECT_FALSE(mutex.lock(0)) << "it is not recursive";
}

TEST(MacOSXMutex, Lock_WithMinusOneOnAHeldMutex_BlocksUntilItIsUnlocked) {
    MacOSXMutex mutex;
    ASSERT_TRUE(mutex.lock(kWaitForever));
    std::atomic<bool> obtained{false};
    std::thread other([&] { obtained = mutex.lock(kWaitForever); });
    // Even if the other thread starts to wait late, it cannot have the lock yet.
    EXPECT_FALSE(mutex.lock(100));
    EXPECT_FALSE(obtained);
    EXPECT_TRUE(mutex.unlock());
    other.join();
    EXPECT_TRUE(obtained);
}

TEST(MacOSXMutex, Lock_WithMilliseconds_DoesNotGiveUpBeforeThat) {
    MacOSXMutex mutex;
    ASSERT_TRUE(mutex.lock(0));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(mutex.lock(30));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
}

TEST(MacOSXMutex, Lock_WithMinusTwo_IsADurationOfMicroseconds) {
    MacOSXMutex mutex;
    ASSERT_TRUE(mutex.lock(0));
    EXPECT_FALSE(mutex.lock(-2));
}

TEST(MacOSXMutex, Unlock_ByAnotherThread_Frees) {
    MacOSXMutex mutex;
    ASSERT_TRUE(mutex.lock(0));
    bool unlocked = false;
    std::thread([&] { unlocked = mutex.unlock(); }).join();
    EXPECT_TRUE(unlocked);
    EXPECT_TRUE(mutex.lock(0));
}

TEST(MacOSXMutex, Unlock_OfAFreeMutex_IsFalseAndChangesNothing) {
    MacOSXMutex mutex;
    EXPECT_FALSE(mutex.unlock());
    EXPECT_TRUE(mutex.lock(0));
    EXPECT_FALSE(mutex.lock(0));
}

TEST(MacOSXMutex, Wait_IsLock) {
    const auto mutex = createMutex();
    EXPECT_TRUE(mutex->wait(0));
    EXPECT_FALSE(mutex->wait(0));
    EXPECT_FALSE(mutex->wait(5));
    EXPECT_TRUE(mutex->unlock());
    EXPECT_TRUE(mutex->wait(kWaitForever));
}

}  // namespace
}  // namespace dovrel
