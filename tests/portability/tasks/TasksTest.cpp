// Contract tests of tasks.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include "WaitingThreads.h"

namespace {

// The observations of a task, and the event that it sets when it is done.
struct Visit {
    MPEventID done = kInvalidID;
    Boolean preemptive = false;
    std::thread::id thread;
    size_t stackBytes = 0;
};

OSStatus visit(void* parameter) {
    Visit& seen = *static_cast<Visit*>(parameter);
    seen.preemptive = MPTaskIsPreemptive(kInvalidID);
    seen.thread = std::this_thread::get_id();
    MPSetEvent(seen.done, 1);
    return noErr;
}

OSStatus useTheStack(void* parameter) {
    Visit& seen = *static_cast<Visit*>(parameter);
    volatile char room[256 * 1024];
    for (size_t i = 0; i < sizeof room; i += 1024)
        room[i] = 1;
    for (size_t i = 0; i < sizeof room; i += 1024)
        seen.stackBytes += static_cast<size_t>(room[i]);
    MPSetEvent(seen.done, 1);
    return noErr;
}

class Tasks : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(MPCreateEvent(&visit_.done), noErr); }
    void TearDown() override { MPDeleteEvent(visit_.done); }

    OSStatus start(TaskProc entry, ByteCount stackSize, MPTaskOptions options, MPTaskID* task) {
        return MPCreateTask(entry, &visit_, stackSize, kInvalidID, nullptr, nullptr, options, task);
    }

    OSStatus waitForVisit() { return MPWaitForEvent(visit_.done, nullptr, 60000); }

    Visit visit_;
};

TEST_F(Tasks, FullyInitialized_IsAlwaysTrue) {
    EXPECT_TRUE(_MPIsFullyInitialized());
}

TEST_F(Tasks, Create_RunsTheEntryOnAThreadOfItsOwn) {
    MPTaskID task = kInvalidID;
    ASSERT_EQ(start(visit, 0, 0, &task), noErr);
    EXPECT_NE(task, nullptr);
    ASSERT_EQ(waitForVisit(), noErr);
    EXPECT_NE(visit_.thread, std::this_thread::get_id());
}

TEST_F(Tasks, IsPreemptive_InATask_IsTrue) {
    ASSERT_EQ(start(visit, 0, 0, nullptr), noErr);
    ASSERT_EQ(waitForVisit(), noErr);
    EXPECT_TRUE(visit_.preemptive);
}

TEST_F(Tasks, IsPreemptive_OnTheMainThread_IsFalse) {
    EXPECT_FALSE(MPTaskIsPreemptive(kInvalidID));
}

TEST_F(Tasks, IsPreemptive_InAThreadThatIsNotATask_IsTrue) {
    auto thread = inThread([] { return MPTaskIsPreemptive(kInvalidID); });
    EXPECT_TRUE(takeResult(thread));
}

TEST_F(Tasks, IsPreemptive_OfAnotherTaskThatRuns_IsTrue) {
    MPTaskID task = kInvalidID;
    auto waitForSet = [](void* event) {
        return MPWaitForEvent(static_cast<MPEventID>(event), nullptr, 60000);
    };
    ASSERT_EQ(MPCreateTask(waitForSet, visit_.done, 0, kInvalidID, nullptr, nullptr, 0, &task), noErr);
    EXPECT_TRUE(MPTaskIsPreemptive(task));
    ASSERT_EQ(MPSetEvent(visit_.done, 1), noErr);
    EXPECT_TRUE(dovrel::test::waitUntil([task] { return !MPTaskIsPreemptive(task); }))
        << "the identifier ends with the task";
}

TEST_F(Tasks, Create_WithTheOptionsForExceptionsAndDebugging_Works) {
    ASSERT_EQ(start(visit, 0, kMPCreateTaskTakesAllExceptionsMask | kMPCreateTaskNotDebuggableMask, nullptr),
              noErr);
    EXPECT_EQ(waitForVisit(), noErr);
}

TEST_F(Tasks, Create_WithReservedOptions_IsInsufficientResources) {
    MPTaskID untouched = reinterpret_cast<MPTaskID>(this);
    EXPECT_EQ(start(visit, 0, 0x80, &untouched), kMPInsufficientResourcesErr);
    EXPECT_EQ(untouched, reinterpret_cast<MPTaskID>(this));
}

TEST_F(Tasks, Create_WithMoreStackThanThereIs_IsInsufficientResources) {
    MPTaskID untouched = reinterpret_cast<MPTaskID>(this);
    EXPECT_EQ(start(visit, ~ByteCount{0} / 16 * 15, 0, &untouched), kMPInsufficientResourcesErr);
    EXPECT_EQ(untouched, reinterpret_cast<MPTaskID>(this));
}

TEST_F(Tasks, Create_WithASmallStack_HasRoomForTheSystem) {
    ASSERT_EQ(start(useTheStack, 4096, 0, nullptr), noErr);
    ASSERT_EQ(waitForVisit(), noErr);
    EXPECT_EQ(visit_.stackBytes, 256u);
}

TEST_F(Tasks, ManyTasks_AllRun) {
    constexpr int kTasks = 200;
    MPSemaphoreID done = kInvalidID;
    ASSERT_EQ(MPCreateSemaphore(kTasks, 0, &done), noErr);
    auto signal = [](void* semaphore) { return MPSignalSemaphore(static_cast<MPSemaphoreID>(semaphore)); };
    for (int i = 0; i < kTasks; ++i) {
        ASSERT_EQ(MPCreateTask(signal, done, 0, kInvalidID, nullptr, nullptr, 0, nullptr), noErr);
    }
    for (int i = 0; i < kTasks; ++i)
        ASSERT_EQ(MPWaitOnSemaphore(done, 60000), noErr);
    EXPECT_EQ(MPDeleteSemaphore(done), noErr);
}

}  // namespace
