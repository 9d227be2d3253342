#include "platform/time/Dates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace dovrel {
namespace {

std::time_t fixedTime = 0;

// 2026-11-15 17:19:00 UTC: 20772 days after 1970-01-01 and 62340 seconds.
constexpr std::time_t kNovemberEvening = std::time_t{20772} * 86400 + 62340;

std::vector<int> readValues(const CPPByteArray& bytes) {
    std::vector<int> values;
    for (uint32_t i = 0; i < bytes.getSize(); ++i)
        values.push_back(bytes.getByte(i));
    return values;
}

using Bytes = std::vector<int>;

class Dates : public testing::Test {
  protected:
    void SetUp() override {
        setTimeSource([] { return fixedTime; });
        setTime(kNovemberEvening, "CET-1CEST,M3.5.0,M10.5.0/3");
    }
    void TearDown() override { setTimeSource(nullptr); }

    static void setTime(std::time_t time, const char* zone) {
        fixedTime = time;
        setenv("TZ", zone, 1);
    }
};

TEST_F(Dates, LocalNowText_IsTheDottedLocalTime) {
    EXPECT_STREQ(localNowText(), "2026.11.15 18:19:00");
}

TEST_F(Dates, UtcNowText_IsTheDottedUtcTime) {
    EXPECT_STREQ(utcNowText(), "2026.11.15 17:19:00");
}

TEST_F(Dates, DottedTexts_PadMonthDayAndTimeToTwoDigits) {
    setTime(86400 * 3 + 3661, "UTC0");  // 1970-01-04 01:01:01
    EXPECT_STREQ(localNowText(), "1970.01.04 01:01:01");
    EXPECT_STREQ(utcNowText(), "1970.01.04 01:01:01");
}

TEST_F(Dates, LocalNowText_InSummer_IsTheTimeOfTheSummerClock) {
    setTime(kNovemberEvening - 86400 * 120, "CET-1CEST,M3.5.0,M10.5.0/3");  // 2026-07-18 17:19:00 UTC
    EXPECT_STREQ(localNowText(), "2026.07.18 19:19:00");
}

TEST_F(Dates, DottedTexts_ShareOneBuffer) {
    const char* const local = localNowText();
    EXPECT_EQ(utcNowText(), local);
    EXPECT_STREQ(local, "2026.11.15 17:19:00");
}

// A time of 32 bits ends before the year 9999.
TEST_F(Dates, DottedTexts_OfTheLastMomentWithAYearOfFourDigits_StillHaveTheirForm) {
    constexpr int64_t kLastMoment = 253402300799;
    constexpr int64_t kLastTime = std::numeric_limits<std::time_t>::max();
    setTime(static_cast<std::time_t>(std::min(kLastMoment, kLastTime)), "UTC0");
    EXPECT_STREQ(utcNowText(), kLastTime < kLastMoment ? "2038.01.19 03:14:07" : "9999.12.31 23:59:59");
}

TEST_F(Dates, LocalNowShortText_DropsTheSecondsAndTheColon) {
    EXPECT_EQ(localNowShortText(), "2026.11.15 18.19");
}

TEST_F(Dates, AppendTimestamp_AppendsTheLocalTime) {
    std::string text = "log-";
    appendTimestamp(text);
    EXPECT_EQ(text, "log-20261115-181900");
}

TEST_F(Dates, ShortTextAndTimestamp_PadMonthDayAndTimeToTwoDigits) {
    setTime(86400 * 3 + 3661, "UTC0");  // 1970-01-04 01:01:01
    EXPECT_EQ(localNowShortText(), "1970.01.04 01.01");
    std::string text;
    appendTimestamp(text);
    EXPECT_EQ(text, "19700104-010101");
}

TEST_F(Dates, TimeZoneText_IsOffsetAndName) {
    EXPECT_EQ(timeZoneText(), "+0100 (CET)");
    setTime(kNovemberEvening - 86400 * 120, "CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(timeZoneText(), "+0200 (CEST)");
    setTime(kNovemberEvening, "NST3:30");
    EXPECT_EQ(timeZoneText(), "-0330 (NST)");
}

TEST_F(Dates, TimeZoneText_Has98CharactersAtMostAndIsOtherwiseEmpty) {
    const std::string longest(90, 'A');
    setTime(kNovemberEvening, ("<" + longest + ">-1").c_str());
    EXPECT_EQ(timeZoneText(), "+0100 (" + longest + ")");
    setTime(kNovemberEvening, ("<" + longest + "A>-1").c_str());
    EXPECT_EQ(timeZoneText(), "");
}

TEST_F(Dates, DateBytes_In2026_BeginWith26) {
    EXPECT_EQ(readValues(dateBytes()), (Bytes{26, 11, 15}));
}

TEST_F(Dates, DateBytes_BeforeAndAfterTheCentury_AreAnUnsignedByte) {
    setTime(0, "UTC0");
    EXPECT_EQ(readValues(dateBytes()), (Bytes{226, 1, 1})) << "1970 is 30 years before 2000";
}

TEST_F(Dates, DateBytes_ForTodayPlusDays_AddWholeDays) {
    EXPECT_EQ(readValues(dateBytes(0)), (Bytes{26, 11, 15}));
    EXPECT_EQ(readValues(dateBytes(16)), (Bytes{26, 12, 1}));
    EXPECT_EQ(readValues(dateBytes(47)), (Bytes{27, 1, 1}));
    EXPECT_EQ(readValues(dateBytes(-15)), (Bytes{26, 10, 31}));
}

TEST_F(Dates, DateBytes_ShiftedByTwoMonthsInNovember_HaveMonth13) {
    EXPECT_EQ(readValues(dateBytes(0, 2)), (Bytes{26, 13, 15})) << "no carry into the year";
}

TEST_F(Dates, DateBytes_AroundMidnight_AreLocalForTodayAndUtcWithDays) {
    setTime(std::time_t{20772} * 86400 + 86399,
            "CET-1");  // 23:59:59 UTC; local time is 00:59:59 on the next day
    EXPECT_EQ(readValues(dateBytes()), (Bytes{26, 11, 16}));
    EXPECT_EQ(readValues(dateBytes(0)), (Bytes{26, 11, 15}));
    EXPECT_EQ(readValues(dateBytes(0, 0)), (Bytes{26, 11, 15}));
}

TEST_F(Dates, SecondsForDays_Are86400EachOfEitherSign) {
    EXPECT_EQ(secondsForDays(0), 0);
    EXPECT_EQ(secondsForDays(1), 86400);
    EXPECT_EQ(secondsForDays(-2), -172800);
    EXPECT_EQ(secondsForDays(20000), 1728000000);
    const int64_t most = 86400LL * std::numeric_limits<int32_t>::max();
    EXPECT_EQ(secondsForDays(std::numeric_limits<int32_t>::max()),
              std::min<int64_t>(most, std::numeric_limits<std::time_t>::max()));
}

}  // namespace
}  // namespace dovrel
