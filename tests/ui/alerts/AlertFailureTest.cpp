// An alert during which the library itself fails. The linker redirects a call that every alert makes.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include "client/exceptions/CPPException.h"
#include "ui/alerts/MacOSXMessageDialog.h"

namespace {

int deletedFailures = 0;

struct WatchedFailure : dovrel::CPPException {
    ~WatchedFailure() override { ++deletedFailures; }
};

}  // namespace

extern "C" CFStringEncoding __wrap_CFStringGetSystemEncoding();
extern "C" CFStringEncoding __wrap_CFStringGetSystemEncoding() {
    throw new WatchedFailure;
}

namespace dovrel {
namespace {

TEST(AlertFailure, ExceptionOfTheLibrary_IsDeletedAndTheAlertCountsAsNotShown) {
    EXPECT_EQ(MacOSXMessageDialog().showAlert("Title", "Body"), kAlertAnswerNotShown);
    EXPECT_EQ(deletedFailures, 1);
}

}  // namespace
}  // namespace dovrel
