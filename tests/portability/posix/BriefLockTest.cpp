#include "portability/posix/BriefLock.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/support/Processes.h"

using namespace portability;

TEST(BriefLock, Scope_HoldsItUntilItsEnd) {
    BriefLock lock;
    {
        const BriefLockScope held(lock);
        EXPECT_TRUE(static_cast<bool>(held));
        EXPECT_FALSE(static_cast<bool>(BriefLockScope(lock))) << "it gives up instead of waiting for ever";
    }
    EXPECT_TRUE(static_cast<bool>(BriefLockScope(lock)));
}

TEST(BriefLock, ManyThreads_ExcludeEachOther) {
    BriefLock lock;
    long guarded = 0;
    std::atomic<long> counted{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 10000; ++i) {
                const BriefLockScope held(lock);
                if (!held) continue;
                ++guarded;
                ++counted;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(guarded, counted);
}

TEST(BriefLock, HeldWhileForking_DoesNotHangTheForkedProcess) {
    BriefLock lock;
    const BriefLockScope held(lock);
    EXPECT_EQ(inForkedProcess([&lock] { return BriefLockScope(lock) ? 1 : 0; }), 0);
}
