#include "platform/time/IntervalTimer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace dovrel {
namespace {

TEST(IntervalTimer, New_HasItsMarkAtTheStart) {
    const IntervalTimer timer("load");
    EXPECT_EQ(timer.getLastMark(), timer.getStart());
    EXPECT_EQ(timer.getLabel(), "load");
}

TEST(IntervalTimer, Elapsed_CountsMilliseconds) {
    const auto wallStart = std::chrono::steady_clock::now();
    const IntervalTimer timer("load");
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const uint32_t elapsed = timer.elapsed();
    const auto wall = std::chrono::steady_clock::now() - wallStart;
    EXPECT_GE(elapsed, 29u) << "both ends are cut to whole milliseconds";
    EXPECT_LE(elapsed, std::chrono::duration_cast<std::chrono::milliseconds>(wall).count() + 1);
}

TEST(IntervalTimer, Mark_SetsTheLastMarkAndNamesTheInterval) {
    IntervalTimer timer("load");
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(timer.mark("parse"), "parse Interval time: ");
    EXPECT_GE(timer.getLastMark() - timer.getStart(), 4u);
    EXPECT_EQ(timer.getLabel(), "load") << "the label of the interval is not the stopwatch's";
}

}  // namespace
}  // namespace dovrel
