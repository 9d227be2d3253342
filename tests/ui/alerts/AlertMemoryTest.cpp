// Every request for memory of an alert fails once, one after the other: the alert throws nothing.
#include <cstdlib>

#include "tests/support/HeapWatch.h"
#include "tests/support/TemporaryFolder.h"
#include "ui/alerts/MacOSXMessageDialog.h"

namespace dovrel {
namespace {

int answerWithoutWindows() {
    MacOSXMessageDialog dialog;
    return dialog.showAlert("A title that is longer than what a string holds in itself",
                            "A body that is longer than that, gr\x9A\xA7"
                            "er",
                            kAlertButtonsRetryCancel, 0);
}

TEST(AlertMemory, AlertWithoutMemory_IsNotShownAndThrowsNothing) {
    const test::TemporaryFolder home;
    setenv("HOME", home.path().c_str(), 1);
    unsetenv("DISPLAY");
    testing::internal::CaptureStderr();
    // What the platform sets up at its first alert is not the library's to guard.
    answerWithoutWindows();
    int answer = -1;
    test::refuseEachRequest([&] { answer = answerWithoutWindows(); },
                            [&](bool) { EXPECT_EQ(answer, kAlertAnswerNotShown); });
    testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace dovrel
