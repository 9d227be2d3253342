// Contract tests of event groups.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <utility>

#include "WaitingThreads.h"

namespace {

constexpr MPEventFlags kUntouched = 0x5A5A5A5A;

class EventGroups : public testing::Test {
  protected:
    using Outcome = std::pair<OSStatus, MPEventFlags>;

    void SetUp() override { ASSERT_EQ(MPCreateEvent(&event_), noErr); }
    void TearDown() override { MPDeleteEvent(event_); }

    Outcome wait(Duration timeout) {
        MPEventFlags flags = kUntouched;
        const OSStatus status = MPWaitForEvent(event_, &flags, timeout);
        return {status, flags};
    }

    std::future<Outcome> waitInThread(Duration timeout) {
        return inThread([this, timeout] { return wait(timeout); });
    }

    MPEventID event_ = kInvalidID;
};

TEST_F(EventGroups, Wait_OnAnEventThatWasNeverSet_TimesOutAndLeavesTheFlagsUnchanged) {
    EXPECT_EQ(wait(kDurationImmediate), Outcome(kMPTimeoutErr, kUntouched));
    EXPECT_EQ(wait(5), Outcome(kMPTimeoutErr, kUntouched));
}

TEST_F(EventGroups, Set_WithNoThreadWaiting_StaysUntilOneWaitTakesAllFlags) {
    EXPECT_EQ(MPSetEvent(event_, 0x00000001), noErr);
    EXPECT_EQ(MPSetEvent(event_, 0x80000000), noErr);
    EXPECT_EQ(wait(kDurationImmediate), Outcome(noErr, 0x80000001));
    EXPECT_EQ(wait(kDurationImmediate), Outcome(kMPTimeoutErr, kUntouched));
}

TEST_F(EventGroups, Wait_WithoutAPlaceForTheFlags_AlsoClearsThem) {
    EXPECT_EQ(MPSetEvent(event_, 3), noErr);
    EXPECT_EQ(MPWaitForEvent(event_, nullptr, kDurationImmediate), noErr);
    EXPECT_EQ(wait(kDurationImmediate), Outcome(kMPTimeoutErr, kUntouched));
}

TEST_F(EventGroups, Set_WhileThreadsWait_ReleasesTheFirstOnly) {
    auto first = waitInThread(kDurationForever);
    untilAllOthersWait();
    auto second = waitInThread(kDurationForever);
    untilAllOthersWait();

    EXPECT_EQ(MPSetEvent(event_, 6), noErr);
    EXPECT_EQ(takeResult(first), Outcome(noErr, 6));
    EXPECT_EQ(second.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    EXPECT_EQ(wait(kDurationImmediate), Outcome(kMPTimeoutErr, kUntouched))
        << "the first waiter cleared the group";

    EXPECT_EQ(MPSetEvent(event_, 8), noErr);
    EXPECT_EQ(takeResult(second), Outcome(noErr, 8));
}

TEST_F(EventGroups, Set_OfNoFlags_ReleasesNoThread) {
    auto waiter = waitInThread(kDurationForever);
    untilAllOthersWait();
    EXPECT_EQ(MPSetEvent(event_, 0), noErr);
    untilAllOthersWait();
    EXPECT_EQ(waiter.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    EXPECT_EQ(MPSetEvent(event_, 1), noErr);
    EXPECT_EQ(takeResult(waiter), Outcome(noErr, 1));
}

TEST_F(EventGroups, Wait_ForMilliseconds_TimesOutNotBeforeThat) {
    EXPECT_GE(measureDuration([this] { wait(30); }), std::chrono::milliseconds(30));
}

TEST_F(EventGroups, Delete_WhileThreadsWait_ReleasesThemAllWithDeleted) {
    auto first = waitInThread(kDurationForever);
    auto second = waitInThread(0x7FFFFFFE);
    auto third = waitInThread(kDurationForever);
    untilAllOthersWait();
    EXPECT_EQ(MPDeleteEvent(event_), noErr);
    EXPECT_EQ(takeResult(first), Outcome(kMPDeletedErr, kUntouched));
    EXPECT_EQ(takeResult(second), Outcome(kMPDeletedErr, kUntouched));
    EXPECT_EQ(takeResult(third), Outcome(kMPDeletedErr, kUntouched));
}

TEST_F(EventGroups, Delete_OfASetEvent_DropsItsFlags) {
    ASSERT_EQ(MPSetEvent(event_, 1), noErr);
    ASSERT_EQ(MPDeleteEvent(event_), noErr);
    EXPECT_EQ(wait(kDurationImmediate), Outcome(kMPInvalidIDErr, kUntouched));
}

TEST_F(EventGroups, EveryCall_WithAnIdentifierOfADeletedEvent_IsInvalidID) {
    ASSERT_EQ(MPDeleteEvent(event_), noErr);
    MPEventID next = kInvalidID;
    ASSERT_EQ(MPCreateEvent(&next), noErr);
    ASSERT_EQ(MPSetEvent(next, 1), noErr);
    EXPECT_EQ(wait(kDurationForever), Outcome(kMPInvalidIDErr, kUntouched));
    EXPECT_EQ(MPSetEvent(event_, 1), kMPInvalidIDErr);
    EXPECT_EQ(MPDeleteEvent(event_), kMPInvalidIDErr);
    EXPECT_EQ(MPDeleteEvent(next), noErr);
}

TEST_F(EventGroups, EveryCall_WithNoIdentifier_IsInvalidID) {
    EXPECT_EQ(MPWaitForEvent(kInvalidID, nullptr, kDurationForever), kMPInvalidIDErr);
    EXPECT_EQ(MPSetEvent(kInvalidID, 1), kMPInvalidIDErr);
    EXPECT_EQ(MPDeleteEvent(kInvalidID), kMPInvalidIDErr);
}

}  // namespace
