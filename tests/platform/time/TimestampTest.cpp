#include "platform/time/Timestamp.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace dovrel {
namespace {

std::string secondsText(std::time_t seconds) {
    tm local = {};
    localtime_r(&seconds, &local);
    char text[sizeof "2026-11-15 18:19:00"] = "";
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text;
}

TEST(Timestamp, Text_IsTheLocalTimeWithMilliseconds) {
    setenv("TZ", "Asia/Kathmandu", 1);
    tzset();
    const std::string before = secondsText(std::time(nullptr));
    const std::string text = timestampText();
    const std::string after = secondsText(std::time(nullptr));
    ASSERT_EQ(text.size(), sizeof "2026-11-15 18:19:00.123" - 1) << text;
    EXPECT_LE(before, text.substr(0, before.size()));
    EXPECT_GE(after, text.substr(0, after.size()));
    EXPECT_EQ(text[before.size()], '.');
    EXPECT_EQ(text.find_first_not_of("0123456789", before.size() + 1), std::string::npos) << text;
}

TEST(Timestamp, LaterText_ComparesAsGreaterOrEqual) {
    std::string last = timestampText();
    for (int i = 0; i < 10000; ++i) {
        const std::string text = timestampText();
        ASSERT_LE(last, text);
        last = text;
    }
}

}  // namespace
}  // namespace dovrel
