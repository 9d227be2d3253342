// The texts and results of an alert. The helper follows the test's commands, so there are no windows.
#include "ui/alerts/MacOSXMessageDialog.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "settings/MultiLanguageSupport.h"
#include "tests/support/FakeAlertHelper.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel {
namespace {

using test::kShownEvent;
using test::pressedEvent;

constexpr char kTexts[] =
    "Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls";

class MacOSXMessageDialogTest : public testing::Test {
  protected:
    MacOSXMessageDialogTest() {
        setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
        setenv("HOME", root_.path("home").c_str(), 1);
        setenv("DISPLAY", ":1", 1);
        for (const char* variable : {"LANG", "LC_ALL", "LC_MESSAGES", "POS_ALERTS", "WAYLAND_DISPLAY"})
            unsetenv(variable);
        root_.write("home/.keep", "");
        root_.write(kTexts,
                    "//LANGUAGE\nSTR:English\n//GENERAL_BUTTON_OK\nSTR:Fine\n//GENERAL_BUTTON_CANCEL\n"
                    "STR:Never mind\n//GENERAL_BUTTON_RETRY\nSTR:Once more\n");
        MultiLanguageSupport::initialize("English");
    }

    /// Runs an alert whose first button is pressed; returns the request that the helper received.
    nlohmann::json makeRequest(const char* title, const char* body, int buttons = 0) {
        helper_.follow({kShownEvent, pressedEvent(0)});
        dialog_.showAlert(title, body, buttons, 0);
        return nlohmann::json::parse(helper_.note("request"));
    }

    std::vector<std::string> readCaptions(int buttons) { return makeRequest("T", "B", buttons)["buttons"]; }

    int answerTo(int pressed, int buttons) {
        helper_.follow({kShownEvent, pressedEvent(pressed)});
        return dialog_.showAlert("T", "B", buttons, 0);
    }

    /// Shows the alert; returns what was written to the system log during the call.
    std::string captureLog(const char* title, const char* body, int buttons) {
        testing::internal::CaptureStderr();
        answer_ = dialog_.showAlert(title, body, buttons, 0);
        return testing::internal::GetCapturedStderr();
    }

    test::TemporaryFolder root_;
    test::FakeAlertHelper helper_;
    MacOSXMessageDialog dialog_;
    int answer_ = -1;
};

// Texts and buttons.

TEST_F(MacOSXMessageDialogTest, TitleAndBody_AreThoseGivenAndLinesAreBroken) {
    const auto request = makeRequest("A failure", "One line\rand another\r\r100 % of \"it\"");
    EXPECT_EQ(request["title"], "A failure");
    EXPECT_EQ(request["body"], "One line\nand another\n\n100 % of \"it\"");
}

TEST_F(MacOSXMessageDialogTest, CarriageReturnAndLineFeed_AreOneLineEnd) {
    const auto request = makeRequest("A\r\nfailure", "One line\r\nand another\r\n\r\nand a last one");
    EXPECT_EQ(request["title"], "A\nfailure");
    EXPECT_EQ(request["body"], "One line\nand another\n\nand a last one");
}

TEST_F(MacOSXMessageDialogTest, SystemEncoding_IsMacRoman) {
    const auto request = makeRequest("\x8a\x9a\x9f", "\xd2quoted\xd3 \xd0 \xa7");
    EXPECT_EQ(request["title"], "\u00e4\u00f6\u00fc");
    EXPECT_EQ(request["body"], "\u201cquoted\u201d \u2013 \u00df");
}

TEST_F(MacOSXMessageDialogTest, NullTexts_CountAsEmpty) {
    const auto request = makeRequest(nullptr, nullptr);
    EXPECT_EQ(request["title"], "");
    EXPECT_EQ(request["body"], "");
}

TEST_F(MacOSXMessageDialogTest, Captions_ComeFromTheTextsFirstButtonFirst) {
    using Captions = std::vector<std::string>;
    EXPECT_EQ(readCaptions(0), (Captions{"Fine"}));
    EXPECT_EQ(readCaptions(1), (Captions{"Fine", "Never mind"}));
    EXPECT_EQ(readCaptions(2), (Captions{"Once more", "Never mind"}));
    EXPECT_EQ(readCaptions(3), (Captions{"Once more", "Never mind"}));
}

TEST_F(MacOSXMessageDialogTest, OtherKinds_HaveASingleOKButton) {
    for (const int kind : {7, -1, 4, 1000, -2147483647 - 1})
        EXPECT_EQ(readCaptions(kind), std::vector<std::string>{"Fine"}) << kind;
}

TEST_F(MacOSXMessageDialogTest, AnyApplicationButTheManagementApplication_HasNoHelpButton) {
    EXPECT_EQ(makeRequest("T", "B")["help"], false);
}

// The results of an alert.

TEST_F(MacOSXMessageDialogTest, TheFirstButton_ReturnsRetryOrOK) {
    EXPECT_EQ(answerTo(0, 0), 12);
    EXPECT_EQ(answerTo(0, 1), 12);
    EXPECT_EQ(answerTo(0, 2), 11);
    EXPECT_EQ(answerTo(0, 3), 11);
    for (const int kind : {7, -1, 4, 1000, -2147483647 - 1})
        EXPECT_EQ(answerTo(0, kind), 12) << kind;
}

TEST_F(MacOSXMessageDialogTest, TheSecondButton_ReturnsCancel) {
    for (const int kind : {1, 2, 3})
        EXPECT_EQ(answerTo(1, kind), 13) << kind;
}

TEST_F(MacOSXMessageDialogTest, TheReservedArgument_ChangesNothing) {
    helper_.follow({kShownEvent, pressedEvent(0)});
    for (const int reserved : {-1, 0, 7})
        EXPECT_EQ(dialog_.showAlert("T", "B", 2, reserved), 11) << reserved;
}

// Alerts that are not shown.

constexpr char kUnshown[] =
    "Couldn't initialise NSApplication! No Error dialogue shown; message of the failed dialogue:  \n ";

TEST_F(MacOSXMessageDialogTest, WithoutAWindowSystem_LogsTheBodyAndReturns0) {
    unsetenv("DISPLAY");
    const std::string log = captureLog("Title", "The body of it.", 2);
    EXPECT_NE(log.find(std::string(kUnshown) + "\"The body of it.\"\n"), std::string::npos) << log;
    EXPECT_EQ(answer_, 0);
}

TEST_F(MacOSXMessageDialogTest, WithAlertsToTheLog_LogsTheBodyAndStartsNoHelper) {
    setenv("POS_ALERTS", "log", 1);
    helper_.follow({kShownEvent, pressedEvent(0)});
    const std::string log = captureLog("Title", "The body of it.", 2);
    EXPECT_NE(log.find(std::string(kUnshown) + "\"The body of it.\"\n"), std::string::npos) << log;
    EXPECT_EQ(answer_, 0);
    EXPECT_EQ(helper_.note("process"), "");
}

TEST_F(MacOSXMessageDialogTest, AHelperThatEndsWithoutAnAnswer_LogsTheBodyAndReturns0) {
    for (const std::vector<std::string>& commands :
         std::vector<std::vector<std::string>>{{}, {"crash"}, {kShownEvent, "crash"}, {"send nonsense"}}) {
        helper_.follow(commands);
        const std::string log = captureLog("Title", "The body of it.", 2);
        EXPECT_NE(log.find(std::string(kUnshown) + "\"The body of it.\"\n"), std::string::npos) << log;
        EXPECT_EQ(answer_, 0);
    }
}

TEST_F(MacOSXMessageDialogTest, UnshownNullBody_IsLoggedAsEmpty) {
    unsetenv("DISPLAY");
    const std::string log = captureLog(nullptr, nullptr, 0);
    EXPECT_NE(log.find(std::string(kUnshown) + "\"\"\n"), std::string::npos) << log;
    EXPECT_EQ(answer_, 0);
}

TEST_F(MacOSXMessageDialogTest, UnshownBodyWithPercentSigns_IsNotAFormat) {
    unsetenv("DISPLAY");
    const std::string log = captureLog("Title", "100 %s %@ %n", 0);
    EXPECT_NE(log.find("\"100 %s %@ %n\"\n"), std::string::npos) << log;
}

}  // namespace
}  // namespace dovrel
