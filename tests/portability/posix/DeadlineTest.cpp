#include "portability/posix/Deadline.h"

#include <CoreServices/AEDataModel.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <climits>

using namespace portability;

namespace {

double secondsLeft(const Deadline& deadline) {
    timespec left;
    const timespec* given = deadline.remaining(left);
    return given == nullptr ? -1
                            : static_cast<double>(given->tv_sec) + static_cast<double>(given->tv_nsec) / 1e9;
}

}  // namespace

TEST(Deadline, Tick_IsASixtiethOfASecond) {
    EXPECT_NEAR(secondsLeft(Deadline::afterTicks(60 * 1000)), 1000, 10);
    EXPECT_NEAR(secondsLeft(Deadline::afterTicks(10000)), 166.67, 10);
}

TEST(Deadline, DefaultTimeOut_IsAMinute) {
    EXPECT_NEAR(secondsLeft(Deadline::afterTicks(kAEDefaultTimeout)), 60, 10);
}

TEST(Deadline, NoTimeOut_HasNoLimit) {
    EXPECT_EQ(secondsLeft(Deadline::afterTicks(kNoTimeOut)), -1);
    EXPECT_FALSE(Deadline::afterTicks(kNoTimeOut).passed());
    EXPECT_FALSE(Deadline::never().passed());
}

TEST(Deadline, HasAtLeast_ComparesTheTimeThatIsLeft) {
    EXPECT_TRUE(Deadline::afterTicks(60 * 1000).hasAtLeast(std::chrono::seconds(500)));
    EXPECT_FALSE(Deadline::afterTicks(60).hasAtLeast(std::chrono::seconds(2)));
    EXPECT_TRUE(Deadline::never().hasAtLeast(std::chrono::hours(1000)));
}

TEST(Deadline, ZeroAndLess_HavePassedAtOnce) {
    EXPECT_TRUE(Deadline::afterTicks(0).passed());
    EXPECT_TRUE(Deadline::afterTicks(-3).passed());
    EXPECT_TRUE(Deadline::afterTicks(LONG_MIN).passed());
    EXPECT_EQ(secondsLeft(Deadline::afterTicks(0)), 0);
}

TEST(Deadline, LargestNumber_DoesNotOverflow) {
    EXPECT_FALSE(Deadline::afterTicks(LONG_MAX).passed());
    EXPECT_GT(secondsLeft(Deadline::afterTicks(LONG_MAX)), 30e6);
}

TEST(Deadline, OrAfter_IsTheNearer) {
    EXPECT_NEAR(secondsLeft(Deadline::never().orAfter(std::chrono::seconds(100))), 100, 10);
    EXPECT_NEAR(secondsLeft(Deadline::afterTicks(60 * 50).orAfter(std::chrono::seconds(100))), 50, 10);
    EXPECT_NEAR(secondsLeft(Deadline::afterTicks(60 * 500).orAfter(std::chrono::seconds(100))), 100, 10);
}

TEST(Deadline, WaitForDescriptor_EndsWhenItIsReadyOrTheTimeIsOver) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const Deadline soon = Deadline::afterTicks(3);
    while (!soon.passed())
        waitForDescriptor(ends[0], POLLIN, soon);
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    waitForDescriptor(ends[0], POLLIN, Deadline::never());
    close(ends[0]);
    close(ends[1]);
}
