#include "portability/transport/Spin.h"

#include <gtest/gtest.h>

#include <string>

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
    EXPECT_GE(std::chrono::steady_clock::now() - begin, microseconds(450));
}

TEST(Spin, Again_ForAPeerElsewhere_EndsAfterTheTimeAndAllowsFewSystemCalls) {
    SpinHistory history;
    Spin spin(history, 0);
    const auto begin = std::chrono::steady_clock::now();
    int looks = 0;
    int systemCalls = 0;
    while (spin.again(Spin::Peer::elsewhere)) {
        ++looks;
        systemCalls += spin.isSystemCallDue() ? 1 : 0;
    }
    EXPECT_GE(std::chrono::steady_clock::now() - begin, microseconds(50));
    EXPECT_EQ((looks + 15) / 16, systemCalls);
}

TEST(SpinHistory, WaitsInVain_AreFollowedByMoreAndMoreWaitsThatDoNotPoll) {
    SpinHistory history;
    std::string polled;
    for (int wait = 0; wait < 20; ++wait) {
        Spin spin(history, 0);
        const bool polls = spin.again();
        polled += polls ? 'p' : '-';
    }
    EXPECT_EQ(polled, "p-p--p----p--------p");
}

TEST(SpinHistory, AtMostSixtyFourWaits_DoNotPoll) {
    SpinHistory history;
    for (int failure = 0; failure < 20; ++failure)
        history.noteFailure();
    uint32_t skipped = 0;
    while (!history.begin())
        ++skipped;
    EXPECT_EQ(skipped, SpinHistory::kMostSkipped);
}

TEST(SpinHistory, Success_EndsThat) {
    SpinHistory history;
    for (int failure = 0; failure < 5; ++failure)
        history.noteFailure();
    while (!history.begin()) {
    }
    history.noteSuccess();
    EXPECT_TRUE(history.isWorthwhile());
    history.noteFailure();
    EXPECT_FALSE(history.begin());
    EXPECT_TRUE(history.begin());
}
