// Contract tests of clocks.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

UInt64 microseconds() {
    UnsignedWide now = {0xFFFFFFFF, 0xFFFFFFFF};
    Microseconds(&now);
    return static_cast<UInt64>(now.hi) << 32 | now.lo;
}

TEST(Timer, Microseconds_CountMicroseconds) {
    const auto wallStart = std::chrono::steady_clock::now();
    const UInt64 start = microseconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const UInt64 counted = microseconds() - start;
    const auto wall = std::chrono::steady_clock::now() - wallStart;
    EXPECT_GE(counted, 20000u);
    EXPECT_LE(counted,
              static_cast<UInt64>(std::chrono::duration_cast<std::chrono::microseconds>(wall).count()) + 1);
}

TEST(Timer, Microseconds_NeverGoBack) {
    UInt64 last = microseconds();
    for (int i = 0; i < 100000; ++i) {
        const UInt64 now = microseconds();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(Timer, TickCount_CountsSixtyInASecond) {
    // Both clocks start at the same time, so the ticks are between the two readings around them.
    const UInt64 before = microseconds();
    const UInt32 ticks = TickCount();
    const UInt64 after = microseconds();
    const auto ticksAt = [](UInt64 time) { return static_cast<UInt32>(time * 3 / 50000); };
    EXPECT_LE(static_cast<UInt32>(ticks - ticksAt(before)),
              static_cast<UInt32>(ticksAt(after) - ticksAt(before)));
}

}  // namespace
