#include "platform/time/Clock.h"

#include <gtest/gtest.h>

namespace dovrel {
namespace {

TEST(Clock, CurrentTime_IsTheCalendarTime) {
    const std::time_t before = std::time(nullptr);
    const std::time_t now = currentTime();
    EXPECT_GE(now, before);
    EXPECT_LE(now, std::time(nullptr));
}

TEST(Clock, SetTimeSource_ReplacesTheTimeUntilItIsNull) {
    setTimeSource([] { return std::time_t{123}; });
    EXPECT_EQ(currentTime(), 123);
    setTimeSource(nullptr);
    EXPECT_NE(currentTime(), 123);
}

}  // namespace
}  // namespace dovrel
