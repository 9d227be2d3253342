// Alerts during which the library or the platform fails. The linker redirects two calls that every alert makes.
#import <Foundation/Foundation.h>

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <string>

#include "client/exceptions/CPPException.h"
#include "ui/alerts/MacOSXMessageDialog.h"

namespace {

enum class Fault { inTheLibrary, inThePlatform };

Fault fault;
int deletedFailures = 0;

struct WatchedFailure : dovrel::CPPException {
    ~WatchedFailure() override { ++deletedFailures; }
};

}  // namespace

extern "C" {
CFStringEncoding __real_CFStringGetSystemEncoding();
CFStringEncoding __wrap_CFStringGetSystemEncoding();
BOOL __wrap_NSApplicationLoad();
}
CFStringEncoding __wrap_CFStringGetSystemEncoding() {
    if (fault == Fault::inTheLibrary) throw new WatchedFailure;
    return __real_CFStringGetSystemEncoding();
}
BOOL __wrap_NSApplicationLoad() {
    [NSException raise:@"NoWindowServer" format:@"the test raises this"];
    return YES;
}

namespace dovrel {
namespace {

/// Shows an alert that fails, and expects its text in the system log.
void expectLoggedInsteadOfShown() {
    testing::internal::CaptureStderr();
    EXPECT_EQ(MacOSXMessageDialog().showAlert("Title", "The text."), kAlertAnswerNotShown);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("message of the failed dialogue:  \n \"The text.\""), std::string::npos) << log;
}

TEST(AlertFailure, ExceptionOfTheLibrary_IsDeletedAndTheAlertCountsAsNotShown) {
    fault = Fault::inTheLibrary;
    expectLoggedInsteadOfShown();
    EXPECT_EQ(deletedFailures, 1);
}

TEST(AlertFailure, ExceptionOfThePlatform_IsCaughtAndTheAlertCountsAsNotShown) {
    fault = Fault::inThePlatform;
    expectLoggedInsteadOfShown();
}

}  // namespace
}  // namespace dovrel
