// Contract tests of events whose target is slow or dies.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <string>
#include <thread>

#include "AESendMessageTest.h"
#include "Events.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

}  // namespace

TEST_F(AESendMessageTest, NoAnswerInTime_IsTimeoutAtTheTick) {
    ASSERT_TRUE(application_.start());
    for (const long ticks : {1L, 6L, 30L}) {
        const Clock::time_point begin = Clock::now();
        EXPECT_EQ(send(kHold, "late", ticks), errAETimeout);
        const double seconds = secondsSince(begin);
        EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
        EXPECT_GE(seconds, static_cast<double>(ticks) / 60.0);
        EXPECT_LT(seconds, static_cast<double>(ticks) / 60.0 + 5.0) << "a generous limit for a busy machine";
        application_.letGo();
    }
}

TEST_F(AESendMessageTest, LateAnswer_IsNotTakenForTheNext) {
    ASSERT_TRUE(application_.start());
    for (const size_t size : {10, 200000}) {
        EXPECT_EQ(send(kHold, std::string(size, 'l'), 2), errAETimeout);
        application_.letGo();
        ASSERT_EQ(send(kEcho, "in time"), noErr);
        EXPECT_EQ(toText(reply_), "in time");
    }
}

TEST_F(AESendMessageTest, LateAnswers_ManyOfThem_ChangeNothing) {
    ASSERT_TRUE(application_.start());
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(send(kHold, std::string(16000, 'l'), 0), errAETimeout);
        application_.letGo();
        ASSERT_EQ(send(kEcho, "in time " + std::to_string(i)), noErr);
        EXPECT_EQ(toText(reply_), "in time " + std::to_string(i));
    }
}

TEST_F(AESendMessageTest, EventThatTimedOut_CanBeChangedWhileTheApplicationReadsIt) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kHold);
    putText(event, std::string(100000, 'a'));
    EXPECT_EQ(AESendMessage(event.get(), reply_.get(), kAEWaitReply, 1), errAETimeout);
    putText(event, std::string(100000, 'b'));
    application_.letGo();
    application_.letGo();
    ASSERT_EQ(AESendMessage(event.get(), reply_.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_TRUE(toText(reply_) == std::string(100000, 'b'));
}

TEST_F(AESendMessageTest, NoTimeOut_WaitsUntilTheAnswer) {
    ASSERT_TRUE(application_.start());
    std::thread releaser([this] {
        if (application_.nextReport() == 'h') application_.letGo();
    });
    EXPECT_EQ(send(kHold, "at last", kNoTimeOut), noErr);
    EXPECT_EQ(toText(reply_), "at last");
    releaser.join();
}

TEST_F(AESendMessageTest, ApplicationDiesInTheHandler_IsConnectionInvalid) {
    ASSERT_TRUE(application_.start());
    EXPECT_EQ(send(kDie), connectionInvalid);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
    EXPECT_EQ(application_.waitForEnd(), -1);
    EXPECT_EQ(send(kEcho), procNotFound);
}

TEST_F(AESendMessageTest, ApplicationIsKilledWhileWeWait_IsConnectionInvalidAtOnce) {
    ASSERT_TRUE(application_.start());
    std::thread killer([this] {
        if (application_.nextReport() == 'h') ::kill(application_.process(), SIGKILL);
    });
    const Clock::time_point begin = Clock::now();
    EXPECT_EQ(send(kHold, "", 60 * 60), connectionInvalid);
    EXPECT_LT(secondsSince(begin), 30.0);
    killer.join();
}

TEST_F(AESendMessageTest, ApplicationRestartedBetweenTwoSends_IsNotNoticed) {
    ASSERT_TRUE(application_.start());
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(send(kEcho, "one"), noErr);
        application_.kill();
        application_.launch();
        // The first process had counted already; the second one starts again.
        OSStatus status;
        const Clock::time_point begin = Clock::now();
        do
            status = send(kCount);
        while (status == procNotFound && secondsSince(begin) < 60);
        ASSERT_EQ(status, noErr) << "never connectionInvalid: nothing had been sent";
        EXPECT_EQ(parseNumber(reply_, keyDirectObject), 1);
    }
}
