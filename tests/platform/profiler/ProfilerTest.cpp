#include "platform/profiler/Profiler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace dovrel {
namespace {

// A clock that advances by 10 each time it is read.
uint32_t reading = 0;
uint32_t tickingClock() {
    return reading += 10;
}

std::string makeReport(Profiler& profiler) {
    std::ostringstream stream;
    profiler.report(stream);
    return stream.str();
}

std::string makeTree(Profiler& profiler) {
    const std::string report = makeReport(profiler);
    const std::string start = "=== Call tree:\n";
    const size_t first = report.find(start) + start.size();
    return report.substr(first, report.find("\n=== Methods sorted by self") - first);
}

class ProfilerTest : public testing::Test {
  protected:
    void SetUp() override { reading = 0; }

    Profiler profiler_{tickingClock};
};

TEST_F(ProfilerTest, Enter_ReadsTheClockTwiceAndKeepsTheSecondReading) {
    profiler_.enter("f");  // reads 10, then 20
    EXPECT_EQ(reading, 20u);
    profiler_.leave();  // 30
    EXPECT_EQ(makeTree(profiler_), " f 10 10\n");
}

TEST_F(ProfilerTest, EnterInsideACall_AddsAChildInOrderOfEntry) {
    profiler_.enter("outer");  // 20
    profiler_.enter("b");      // 40
    profiler_.leave();         // 50
    profiler_.enter("a");      // 70
    profiler_.leave();         // 80
    profiler_.leave();         // 90
    profiler_.enter("next");   // 110
    profiler_.leave();         // 120
    EXPECT_EQ(makeTree(profiler_), " outer 70 50\n  b 10 10\n  a 10 10\n next 10 10\n");
}

TEST_F(ProfilerTest, LeaveAtTheRoot_ChangesNothingThatIsReported) {
    const std::string empty = makeReport(profiler_);
    profiler_.leave();
    EXPECT_EQ(makeReport(profiler_), empty);
    profiler_.enter("f");
    profiler_.leave();
    profiler_.leave();
    profiler_.enter("g");
    profiler_.leave();
    EXPECT_EQ(makeTree(profiler_), " f 10 10\n g 10 10\n") << "the root is still the caller";
}

TEST_F(ProfilerTest, Report_LeavesTheProfileAsItIs) {
    profiler_.enter("f");
    profiler_.leave();
    const std::string first = makeReport(profiler_);
    EXPECT_EQ(makeReport(profiler_), first);
}

TEST_F(ProfilerTest, Reset_InsideOfCalls_ForgetsThemAll) {
    profiler_.enter("outer");
    profiler_.enter("inner");
    profiler_.reset();
    EXPECT_EQ(makeTree(profiler_), "");
    profiler_.leave();
    profiler_.enter("f");
    profiler_.leave();
    EXPECT_EQ(makeTree(profiler_), " f 10 10\n");
}

TEST_F(ProfilerTest, LeaveAndDump_WithoutPrintOnExit_OnlyLeaves) {
    profiler_.enter("f");
    profiler_.leaveAndDump(false);
    EXPECT_EQ(makeTree(profiler_), " f 10 10\n");
}

TEST_F(ProfilerTest, LeaveAndDump_WithPrintOnExit_LeavesAnEmptyProfile) {
    profiler_.enter("f");
    profiler_.leaveAndDump(true);
    EXPECT_EQ(makeTree(profiler_), "");
}

TEST_F(ProfilerTest, BusyFlag_IsClearedWhenAnOperationThrows) {
    static bool broken = false;
    Profiler profiler([] {
        if (broken) throw std::runtime_error("no clock");
        return uint32_t{1};
    });
    broken = true;
    EXPECT_THROW(profiler.enter("f"), std::runtime_error);
    EXPECT_THROW(profiler.leave(), std::runtime_error);
    EXPECT_THROW(profiler.leaveAndDump(true), std::runtime_error);
    broken = false;
    EXPECT_EQ(makeTree(profiler), "") << "reached without waiting for ever";
}

TEST_F(ProfilerTest, Operations_OnManyThreads_WaitForEachOther) {
    constexpr int kThreads = 4;
    constexpr int kCalls = 200;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([this] {
            for (int call = 0; call < kCalls; ++call) {
                profiler_.enter("f");
                profiler_.leave();
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    const std::string tree = makeTree(profiler_);
    EXPECT_EQ(std::count(tree.begin(), tree.end(), '\n'), kThreads * kCalls) << "no call was lost";
}

TEST(Profiler, DefaultClock_IsTheProcessorTimeOfTheStandardLibrary) {
    const auto before = static_cast<uint32_t>(std::clock());
    const uint32_t now = processorClock();
    const auto after = static_cast<uint32_t>(std::clock());
    EXPECT_LE(now - before, after - before);
}

TEST(Profiler, Install_MakesTheProfilerTheProcesss) {
    EXPECT_EQ(installedProfiler(), nullptr);
    Profiler profiler;
    installProfiler(&profiler);
    EXPECT_EQ(installedProfiler(), &profiler);
    installProfiler(nullptr);
    EXPECT_EQ(installedProfiler(), nullptr);
}

}  // namespace
}  // namespace dovrel
