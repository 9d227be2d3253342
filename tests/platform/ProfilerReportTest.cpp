#include "platform/ProfilerReport.h"

#include <gtest/gtest.h>

#include <ios>
#include <sstream>
#include <string>

namespace dovrel {
namespace {

ProfilerNode& addCall(ProfilerNode& caller, const char* name, uint32_t start, uint32_t end) {
    ProfilerNode& call = caller.addChild(name);
    call.setStart(start);
    call.setEnd(end);
    return call;
}

std::string reportOf(const ProfilerNode& root) {
    std::ostringstream stream;
    printProfilerReport(root, stream);
    return stream.str();
}

TEST(ProfilerNode, TotalAndSelf_AreTheSpanAndTheSpanWithoutTheChildren) {
    ProfilerNode root(nullptr, nullptr);
    ProfilerNode& call = addCall(root, "f", 100, 200);
    EXPECT_EQ(call.total(), 100u);
    addCall(call, "g", 110, 140);
    addCall(call, "h", 150, 160);
    EXPECT_EQ(call.total(), 100u);
    EXPECT_EQ(call.self(), 60u);
    EXPECT_EQ(call.getParent(), &root);
}

TEST(ProfilerNode, Self_OfACallWithoutChildren_IsItsTotal) {
    ProfilerNode root(nullptr, nullptr);
    const ProfilerNode& call = addCall(root, "f", 100, 200);
    EXPECT_EQ(call.self(), 100u);
    EXPECT_EQ(call.self(), call.total());
}

TEST(ProfilerNode, Total_OverTheWrapOfTheClock_IsTheSpan) {
    ProfilerNode root(nullptr, nullptr);
    EXPECT_EQ(addCall(root, "f", 0xFFFFFFF0, 0x10).total(), 0x20u);
}

TEST(ProfilerReport, OfAnEmptyProfile_HasHeadersAndNothingUnderThem) {
    EXPECT_EQ(reportOf(ProfilerNode(nullptr, nullptr)),
              "======== Profiler report ========\n"
              "=== Call tree:\n"
              "\n"
              "=== Methods sorted by self time usage:\n"
              "\n"
              "=== Methods sorted by total time usage:\n"
              "======== End of profiler report ========\n");
}

TEST(ProfilerReport, OfCalls_ListsTreeThenMethodsBySelfThenByTotal) {
    ProfilerNode root(nullptr, nullptr);
    ProfilerNode& outer = addCall(root, "outer", 0, 3000);
    ProfilerNode& middle = addCall(outer, "middle", 100, 2100);
    addCall(middle, "inner", 200, 1720);
    addCall(root, "last", 3000, 4108);
    // self: outer 3000-2000 = 1000, middle 2000-1520 = 480, inner 1520, last 1108; in all 3000+1108 = 4108.
    EXPECT_EQ(reportOf(root),
              "======== Profiler report ========\n"
              "=== Call tree:\n"
              " outer 3000 1000\n"
              "  middle 2000 480\n"
              "   inner 1520 1520\n"
              " last 1108 1108\n"
              "\n"
              "=== Methods sorted by self time usage:\n"
              "1520(37%): inner\n"
              "1108(26%): last\n"
              "1000(24%): outer\n"
              "480(11%): middle\n"
              "\n"
              "=== Methods sorted by total time usage:\n"
              "3000: outer\n"
              "2000: middle\n"
              "1520: inner\n"
              "1108: last\n"
              "======== End of profiler report ========\n");
}

TEST(ProfilerReport, OfAMethodThatCallsItself_CountsEveryLevel) {
    ProfilerNode root(nullptr, nullptr);
    ProfilerNode& first = addCall(root, "f", 0, 100);
    addCall(addCall(first, "f", 10, 90), "f", 20, 80);
    const std::string report = reportOf(root);
    EXPECT_NE(report.find("\n100(100%): f\n"), std::string::npos) << report;
    EXPECT_NE(report.find("\n240: f\n"), std::string::npos) << "100 + 80 + 60 " << report;
}

TEST(ProfilerReport, OfEqualNamesAtDifferentPlaces_AggregatesByTheText) {
    ProfilerNode root(nullptr, nullptr);
    const std::string one = "same";
    const std::string two = "same";
    addCall(root, one.c_str(), 0, 10);
    addCall(root, two.c_str(), 20, 50);
    EXPECT_NE(reportOf(root).find("\n40: same\n"), std::string::npos);
}

TEST(ProfilerReport, OfEqualTimes_KeepsTheNamesInAscendingOrder) {
    ProfilerNode root(nullptr, nullptr);
    addCall(root, "b", 0, 10);
    addCall(root, "c", 0, 10);
    addCall(root, "a", 0, 10);
    addCall(root, "B", 0, 10);
    const std::string report = reportOf(root);
    EXPECT_NE(report.find("10(25%): B\n10(25%): a\n10(25%): b\n10(25%): c\n"), std::string::npos) << report;
    EXPECT_NE(report.find("10: B\n10: a\n10: b\n10: c\n"), std::string::npos) << report;
}

TEST(ProfilerReport, WithGrandTotalZero_PrintsZeroPercent) {
    ProfilerNode root(nullptr, nullptr);
    addCall(root, "idle", 7, 7);
    EXPECT_NE(reportOf(root).find("\n0(0%): idle\n"), std::string::npos);
}

TEST(ProfilerReport, OfACallThatIsStillOpen_TakesEndZeroAndPrintsSignedNumbers) {
    ProfilerNode root(nullptr, nullptr);
    root.addChild("open").setStart(100);
    const std::string report = reportOf(root);
    EXPECT_NE(report.find("\n open -100 -100\n"), std::string::npos) << report;
    EXPECT_NE(report.find("\n-100(100%): open\n"), std::string::npos) << report;
}

TEST(ProfilerReport, Percentage_TruncatesTowardZeroOfAProductIn64Bits) {
    ProfilerNode root(nullptr, nullptr);
    ProfilerNode& large = addCall(root, "large", 0, 2000000000);
    addCall(large, "part", 0, 1999999999);
    addCall(large, "back", 5, 0);
    // 1999999999 * 100 / 2000000000 = 99.99..., -5 * 100 / 2000000000 = -0.0..., the rest
    // 2000000000-1999999999+5 = 6.
    const std::string report = reportOf(root);
    EXPECT_NE(report.find("\n1999999999(99%): part\n6(0%): large\n-5(0%): back\n"), std::string::npos)
        << report;
}

TEST(ProfilerReport, ToAStreamWithOtherNumberFormats_StaysDecimal) {
    ProfilerNode root(nullptr, nullptr);
    addCall(root, "f", 0, 255);
    std::ostringstream stream;
    stream << std::hex << std::showbase;
    printProfilerReport(root, stream);
    EXPECT_NE(stream.str().find("\n f 255 255\n"), std::string::npos) << stream.str();
}

}  // namespace
}  // namespace dovrel
