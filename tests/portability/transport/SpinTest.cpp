#include "portability/transport/Spin.h"

#include <gtest/gtest.h>

using namespace portability;
using std::chrono::microseconds;

TEST(Spin, Time_IsFiftyMicroseconds) {
    EXPECT_EQ(spinTime(nullptr), microseconds(50));
}

TEST(Spin, Time_CanBeSet_ZeroTurnsItOff) {
    EXPECT_EQ(spinTime("0"), microseconds(0));
    EXPECT_EQ(spinTime("1"), microseconds(1));
    EXPECT_EQ(spinTime("1000000"), microseconds(1000000));
}

TEST(Spin, Time_AnythingElse_IsTheDefault) {
    for (const char* setting : {"", " ", "-1", "1000001", "99999999999999999999", "5x", " 5", "0x5", "5.0"}) {
        EXPECT_EQ(spinTime(setting), microseconds(50)) << setting;
    }
}

TEST(Spin, Again_EndsAfterTheTime) {
    Spin spin;
    const auto begin = std::chrono::steady_clock::now();
    while (spin.again()) {
    }
    EXPECT_GE(std::chrono::steady_clock::now() - begin, microseconds(50));
    EXPECT_FALSE(spin.again());
}

TEST(Spin, Again_LastsLongerWhereLargeImagesAreCopied) {
    Spin spin(size_t{1} << 20);
    const auto begin = std::chrono::steady_clock::now();
    while (spin.again()) {
    }
    EXPECT_GE(std::chrono::steady_clock::now() - begin, microseconds(250));
}
