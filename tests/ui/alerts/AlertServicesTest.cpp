// The thread on which an alert runs, and the line that is logged for an alert that is not shown. The services that
// tell threads apart, the window classes and the system log are doubles.
#include <CoreServices/CoreServices.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/trace/SystemLog.h"
#include "ui/alerts/MacOSXMessageDialog.h"
#include "ui/alerts/ModalAlert.h"

namespace {

struct Services {
    bool areReady = true;
    bool isPreemptive = true;
    bool runRemoteCalls = true;
    bool showAlerts = true;
    std::vector<std::string> calls;
};

Services services;

}  // namespace

extern "C" {
Boolean __wrap__MPIsFullyInitialized();
Boolean __wrap_MPTaskIsPreemptive(MPTaskID task);
void* __wrap_MPRemoteCall(MPRemoteProcedure procedure, void* parameter, MPRemoteContext context);
}

Boolean __wrap__MPIsFullyInitialized() {
    return services.areReady;
}

Boolean __wrap_MPTaskIsPreemptive(MPTaskID task) {
    services.calls.push_back("is task " + std::to_string(reinterpret_cast<uintptr_t>(task)) + " preemptive");
    return services.isPreemptive;
}

void* __wrap_MPRemoteCall(MPRemoteProcedure procedure, void* parameter, MPRemoteContext context) {
    services.calls.push_back("remote call with context " + std::to_string(context));
    if (services.runRemoteCalls) procedure(parameter);
    services.calls.emplace_back("end of the remote call");
    return nullptr;
}

namespace dovrel {

bool runModalAlert(const ModalAlert& alert, bool* pressedFirst) noexcept {
    services.calls.push_back(std::string("alert ") + alert.body);
    if (services.showAlerts) *pressedFirst = true;
    return services.showAlerts;
}

void writeToSystemLog(const std::string& line) noexcept {
    services.calls.push_back("log " + line);
}

namespace {

using testing::ElementsAre;

class AlertServices : public testing::Test {
  protected:
    void SetUp() override { services = {}; }

    static int showAlert() {
        return MacOSXMessageDialog().showAlert("Title", "Body", kAlertButtonsRetryCancel, 0);
    }
};

TEST_F(AlertServices, OnAPreemptiveTask_TheAlertRunsInOneRemoteCallAndItsAnswerIsReturned) {
    EXPECT_EQ(showAlert(), kAlertAnswerRetry);
    EXPECT_THAT(services.calls, ElementsAre("is task 0 preemptive", "remote call with context 1",
                                            "alert Body", "end of the remote call"));
}

TEST_F(AlertServices, ARemoteCallThatDoesNotRunTheAlert_CountsAsNotShown) {
    services.runRemoteCalls = false;
    EXPECT_EQ(showAlert(), kAlertAnswerNotShown);
    EXPECT_THAT(services.calls,
                ElementsAre("is task 0 preemptive", "remote call with context 1", "end of the remote call"));
}

TEST_F(AlertServices, OnATaskThatIsNotPreemptive_TheAlertRunsWithoutARemoteCall) {
    services.isPreemptive = false;
    EXPECT_EQ(showAlert(), kAlertAnswerRetry);
    EXPECT_THAT(services.calls, ElementsAre("is task 0 preemptive", "alert Body"));
}

TEST_F(AlertServices, BeforeTheServicesAreReady_TheAlertRunsWithoutARemoteCall) {
    services.areReady = false;
    EXPECT_EQ(showAlert(), kAlertAnswerRetry);
    EXPECT_THAT(services.calls, ElementsAre("alert Body"));
}

TEST_F(AlertServices, AnAlertThatIsNotShown_IsLoggedWithAQuoteAndALineFeedAtItsEnd) {
    services.areReady = false;
    services.showAlerts = false;
    EXPECT_EQ(showAlert(), kAlertAnswerNotShown);
    EXPECT_THAT(services.calls, ElementsAre("alert Body",
                                            "log Couldn't initialise NSApplication! No Error dialogue shown; "
                                            "message of the failed dialogue:  \n \"Body\"\n"));
}

TEST_F(AlertServices, AnAlertThatIsNotShownInARemoteCall_IsLoggedThere) {
    services.showAlerts = false;
    EXPECT_EQ(showAlert(), kAlertAnswerNotShown);
    EXPECT_THAT(services.calls,
                ElementsAre("is task 0 preemptive", "remote call with context 1", "alert Body",
                            testing::StartsWith("log "), "end of the remote call"));
}

}  // namespace
}  // namespace dovrel
