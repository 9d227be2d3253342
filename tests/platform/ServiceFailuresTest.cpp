// The behaviour if services are not ready, or if the platform has no more resources.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>
#include <locale>
#include <string>

#include "platform/SystemException.h"
#include "platform/synchronization/MacOSXSynchronizationEvent.h"
#include "platform/synchronization/SynchronizationFactory.h"
#include "platform/tasks/BackgroundTask.h"
#include "platform/tasks/Tasks.h"
#include "tests/platform/RecordedServices.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::failureOf;
using test::services;
using testing::StrEq;

class ServiceFailures : public testing::Test {
  protected:
    void SetUp() override { services = {}; }
};

OSStatus neverRun(void*) {
    return noErr;
}

// Runs `create` with services that are not ready, and with services that fail. Checks what it throws.
template <class Create>
void expectFailure(Create create, const char* location, const char* message) {
    for (const bool areReady : {false, true}) {
        services.areReady = areReady;
        services.creation = kMPInsufficientResourcesErr;
        services.calls.clear();
        const auto failure = failureOf<SystemException>(create);
        ASSERT_NE(failure, nullptr);
        EXPECT_THAT(failure->getMessage(), StrEq(message));
        EXPECT_THAT(failure->getDetail(), StrEq(location));
        EXPECT_EQ(failure->getCode(), 0);
        EXPECT_EQ(failure->getErrorCode(), 0) << "the status is not carried";
        EXPECT_EQ(services.calls.empty(), !areReady) << "nothing is asked of services that are not ready";
        EXPECT_LE(services.calls.size(), 1u) << "nothing is deleted";
    }
}

TEST_F(ServiceFailures, CriticalSectionThatCannotBeMade_ThrowsASystemException) {
    expectFailure([] { createCriticalSection(); }, "MacOSXCriticalSection::MacOSXCriticalSection",
                  " Can not create MacOSXCriticalSection");
}

TEST_F(ServiceFailures, MutexThatCannotBeMade_ThrowsASystemException) {
    expectFailure([] { createMutex(); }, "MacOSXMutex::MacOSXMutex", " Can not create MacOSXMutex");
}

TEST_F(ServiceFailures, EventThatCannotBeMade_ThrowsASystemException) {
    expectFailure([] { createSynchronizationEvent(true, false); }, "391FF30B01BC",
                  " Can not create MacOSXSynchronizationEvent");
}

TEST_F(ServiceFailures, EventThatCannotBeReset_ThrowsASystemException) {
    MacOSXSynchronizationEvent event(true, false);
    expectFailure([&] { event.reset(); }, "391FE75101BA", " Can not create MacOSXSynchronizationEvent");
}

TEST_F(ServiceFailures, EventThatCouldNotBeReset_StaysSignalled) {
    MacOSXSynchronizationEvent event(true, false);
    event.signal();
    services.creation = kMPInsufficientResourcesErr;
    ASSERT_NE(failureOf<SystemException>([&] { event.reset(); }), nullptr);
    services.calls.clear();
    services.use = kMPInvalidIDErr;
    EXPECT_TRUE(event.wait(0));
    EXPECT_EQ(services.calls.back(), "wait for event 256 with flags 0 for 0");
}

TEST_F(ServiceFailures, TaskThatCannotBeStarted_IsWrittenToStandardOutput) {
    services.taskCreation = kMPInsufficientResourcesErr;
    testing::internal::CaptureStdout();
    EXPECT_EQ(startTask(neverRun, nullptr), kMPInsufficientResourcesErr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "MPCreateTask() returned error: -29298\n");
}

TEST_F(ServiceFailures, TaskThatCannotBeStarted_IsWrittenInDecimalWhateverFormatTheHostUses) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    services.taskCreation = kMPInsufficientResourcesErr;
    const std::locale grouped = std::cout.imbue(std::locale(std::locale::classic(), new Grouping));
    std::cout << std::hex << std::showbase << std::setfill('*') << std::setw(50);
    testing::internal::CaptureStdout();
    EXPECT_EQ(startTask(neverRun, nullptr), kMPInsufficientResourcesErr);
    const std::string line = testing::internal::GetCapturedStdout();
    std::cout << std::dec << std::noshowbase << std::setfill(' ') << std::setw(0);
    std::cout.imbue(grouped);
    EXPECT_EQ(line, "MPCreateTask() returned error: -29298\n");
}

TEST_F(ServiceFailures, BackgroundTaskThatCannotBeStarted_ThrowsWithTheStatusAndRunsNothing) {
    services.taskCreation = kMPInsufficientResourcesErr;
    bool ran = false;
    testing::internal::CaptureStdout();
    const auto failure = failureOf<SystemException>([&] { runInBackground([&] { ran = true; }); });
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "MPCreateTask() returned error: -29298\n");
    ASSERT_NE(failure, nullptr);
    EXPECT_THAT(failure->getMessage(), StrEq("System error: -29298"));
    EXPECT_EQ(failure->getErrorCode(), -29298);
    EXPECT_FALSE(ran);
    EXPECT_THAT(services.calls, testing::Contains(testing::StartsWith("delete event")));
}

TEST_F(ServiceFailures, ProcessThatIsNotFound_HasIdZero) {
    services.processLookup = procNotFound;
    EXPECT_EQ(currentProcessId(), 0);
}

}  // namespace
}  // namespace dovrel
