// How the stopwatch counts milliseconds, with the platform's counter at values that the tests set.
#include <gtest/gtest.h>

#include "platform/time/IntervalTimer.h"
#include "tests/platform/RecordedServices.h"

namespace dovrel {
namespace {

using test::services;

// The last millisecond whose number has 32 bits, in microseconds.
constexpr uint64_t kLastMillisecond = 0xFFFFFFFFull * 1000;

class IntervalTimerClock : public testing::Test {
  protected:
    void SetUp() override { services = {}; }
};

TEST_F(IntervalTimerClock, Start_IsTheWholeCounterDividedBy1000) {
    services.microseconds = 0x100000000;
    const IntervalTimer timer("load");
    EXPECT_EQ(timer.getStart(), 4294967u);
    EXPECT_EQ(timer.getLastMark(), 4294967u);
}

TEST_F(IntervalTimerClock, Start_IsCutTo32BitsAfterTheDivision) {
    services.microseconds = kLastMillisecond + 999;
    EXPECT_EQ(IntervalTimer("load").getStart(), 0xFFFFFFFFu);
    services.microseconds = kLastMillisecond + 1000;
    EXPECT_EQ(IntervalTimer("load").getStart(), 0u);
    services.microseconds = kLastMillisecond + 8999;
    EXPECT_EQ(IntervalTimer("load").getStart(), 7u);
}

TEST_F(IntervalTimerClock, Elapsed_OverTheWrapOf32Bits_IsTheDifference) {
    services.microseconds = kLastMillisecond;
    const IntervalTimer timer("load");
    services.microseconds += 1000;
    EXPECT_EQ(timer.elapsed(), 1u);
}

TEST_F(IntervalTimerClock, Mark_OverTheWrapOf32Bits_IsOneMillisecondAfterTheStart) {
    services.microseconds = kLastMillisecond;
    IntervalTimer timer("load");
    services.microseconds += 1000;
    timer.mark("parse");
    EXPECT_EQ(timer.getLastMark(), 0u);
    EXPECT_EQ(timer.getLastMark() - timer.getStart(), 1u);
    EXPECT_EQ(timer.getStart(), 0xFFFFFFFFu) << "a mark does not move the start";
}

TEST_F(IntervalTimerClock, Mark_IsTheWholeCounterDividedBy1000) {
    IntervalTimer timer("load");
    services.microseconds = 0x100000000;
    timer.mark("parse");
    EXPECT_EQ(timer.getLastMark(), 4294967u);
    EXPECT_EQ(timer.elapsed(), 4294967u);
}

}  // namespace
}  // namespace dovrel
