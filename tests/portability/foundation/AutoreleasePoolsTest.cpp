// The functions of the Objective-C runtime for autorelease pools, which need no message.
#include <gtest/gtest.h>

#include <thread>

extern "C" {
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace {

void nestPools(int depth) {
    if (depth == 0) return;
    void* const pool = objc_autoreleasePoolPush();
    EXPECT_NE(pool, nullptr);
    nestPools(depth - 1);
    objc_autoreleasePoolPop(pool);
}

TEST(AutoreleasePools, PushAndPop_MayBeNestedOnAnyThread) {
    nestPools(3);
    std::thread(nestPools, 3).join();
}

}  // namespace
