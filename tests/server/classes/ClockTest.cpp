#include <gtest/gtest.h>

#include <ctime>

#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

TEST(Clock, Now_IsTheTimeOfTheCallInUtc) {
    TestObject clock("Clock");
    const time_t before = time(nullptr);
    const std::string now = clock.call("now");
    const time_t after = time(nullptr);

    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    char end = 0, nothing = 0;
    ASSERT_EQ(sscanf(now.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d%c%c", &year, &month, &day, &hour, &minute, &second,
                     &end, &nothing),
              7)
        << now;
    EXPECT_EQ(end, 'Z');
    tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    const time_t told = timegm(&parts);
    EXPECT_LE(before, told);
    EXPECT_LE(told, after);
}

TEST(Clock, Now_WithAnArgument_IsParameterFormat) {
    TestObject clock("Clock");
    EXPECT_EQ(clock.callRefused("now", "x"), 30u);
}

}  // namespace
}  // namespace merrowd::test
