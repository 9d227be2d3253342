#include "platform/profiler/Profiler.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <ios>
#include <locale>
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

std::string makeReport(const ProfilerNode& root) {
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
    EXPECT_EQ(makeReport(ProfilerNode(nullptr, nullptr)),
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
    // self: outer 3000-2000 = 1000, middle 2000-1520 = 480, inner 1520, last 1108; total 3000+1108 = 4108.
    EXPECT_EQ(makeReport(root),
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
    const std::string report = makeReport(root);
    EXPECT_NE(report.find("\n100(100%): f\n"), std::string::npos) << report;
    EXPECT_NE(report.find("\n240: f\n"), std::string::npos) << "100 + 80 + 60 " << report;
}

TEST(ProfilerReport, OfEqualNamesAtDifferentPlaces_AggregatesByTheText) {
    ProfilerNode root(nullptr, nullptr);
    const std::string one = "same";
    const std::string two = "same";
    addCall(root, one.c_str(), 0, 10);
    addCall(root, two.c_str(), 20, 50);
    EXPECT_NE(makeReport(root).find("\n40: same\n"), std::string::npos);
}

TEST(ProfilerReport, OfEqualTimes_KeepsTheNamesInAscendingOrder) {
    ProfilerNode root(nullptr, nullptr);
    addCall(root, "b", 0, 10);
    addCall(root, "c", 0, 10);
    addCall(root, "a", 0, 10);
    addCall(root, "B", 0, 10);
    const std::string report = makeReport(root);
    EXPECT_NE(report.find("10(25%): B\n10(25%): a\n10(25%): b\n10(25%): c\n"), std::string::npos) << report;
    EXPECT_NE(report.find("10: B\n10: a\n10: b\n10: c\n"), std::string::npos) << report;
}

TEST(ProfilerReport, WithGrandTotalZero_PrintsZeroPercent) {
    ProfilerNode root(nullptr, nullptr);
    addCall(root, "idle", 7, 7);
    EXPECT_NE(makeReport(root).find("\n0(0%): idle\n"), std::string::npos);
}

TEST(ProfilerReport, OfACallThatIsStillOpen_TakesEndZeroAndPrintsSignedNumbers) {
    ProfilerNode root(nullptr, nullptr);
    root.addChild("open").setStart(100);
    const std::string report = makeReport(root);
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
    const std::string report = makeReport(root);
    EXPECT_NE(report.find("\n1999999999(99%): part\n6(0%): large\n-5(0%): back\n"), std::string::npos)
        << report;
}

// Writes numbers in groups of one digit.
struct GroupedDigits : std::numpunct<char> {
    char do_thousands_sep() const override { return '_'; }
    std::string do_grouping() const override { return "\1"; }
};

TEST(ProfilerReport, ToAStreamWithAFormatOfItsOwn_IsTheSameAndLeavesTheFormat) {
    ProfilerNode root(nullptr, nullptr);
    addCall(addCall(root, "f", 0, 255), "g", 0, 1000);
    std::ostringstream stream;
    stream.imbue(std::locale(std::locale::classic(), new GroupedDigits));
    stream << std::hex << std::showbase << std::showpos << std::left << std::setfill('*') << std::setw(50);
    const std::ios::fmtflags flags = stream.flags();
    printProfilerReport(root, stream);
    EXPECT_EQ(stream.str(), makeReport(root));
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_EQ(stream.width(), 50);
    EXPECT_EQ(stream.fill(), '*');
}

TEST(ProfilerReport, CallTreeAloneToAStreamWithAWidth_IsTheSame) {
    ProfilerNode root(nullptr, nullptr);
    addCall(root, "f", 0, 255);
    std::ostringstream stream;
    stream << std::setw(50) << std::setfill('*');
    printCallTree(root, stream);
    EXPECT_EQ(stream.str(), " f 255 255\n");
}

TEST(ProfilerNode, ForEachBelow_VisitsCallersFirstAndCallsInOrderOfEntry) {
    ProfilerNode root(nullptr, nullptr);
    ProfilerNode& a = addCall(root, "a", 0, 0);
    addCall(addCall(a, "b", 0, 0), "c", 0, 0);
    addCall(a, "d", 0, 0);
    addCall(root, "e", 0, 0);
    std::string visits;
    root.forEachBelow([&](const ProfilerNode& call, size_t depth) {
        visits += call.getName() + std::to_string(depth) + ' ';
    });
    EXPECT_EQ(visits, "a1 b2 c3 d2 e1 ");
    visits.clear();
    a.forEachBelow([&](const ProfilerNode& call, size_t depth) {
        visits += call.getName() + std::to_string(depth) + ' ';
    });
    EXPECT_EQ(visits, "b1 c2 d1 ");
}

}  // namespace
}  // namespace dovrel
