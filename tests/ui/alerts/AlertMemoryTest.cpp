// Makes each allocation of an alert fail once, one after the other. The alert must not throw.
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
    // The platform's initialisation at the first alert is not the library's
    // responsibility, so it is done first.
    answerWithoutWindows();
    int answer = -1;
    test::refuseEachRequest([&] { answer = answerWithoutWindows(); },
                            [&](bool) { EXPECT_EQ(answer, kAlertAnswerNotShown); });
    testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace dovrel
