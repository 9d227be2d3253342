#include "platform/trace/TraceSetting.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/DocumentPage.h"

namespace dovrel {
namespace {

constexpr std::array<TraceArea, kTraceAreaCount> kAreas = {TraceArea::kConnection, TraceArea::kExchange,
                                                           TraceArea::kSession, TraceArea::kCalls};

using Levels = std::array<TraceLevel, kTraceAreaCount>;

// Connection, exchange, session, calls.
constexpr Levels kNothing = {TraceLevel::kOff, TraceLevel::kOff, TraceLevel::kOff, TraceLevel::kOff};

TEST(TraceSetting, Empty_TracesNothing) {
    const TraceSetting setting("");
    EXPECT_EQ(setting.levels, kNothing);
    EXPECT_EQ(setting.file, "");
    EXPECT_EQ(setting.problems, "");
}

TEST(TraceSetting, AreaWithoutALevel_IsTracedInStepsButWithoutContents) {
    constexpr auto kOff = TraceLevel::kOff;
    constexpr auto kSteps = TraceLevel::kSteps;
    EXPECT_EQ(TraceSetting("connection").levels, (Levels{kSteps, kOff, kOff, kOff}));
    EXPECT_EQ(TraceSetting("exchange").levels, (Levels{kOff, kSteps, kOff, kOff}));
    EXPECT_EQ(TraceSetting("session").levels, (Levels{kOff, kOff, kSteps, kOff}));
    EXPECT_EQ(TraceSetting("calls").levels, (Levels{kOff, kOff, kOff, kSteps}));
    EXPECT_EQ(TraceSetting("all").levels, (Levels{kSteps, kSteps, kSteps, kSteps}));
}

TEST(TraceSetting, Level_IsTheDigitAfterTheColon) {
    EXPECT_EQ(TraceSetting("exchange:0").levels, kNothing);
    EXPECT_EQ(TraceSetting("exchange:1").levels[1], TraceLevel::kFailures);
    EXPECT_EQ(TraceSetting("exchange:2").levels[1], TraceLevel::kSteps);
    EXPECT_EQ(TraceSetting("exchange:3").levels[1], TraceLevel::kContents);
    EXPECT_EQ(
        TraceSetting("all:1,exchange:3").levels,
        (Levels{TraceLevel::kFailures, TraceLevel::kContents, TraceLevel::kFailures, TraceLevel::kFailures}));
}

TEST(TraceSetting, File_IsTheRestOfTheText) {
    const TraceSetting setting("all:1,file=/tmp/a, b:3,exchange");
    EXPECT_EQ(setting.levels, (Levels{TraceLevel::kFailures, TraceLevel::kFailures, TraceLevel::kFailures,
                                      TraceLevel::kFailures}));
    EXPECT_EQ(setting.file, "/tmp/a, b:3,exchange");
    EXPECT_EQ(setting.problems, "");
}

TEST(TraceSetting, Time_AsksForTheTimeOfDayAndForNoArea) {
    const TraceSetting setting("time,exchange");
    EXPECT_TRUE(setting.timeOfDay);
    EXPECT_EQ(setting.levels, TraceSetting("exchange").levels);
    EXPECT_EQ(setting.problems, "");
    EXPECT_FALSE(TraceSetting("all").timeOfDay);
    EXPECT_EQ(TraceSetting("time:1").problems, "time:1");
}

TEST(TraceSetting, WhatIsNeitherAreaNorFile_IsAProblemAndChangesNothingElse) {
    const TraceSetting setting("Exchange,connection:4,all:,exchange:12,connection:x,exchange:1,file");
    EXPECT_EQ(setting.levels,
              (Levels{TraceLevel::kOff, TraceLevel::kFailures, TraceLevel::kOff, TraceLevel::kOff}));
    EXPECT_EQ(setting.file, "");
    EXPECT_EQ(setting.problems, "Exchange connection:4 all: exchange:12 connection:x file");
}

TEST(TraceSetting, AreaName_IsTheWordThatAsksForTheArea) {
    for (const TraceArea area : kAreas) {
        const TraceSetting setting(std::string(areaName(area)) + ":1");
        EXPECT_EQ(setting.levels[static_cast<size_t>(area)], TraceLevel::kFailures);
    }
}

TEST(TraceSetting, AreasAndLevelsOfTheDocumentedVariable_AreThoseOfTheCode) {
    const test::DocumentPage page(ENVIRONMENT_PAGE);
    std::vector<std::string> areas;
    for (const test::DocumentPage::Row& row : page.rowsUnder({"area"})) {
        areas.push_back(row[0]);
        EXPECT_EQ(TraceSetting(row[0]).problems, "");
    }
    std::vector<std::string> expected;
    for (const TraceArea area : kAreas)
        expected.push_back(areaName(area));
    expected.push_back("all");
    EXPECT_EQ(areas, expected);

    const std::vector<test::DocumentPage::Row> levels = page.rowsUnder({"level"});
    for (size_t level = 0; level < levels.size(); ++level)
        EXPECT_EQ(TraceSetting("exchange:" + levels[level][0]).levels[1], static_cast<TraceLevel>(level));
    EXPECT_NE(TraceSetting("exchange:" + std::to_string(levels.size())).problems, "")
        << "no level is left out";
}

TEST(TraceSetting, DocumentedExample_IsUnderstood) {
    constexpr char kExample[] = "connection:1,exchange,time,file=/tmp/dovrel.trace";
    EXPECT_TRUE(test::DocumentPage(ENVIRONMENT_PAGE).says("    POS_TRACE=" + std::string(kExample)));
    const TraceSetting setting(kExample);
    EXPECT_EQ(setting.levels,
              (Levels{TraceLevel::kFailures, TraceLevel::kSteps, TraceLevel::kOff, TraceLevel::kOff}));
    EXPECT_TRUE(setting.timeOfDay);
    EXPECT_EQ(setting.file, "/tmp/dovrel.trace");
    EXPECT_EQ(setting.problems, "");
}

}  // namespace
}  // namespace dovrel
