// The exact calls and arguments with which synchronization objects and tasks use the platform.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/synchronization/MacOSXCriticalSection.h"
#include "platform/synchronization/MacOSXMutex.h"
#include "platform/synchronization/MacOSXSynchronizationEvent.h"
#include "platform/synchronization/SynchronizationFactory.h"
#include "platform/tasks/Tasks.h"
#include "tests/platform/RecordedServices.h"

namespace dovrel {
namespace {

using test::services;
using testing::ElementsAre;
using testing::IsEmpty;

class ServiceCalls : public testing::Test {
  protected:
    void SetUp() override { services = {}; }
};

OSStatus neverRun(void*) {
    return noErr;
}

TEST_F(ServiceCalls, CriticalSection_EntersAndLeavesARegionThatItDeletes) {
    {
        const auto section = createCriticalSection();
        section->enter();
        section->leave();
    }
    EXPECT_THAT(services.calls, ElementsAre("create region", "enter region 256 for 2147483647",
                                            "exit region 256", "delete region 256"));
}

TEST_F(ServiceCalls, CriticalSection_DoesNotLookAtTheStatus) {
    MacOSXCriticalSection section;
    services.use = kMPTimeoutErr;
    section.enter();
    section.leave();
}

TEST_F(ServiceCalls, Mutex_IsABinarySemaphoreThatStartsFree) {
    { const auto mutex = createMutex(); }
    EXPECT_THAT(services.calls, ElementsAre("create semaphore 1 1", "delete semaphore 256"));
}

TEST_F(ServiceCalls, MutexLock_PassesEveryTimeoutButMinusOneUnchanged) {
    MacOSXMutex mutex;
    services.calls.clear();
    EXPECT_TRUE(mutex.lock(-1));
    EXPECT_TRUE(mutex.lock(0));
    EXPECT_TRUE(mutex.lock(500));
    EXPECT_TRUE(mutex.lock(-2));
    EXPECT_TRUE(mutex.wait(-1));
    EXPECT_TRUE(mutex.wait(7));
    EXPECT_THAT(services.calls,
                ElementsAre("wait on semaphore 256 for 2147483647", "wait on semaphore 256 for 0",
                            "wait on semaphore 256 for 500", "wait on semaphore 256 for -2",
                            "wait on semaphore 256 for 2147483647", "wait on semaphore 256 for 7"));
}

TEST_F(ServiceCalls, MutexLockAndUnlock_AreTrueExactlyAtNoErr) {
    MacOSXMutex mutex;
    for (const OSStatus status : {OSStatus{kMPTimeoutErr}, OSStatus{kMPDeletedErr}, OSStatus{kMPInvalidIDErr},
                                  OSStatus{kMPInsufficientResourcesErr}, OSStatus{1}}) {
        services.use = status;
        EXPECT_FALSE(mutex.lock(-1)) << status;
        EXPECT_FALSE(mutex.unlock()) << status;
    }
    services.use = noErr;
    EXPECT_TRUE(mutex.lock(-1));
    EXPECT_TRUE(mutex.unlock());
}

TEST_F(ServiceCalls, MutexWithIdentifierZero_ReturnsFalseWithoutACall) {
    services.createdId = 0;
    {
        MacOSXMutex mutex;
        services.calls.clear();
        EXPECT_FALSE(mutex.lock(-1));
        EXPECT_FALSE(mutex.lock(0));
        EXPECT_FALSE(mutex.wait(-1));
        EXPECT_FALSE(mutex.unlock());
    }
    EXPECT_THAT(services.calls, IsEmpty()) << "there is nothing to delete either";
}

TEST_F(ServiceCalls, EventWait_WaitsForEverOrNotAtAll) {
    MacOSXSynchronizationEvent event(true, false);
    services.calls.clear();
    event.wait(-1);
    event.wait(0);
    event.wait(500);
    event.wait(-2);
    EXPECT_THAT(
        services.calls,
        ElementsAre("wait for event 256 with flags 0 for 2147483647", "wait for event 256 with flags 0 for 0",
                    "wait for event 256 with flags 0 for 0", "wait for event 256 with flags 0 for 0"));
}

TEST_F(ServiceCalls, EventWait_IsFalseAtTheTimeoutStatusOnly) {
    MacOSXSynchronizationEvent event(true, false);
    for (const OSStatus status :
         {OSStatus{noErr}, OSStatus{kMPDeletedErr}, OSStatus{kMPInvalidIDErr}, OSStatus{1}}) {
        services.use = status;
        EXPECT_TRUE(event.wait(-1)) << status;
    }
    services.use = kMPTimeoutErr;
    EXPECT_FALSE(event.wait(-1));
}

TEST_F(ServiceCalls, Event_IsSignalledByDeletionAndResetByANewOne) {
    {
        const auto event = createSynchronizationEvent(true, true);
        event->signal();
        services.createdId = 0x200;
        event->reset();
        event->wait(0);
    }
    EXPECT_THAT(services.calls, ElementsAre("create event", "delete event 256", "create event",
                                            "wait for event 512 with flags 0 for 0"))
        << "the destructor deletes nothing";
}

TEST_F(ServiceCalls, StartTask_AsksForAPlainTask) {
    EXPECT_EQ(startTask(neverRun, nullptr), noErr);
    EXPECT_THAT(services.calls, ElementsAre("create task with stack 0, queue 0, parameters 0 0, options 0"));
}

TEST_F(ServiceCalls, CurrentProcessId_IsWhatTheProcessManagerAnswers) {
    EXPECT_EQ(currentProcessId(), 4711);
}

}  // namespace
}  // namespace dovrel
