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
int thrownFailures = 0;
int deletedFailures = 0;

struct WatchedFailure : dovrel::CPPException {
    WatchedFailure() { ++thrownFailures; }
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
void expectLoggedInsteadOfShown(const char* body = "The text.", const std::string& logged = "The text.") {
    testing::internal::CaptureStderr();
    EXPECT_EQ(MacOSXMessageDialog().showAlert("Title", body), kAlertAnswerNotShown);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("message of the failed dialogue:  \n \"" + logged + "\"\n"), std::string::npos) << log;
}

TEST(AlertFailure, ExceptionOfTheLibrary_IsDeletedAndTheAlertCountsAsNotShown) {
    fault = Fault::inTheLibrary;
    expectLoggedInsteadOfShown();
    EXPECT_GT(thrownFailures, 0);
    EXPECT_EQ(deletedFailures, thrownFailures);
}

TEST(AlertFailure, TextWhoseEncodingCannotBeDetermined_IsLoggedInASCII) {
    fault = Fault::inTheLibrary;
    expectLoggedInsteadOfShown("M\x9Fnchen\rBonn", "M?nchen\nBonn");
}

TEST(AlertFailure, TextInMacRoman_IsLoggedInUTF8) {
    fault = Fault::inThePlatform;
    expectLoggedInsteadOfShown("M\x9Fnchen\rBonn", "M\xC3\xBCnchen\nBonn");
}

TEST(AlertFailure, ExceptionOfThePlatform_IsCaughtAndTheAlertCountsAsNotShown) {
    fault = Fault::inThePlatform;
    expectLoggedInsteadOfShown();
}

}  // namespace
}  // namespace dovrel
