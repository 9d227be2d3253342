#include "platform/tasks/Tasks.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

#include "platform/synchronization/SynchronizationFactory.h"

namespace dovrel {
namespace {

OSStatus signalEvent(void* event) {
    static_cast<SynchronizationEvent*>(event)->signal();
    return noErr;
}

TEST(Tasks, StartTask_RunsTheEntryWithItsParameter) {
    const auto event = createSynchronizationEvent(true, false);
    EXPECT_EQ(startTask(signalEvent, event.get()), noErr);
    EXPECT_TRUE(event->wait(kWaitForever));
}

TEST(Tasks, StartTask_ThatWorks_WritesNothing) {
    const auto event = createSynchronizationEvent(true, false);
    testing::internal::CaptureStdout();
    EXPECT_EQ(startTask(signalEvent, event.get()), noErr);
    event->wait(kWaitForever);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Tasks, SleepMilliseconds_TakesAtLeastThatLong) {
    const auto start = std::chrono::steady_clock::now();
    sleepMilliseconds(1100);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1100));
}

TEST(Tasks, SleepMilliseconds_OfZero_Returns) {
    sleepMilliseconds(0);
}

TEST(Tasks, CurrentProcessId_IsThatOfTheProcess) {
    EXPECT_EQ(currentProcessId(), getpid());
}

TEST(Tasks, CurrentProcessId_InAChild_IsThatOfTheChild) {
    const pid_t parent = currentProcessId();
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) _exit(currentProcessId() == getpid() && currentProcessId() != parent ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace dovrel
