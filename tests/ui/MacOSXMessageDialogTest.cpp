#include "ui/MacOSXMessageDialog.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace dovrel {
namespace {

/// A process without a window system.
class MacOSXMessageDialogTest : public testing::Test {
  protected:
    MacOSXMessageDialogTest() {
        setenv("HOME", home_.path().c_str(), 1);
        unsetenv("DISPLAY");
    }

    /// What the system log gets to hear while the alert is asked for.
    std::string logOf(const char* title, const char* body, int buttons) {
        testing::internal::CaptureStderr();
        answer_ = dialog_.showAlert(title, body, buttons, 0);
        return testing::internal::GetCapturedStderr();
    }

    test::TemporaryFolder home_;
    MacOSXMessageDialog dialog_;
    int answer_ = -1;
};

TEST_F(MacOSXMessageDialogTest, WithoutAWindowSystem_LogsTheBodyAndAnswers0) {
    const std::string log = logOf("Title", "The body of it.", 2);
    EXPECT_NE(
        log.find(
            "Couldn't initialise NSApplication! No Error dialogue shown; message of the failed dialogue:  "
            "\n \"The body of it.\"\n"),
        std::string::npos)
        << log;
    EXPECT_EQ(answer_, 0);
}

TEST_F(MacOSXMessageDialogTest, NullTexts_CountAsEmpty) {
    const std::string log = logOf(nullptr, nullptr, 0);
    EXPECT_NE(log.find("message of the failed dialogue:  \n \"\"\n"), std::string::npos) << log;
    EXPECT_EQ(answer_, 0);
}

TEST_F(MacOSXMessageDialogTest, BodyWithPercentSigns_IsNoFormat) {
    const std::string log = logOf("Title", "100 %s %@ %n", 0);
    EXPECT_NE(log.find("\"100 %s %@ %n\"\n"), std::string::npos) << log;
}

}  // namespace
}  // namespace dovrel
