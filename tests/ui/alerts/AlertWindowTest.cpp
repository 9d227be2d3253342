// Alerts in real windows, used with mouse and keyboard.
#include <csignal>

#include "tests/ui/alerts/AlertTest.h"

namespace dovrel {
namespace {

class AlertWindowTest : public test::AlertTest {
  protected:
    void expectLogged(const std::string& body) const {
        EXPECT_NE(
            log().find("No Error dialogue shown; message of the failed dialogue:  \n \"" + body + "\"\n"),
            std::string::npos)
            << log();
    }
};

// The results of an alert.

TEST_F(AlertWindowTest, OK_Returns12) {
    start({"show", "0", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertWindowTest, OKCancel_FirstButton_Returns12) {
    start({"show", "1", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
}

TEST_F(AlertWindowTest, OKCancel_SecondButton_Returns13) {
    start({"show", "1", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(1), "answer 13");
}

TEST_F(AlertWindowTest, RetryCancel_Retry_Returns11) {
    start({"show", "2", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 11");
}

TEST_F(AlertWindowTest, RetryCancel_Cancel_Returns13) {
    start({"show", "2", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(1), "answer 13");
}

TEST_F(AlertWindowTest, AlternativeRetryCancel_ReturnsTheSameAsTheOther) {
    start({"show", "3", "Title", "Body", "3", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 11");
    EXPECT_EQ(lineAfterClick(1), "answer 13");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertWindowTest, ReturnKey_PressesTheFirstButton) {
    start({"show", "2", "Title", "Body", "1", "Title", "Body", "3", "Title", "Body"});
    EXPECT_EQ(lineAfterKey("Return"), "answer 11");
    EXPECT_EQ(lineAfterKey("Return"), "answer 12");
    EXPECT_EQ(lineAfterKey("Return"), "answer 11");
}

TEST_F(AlertWindowTest, ReturnKey_PressesTheOnlyButton) {
    start({"show", "0", "Title", "Body", "7", "Title", "Body"});
    EXPECT_EQ(lineAfterKey("Return"), "answer 12");
    EXPECT_EQ(lineAfterKey("Return"), "answer 12");
}

TEST_F(AlertWindowTest, EscapeKey_PressesTheSecondButton) {
    start({"show", "1", "Title", "Body", "2", "Title", "Body", "3", "Title", "Body"});
    for (int alert = 0; alert < 3; ++alert)
        EXPECT_EQ(lineAfterKey("Escape"), "answer 13");
}

// The window manager's own key has the same effect as its close button.
TEST_F(AlertWindowTest, ClosingTheWindow_PressesCancelOrTheOnlyButtonAndFurtherAlertsAreShown) {
    start({"show", "2", "Title", "Body", "0", "Title", "Body", "1", "Title", "Body"});
    EXPECT_EQ(lineAfterKey("alt+F4"), "answer 13");
    EXPECT_EQ(lineAfterKey("alt+F4"), "answer 12");
    EXPECT_EQ(lineAfterKey("alt+F4"), "answer 13");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertWindowTest, ReservedArgument_ChangesNothing) {
    start({"reserved", "2", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 11");
    EXPECT_EQ(lineAfterClick(1), "answer 13");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertWindowTest, AfterTheAnswer_TheWindowIsGone) {
    start({"thread", "0", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_TRUE(desktop_.alerts().empty());
    host_->writeLine("go");
    EXPECT_EQ(host_->wait(), 0);
}

// Contents. The tests of the window itself are with the helper's tests.

TEST_F(AlertWindowTest, Window_HasTheTitleOfTheAlert) {
    start({"show", "2",
           "Pr\x9f"
           "fung fehlgeschlagen",
           "One line\rand another\r\r100 % of \"it\""});
    EXPECT_EQ(test::Desktop::readTitle(desktop_.waitForAlert()), "Pr\u00fcfung fehlgeschlagen");
    EXPECT_TRUE(desktop_.takePicture("alert-retry-cancel"));
    EXPECT_EQ(lineAfterClick(0), "answer 11");
}

TEST_F(AlertWindowTest, Kind7AndMinus1_AreAnsweredByTheirSingleButton) {
    start({"show", "7", "Title", "Body", "-1", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(lineAfterClick(0), "answer 12");
}

TEST_F(AlertWindowTest, EmptyTexts_AreShownWithoutACrash) {
    start({"show", "0", "", ""});
    EXPECT_EQ(lineAfterKey("Return"), "answer 12");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertWindowTest, VeryLongBody_CanBeAnswered) {
    std::string body;
    for (int line = 0; line < 400; ++line)
        body += "line " + std::to_string(line) + "\r";
    start({"show", "2", "Title", body});
    EXPECT_EQ(lineAfterKey("Return"), "answer 11");
}

// Alerts from several threads.

TEST_F(AlertWindowTest, AskedForInATask_IsShownThoughTheMainThreadWaits) {
    start({"thread", "2", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 11");
    host_->writeLine("go");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertWindowTest, AskedForInATask_IsShownThoughTheMainThreadRunsItsLoop) {
    start({"loop", "2", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 11");
    EXPECT_EQ(host_->wait(), 0);
}

// The host's own state.

TEST_F(AlertWindowTest, HostsSignalsDescriptorsArgumentsLocaleFolderChildrenAndPool_AreAsBefore) {
    root_.write("document.txt", "not to be opened");
    start({"state", "0", "Title", "Body", root_.path("document.txt"), "-option", "value"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(host_->readLine(), "end");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertWindowTest, WindowLibraries_DoNotComeIntoTheHost) {
    start({"memory", "0", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(host_->readLine(), "end");
}

TEST_F(AlertWindowTest, HostStartedWithBytesThatAreNotText_IsNotDisturbed) {
    setenv("HOST_VARIABLE", "\x8a\xff", 1);
    start({"show", "0", "Title", "\xe4", "0", "Title", "\xe4"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(host_->wait(), 0);
    unsetenv("DISPLAY");
    start({"show", "0", "Title", "one", "0", "Title", "two"});
    EXPECT_EQ(host_->readLine(), "answer 0");
    EXPECT_EQ(host_->readLine(), "answer 0");
    EXPECT_EQ(host_->wait(), 0);
    expectLogged("one");
    expectLogged("two");
}

// Without a display.

TEST_F(AlertWindowTest, NoDisplay_ShowsNothingLogsTheBodyAndReturns0) {
    for (const char* display : {"", ":4095"}) {
        setenv("DISPLAY", display, 1);
        const std::string body = std::string("The body on \"") + display + '"';
        start({"memory", "2", "Title", body});
        EXPECT_EQ(host_->readLine(), "answer 0");
        EXPECT_EQ(host_->readLine(), "end");
        EXPECT_EQ(host_->wait(), 0);
        expectLogged(body);
    }
}

TEST_F(AlertWindowTest, AlertsToTheLog_ShowNoWindow) {
    setenv("POS_ALERTS", "log", 1);
    start({"show", "2", "Title", "The body"});
    EXPECT_EQ(host_->readLine(), "answer 0");
    EXPECT_EQ(host_->wait(), 0);
    expectLogged("The body");
    EXPECT_EQ(desktop_.mostAlerts(), 0u);
}

TEST_F(AlertWindowTest, DisplayThatEndsBetweenTwoAlerts_LogsTheSecondAndReturns0) {
    start({"pause", "0", "Title", "The body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    desktop_.end();
    host_->writeLine("go");
    EXPECT_EQ(host_->readLine(), "answer 0");
    EXPECT_EQ(host_->wait(), 0);
    expectLogged("The body");
}

TEST_F(AlertWindowTest, DisplayThatEndsDuringAnAlert_LogsItAndReturns0) {
    start({"pause", "2", "Title", "The body"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    desktop_.end();
    EXPECT_EQ(host_->readLine(), "answer 0");
    host_->writeLine("go");
    EXPECT_EQ(host_->readLine(), "answer 0");
    EXPECT_EQ(host_->wait(), 0);
    expectLogged("The body");
}

}  // namespace
}  // namespace dovrel
