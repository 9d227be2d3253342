// Contract tests of critical regions.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <vector>

#include "WaitingThreads.h"

namespace {

class CriticalRegions : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(MPCreateCriticalRegion(&region_), noErr); }
    void TearDown() override { MPDeleteCriticalRegion(region_); }

    std::future<OSStatus> enterInThread(Duration timeout) {
        return inThread([this, timeout] { return MPEnterCriticalRegion(region_, timeout); });
    }

    OSStatus enterElsewhere(Duration timeout) {
        auto pending = enterInThread(timeout);
        return takeResult(pending);
    }

    MPCriticalRegionID region_ = kInvalidID;
};

TEST_F(CriticalRegions, Create_ReturnsAnIdentifier) {
    EXPECT_NE(region_, nullptr);
}

TEST_F(CriticalRegions, Enter_ByTheOwnerAgain_NeedsAnExitOfItsOwn) {
    EXPECT_EQ(MPEnterCriticalRegion(region_, kDurationForever), noErr);
    EXPECT_EQ(MPEnterCriticalRegion(region_, kDurationForever), noErr);
    EXPECT_EQ(enterElsewhere(kDurationImmediate), kMPTimeoutErr);

    EXPECT_EQ(MPExitCriticalRegion(region_), noErr);
    EXPECT_EQ(enterElsewhere(kDurationImmediate), kMPTimeoutErr);

    EXPECT_EQ(MPExitCriticalRegion(region_), noErr);
    EXPECT_EQ(enterElsewhere(kDurationImmediate), noErr);
}

TEST_F(CriticalRegions, Exit_ByAThreadThatIsNotTheOwner_IsInsufficientResources) {
    ASSERT_EQ(MPEnterCriticalRegion(region_, kDurationForever), noErr);
    auto other = inThread([this] { return MPExitCriticalRegion(region_); });
    EXPECT_EQ(takeResult(other), kMPInsufficientResourcesErr);
    EXPECT_EQ(enterElsewhere(kDurationImmediate), kMPTimeoutErr) << "the region is still occupied";
}

TEST_F(CriticalRegions, Exit_OfAFreeRegion_IsInsufficientResources) {
    EXPECT_EQ(MPExitCriticalRegion(region_), kMPInsufficientResourcesErr);
    ASSERT_EQ(MPEnterCriticalRegion(region_, kDurationForever), noErr);
    ASSERT_EQ(MPExitCriticalRegion(region_), noErr);
    EXPECT_EQ(MPExitCriticalRegion(region_), kMPInsufficientResourcesErr);
}

TEST_F(CriticalRegions, Enter_OfAnOccupiedRegionForMilliseconds_TimesOutNotBeforeThat) {
    ASSERT_EQ(MPEnterCriticalRegion(region_, kDurationForever), noErr);
    auto other = inThread([this] {
        return measureDuration([this] { EXPECT_EQ(MPEnterCriticalRegion(region_, 30), kMPTimeoutErr); });
    });
    EXPECT_GE(takeResult(other), std::chrono::milliseconds(30));
}

TEST_F(CriticalRegions, Enter_OfAnOccupiedRegionForever_WaitsForTheLastExit) {
    ASSERT_EQ(MPEnterCriticalRegion(region_, kDurationForever), noErr);
    ASSERT_EQ(MPEnterCriticalRegion(region_, kDurationForever), noErr);
    auto other = enterInThread(kDurationForever);
    untilAllOthersWait();
    ASSERT_EQ(MPExitCriticalRegion(region_), noErr);
    untilAllOthersWait();
    EXPECT_EQ(other.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    ASSERT_EQ(MPExitCriticalRegion(region_), noErr);
    EXPECT_EQ(takeResult(other), noErr);
}

TEST_F(CriticalRegions, Enter_ByManyThreads_LetsOneAtATimeIn) {
    constexpr int kThreads = 8;
    constexpr int kRounds = 500;
    long visits = 0;  // protected only by the region
    std::vector<std::future<void>> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.push_back(inThread([this, &visits] {
            for (int round = 0; round < kRounds; ++round) {
                MPEnterCriticalRegion(region_, kDurationForever);
                ++visits;
                MPExitCriticalRegion(region_);
            }
        }));
    }
    for (auto& thread : threads)
        thread.get();
    EXPECT_EQ(visits, kThreads * kRounds);
}

TEST_F(CriticalRegions, Delete_WhileThreadsWait_ReleasesThemWithDeleted) {
    ASSERT_EQ(MPEnterCriticalRegion(region_, kDurationForever), noErr);
    auto first = enterInThread(kDurationForever);
    auto second = enterInThread(kDurationForever - 1);
    untilAllOthersWait();
    EXPECT_EQ(MPDeleteCriticalRegion(region_), noErr);
    EXPECT_EQ(takeResult(first), kMPDeletedErr);
    EXPECT_EQ(takeResult(second), kMPDeletedErr);
}

TEST_F(CriticalRegions, EveryCall_WithAnIdentifierOfADeletedRegion_IsInvalidID) {
    ASSERT_EQ(MPEnterCriticalRegion(region_, kDurationForever), noErr);
    ASSERT_EQ(MPDeleteCriticalRegion(region_), noErr);
    EXPECT_EQ(MPEnterCriticalRegion(region_, kDurationImmediate), kMPInvalidIDErr);
    EXPECT_EQ(MPEnterCriticalRegion(region_, kDurationForever), kMPInvalidIDErr);
    EXPECT_EQ(MPExitCriticalRegion(region_), kMPInvalidIDErr);
    EXPECT_EQ(MPDeleteCriticalRegion(region_), kMPInvalidIDErr);
}

TEST_F(CriticalRegions, EveryCall_WithNoIdentifier_IsInvalidID) {
    EXPECT_EQ(MPEnterCriticalRegion(kInvalidID, kDurationForever), kMPInvalidIDErr);
    EXPECT_EQ(MPExitCriticalRegion(kInvalidID), kMPInvalidIDErr);
    EXPECT_EQ(MPDeleteCriticalRegion(kInvalidID), kMPInvalidIDErr);
}

TEST_F(CriticalRegions, DeletedIdentifier_AfterManyNewRegions_NamesNoneOfThem) {
    const MPCriticalRegionID stale = region_;
    ASSERT_EQ(MPDeleteCriticalRegion(region_), noErr);
    for (int i = 0; i < 2000; ++i) {
        MPCriticalRegionID next = kInvalidID;
        ASSERT_EQ(MPCreateCriticalRegion(&next), noErr);
        ASSERT_EQ(MPEnterCriticalRegion(stale, kDurationImmediate), kMPInvalidIDErr);
        ASSERT_EQ(MPDeleteCriticalRegion(next), noErr);
    }
}

TEST_F(CriticalRegions, ManyAtOnce_AreAllDistinct) {
    std::vector<MPCriticalRegionID> regions(1000, nullptr);
    for (auto& region : regions)
        ASSERT_EQ(MPCreateCriticalRegion(&region), noErr);
    for (auto& region : regions)
        ASSERT_EQ(MPEnterCriticalRegion(region, kDurationImmediate), noErr);
    auto other = inThread([&regions] {
        int occupied = 0;
        for (auto& region : regions)
            occupied += MPEnterCriticalRegion(region, kDurationImmediate) == kMPTimeoutErr;
        return occupied;
    });
    EXPECT_EQ(takeResult(other), 1000);
    for (auto& region : regions)
        EXPECT_EQ(MPDeleteCriticalRegion(region), noErr);
}

}  // namespace
