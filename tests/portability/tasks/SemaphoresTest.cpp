// Contract tests of semaphores.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include "WaitingThreads.h"

namespace {

class Semaphores : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(MPCreateSemaphore(2, 0, &semaphore_), noErr); }
    void TearDown() override { MPDeleteSemaphore(semaphore_); }

    std::future<OSStatus> waitInThread(Duration timeout) {
        return inThread([this, timeout] { return MPWaitOnSemaphore(semaphore_, timeout); });
    }

    MPSemaphoreID semaphore_ = kInvalidID;
};

TEST_F(Semaphores, Create_TakesTheMaximumFirstAndThenTheInitialCount) {
    MPSemaphoreID three = kInvalidID;
    ASSERT_EQ(MPCreateSemaphore(3, 1, &three), noErr);
    EXPECT_EQ(MPWaitOnSemaphore(three, kDurationImmediate), noErr);
    EXPECT_EQ(MPWaitOnSemaphore(three, kDurationImmediate), kMPTimeoutErr);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(MPSignalSemaphore(three), noErr);
    EXPECT_EQ(MPSignalSemaphore(three), kMPInsufficientResourcesErr);
    EXPECT_EQ(MPDeleteSemaphore(three), noErr);
}

TEST_F(Semaphores, CreateBinary_HoldsOneUnitAtMost) {
    MPSemaphoreID binary = kInvalidID;
    ASSERT_EQ(MPCreateBinarySemaphore(&binary), noErr);
    EXPECT_EQ(MPSignalSemaphore(binary), kMPInsufficientResourcesErr);
    EXPECT_EQ(MPWaitOnSemaphore(binary, kDurationImmediate), noErr);
    EXPECT_EQ(MPWaitOnSemaphore(binary, kDurationImmediate), kMPTimeoutErr);
    EXPECT_EQ(MPDeleteSemaphore(binary), noErr);
}

TEST_F(Semaphores, Create_WithMoreThanTheMaximum_LeavesTheOutputUnchanged) {
    MPSemaphoreID untouched = semaphore_;
    EXPECT_NE(MPCreateSemaphore(1, 2, &untouched), noErr);
    EXPECT_EQ(untouched, semaphore_);
}

TEST_F(Semaphores, Signal_AtTheMaximum_ChangesNothing) {
    EXPECT_EQ(MPSignalSemaphore(semaphore_), noErr);
    EXPECT_EQ(MPSignalSemaphore(semaphore_), noErr);
    EXPECT_EQ(MPSignalSemaphore(semaphore_), kMPInsufficientResourcesErr);
    EXPECT_EQ(MPWaitOnSemaphore(semaphore_, kDurationImmediate), noErr);
    EXPECT_EQ(MPWaitOnSemaphore(semaphore_, kDurationImmediate), noErr);
    EXPECT_EQ(MPWaitOnSemaphore(semaphore_, kDurationImmediate), kMPTimeoutErr);
}

TEST_F(Semaphores, Signal_WhileThreadsWait_WakesTheOneThatHasWaitedLongest) {
    auto first = waitInThread(kDurationForever);
    untilAllOthersWait();
    auto second = waitInThread(kDurationForever);
    untilAllOthersWait();

    ASSERT_EQ(MPSignalSemaphore(semaphore_), noErr);
    EXPECT_EQ(takeResult(first), noErr);
    EXPECT_EQ(second.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    EXPECT_EQ(MPWaitOnSemaphore(semaphore_, kDurationImmediate), kMPTimeoutErr)
        << "the unit went to the waiter";

    ASSERT_EQ(MPSignalSemaphore(semaphore_), noErr);
    EXPECT_EQ(takeResult(second), noErr);
}

TEST_F(Semaphores, Signal_AfterAWaiterInTheMiddleTimedOut_GoesToTheNextOfTheOthers) {
    auto first = waitInThread(kDurationForever);
    untilAllOthersWait();
    auto second = waitInThread(kDurationMillisecond * 20);
    EXPECT_EQ(takeResult(second), kMPTimeoutErr);
    auto third = waitInThread(kDurationForever);
    untilAllOthersWait();
    ASSERT_EQ(MPSignalSemaphore(semaphore_), noErr);
    EXPECT_EQ(takeResult(first), noErr);
    ASSERT_EQ(MPSignalSemaphore(semaphore_), noErr);
    EXPECT_EQ(takeResult(third), noErr);
}

TEST_F(Semaphores, Signal_ByAThreadThatNeverWaited_IsAllowed) {
    auto other = inThread([this] { return MPSignalSemaphore(semaphore_); });
    EXPECT_EQ(takeResult(other), noErr);
    EXPECT_EQ(MPWaitOnSemaphore(semaphore_, kDurationImmediate), noErr);
}

TEST_F(Semaphores, Wait_ForAPositiveDuration_CountsMilliseconds) {
    const auto taken =
        measureDuration([this] { EXPECT_EQ(MPWaitOnSemaphore(semaphore_, 30), kMPTimeoutErr); });
    EXPECT_GE(taken, std::chrono::milliseconds(30));
}

TEST_F(Semaphores, Wait_ForANegativeDuration_CountsMicroseconds) {
    const Duration thirtyMilliseconds = kDurationMicrosecond * 30000;
    const auto taken =
        measureDuration([&] { EXPECT_EQ(MPWaitOnSemaphore(semaphore_, thirtyMilliseconds), kMPTimeoutErr); });
    EXPECT_GE(taken, std::chrono::milliseconds(30));
    EXPECT_LT(taken, std::chrono::seconds(30)) << "taken for milliseconds";
}

TEST_F(Semaphores, Wait_WithAUnitInTime_Succeeds) {
    auto waiter = waitInThread(0x7FFFFFFE);
    untilAllOthersWait();
    ASSERT_EQ(MPSignalSemaphore(semaphore_), noErr);
    EXPECT_EQ(takeResult(waiter), noErr);
}

TEST_F(Semaphores, Delete_WhileThreadsWait_ReleasesThemWithDeleted) {
    auto first = waitInThread(kDurationForever);
    auto second = waitInThread(0x7FFFFFFE);
    untilAllOthersWait();
    EXPECT_EQ(MPDeleteSemaphore(semaphore_), noErr);
    EXPECT_EQ(takeResult(first), kMPDeletedErr);
    EXPECT_EQ(takeResult(second), kMPDeletedErr);
}

TEST_F(Semaphores, EveryCall_WithAnIdentifierOfADeletedSemaphore_IsInvalidID) {
    ASSERT_EQ(MPDeleteSemaphore(semaphore_), noErr);
    MPSemaphoreID next = kInvalidID;
    ASSERT_EQ(MPCreateSemaphore(1, 1, &next), noErr);
    EXPECT_EQ(MPWaitOnSemaphore(semaphore_, kDurationForever), kMPInvalidIDErr);
    EXPECT_EQ(MPSignalSemaphore(semaphore_), kMPInvalidIDErr);
    EXPECT_EQ(MPDeleteSemaphore(semaphore_), kMPInvalidIDErr);
    EXPECT_EQ(MPDeleteSemaphore(next), noErr);
}

TEST_F(Semaphores, EveryCall_WithNoIdentifier_IsInvalidID) {
    EXPECT_EQ(MPWaitOnSemaphore(kInvalidID, kDurationForever), kMPInvalidIDErr);
    EXPECT_EQ(MPSignalSemaphore(kInvalidID), kMPInvalidIDErr);
    EXPECT_EQ(MPDeleteSemaphore(kInvalidID), kMPInvalidIDErr);
}

TEST_F(Semaphores, WaitersThatTimeOut_WhileUnitsAreGiven_LoseNone) {
    // Each unit must be taken exactly once, even if a signal arrives during a time-out.
    constexpr int kUnits = 300;
    std::atomic<int> taken{0};
    std::atomic<bool> stop{false};
    auto impatient = [&] {
        while (!stop)
            taken += MPWaitOnSemaphore(semaphore_, kDurationMicrosecond * 50) == noErr;
    };
    auto first = inThread(impatient);
    auto second = inThread(impatient);
    for (int given = 0; given < kUnits;)
        given += MPSignalSemaphore(semaphore_) == noErr;
    EXPECT_TRUE(dovrel::test::waitUntil([&taken] { return taken >= kUnits; }));
    stop = true;
    first.get();
    second.get();
    EXPECT_EQ(taken, kUnits);
}

}  // namespace
