// Alerts in real windows, answered with mouse and keyboard.
#include <algorithm>

#include "tests/ui/AlertTest.h"

namespace dovrel {
namespace {

class AlertWindowTest : public test::AlertTest {
  protected:
    /// What the open alert holds, as the host tells it.
    std::vector<std::string> contentOf(const std::vector<std::string>& arguments) {
        start(arguments);
        std::vector<std::string> content;
        for (std::string line = host_->readLine(); !line.empty() && line != "end"; line = host_->readLine())
            content.push_back(line);
        return content;
    }

    static bool contains(const std::vector<std::string>& lines, const std::string& wanted) {
        return std::find(lines.begin(), lines.end(), wanted) != lines.end();
    }

    static std::vector<std::string> buttonsIn(const std::vector<std::string>& content) {
        std::vector<std::string> buttons;
        for (const std::string& line : content)
            if (line.rfind("button ", 0) == 0) buttons.push_back(line.substr(7));
        std::sort(buttons.begin(), buttons.end());
        return buttons;
    }
};

// Answers.

TEST_F(AlertWindowTest, OK_Answers12) {
    start({"show", "0", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertWindowTest, OKCancel_FirstButton_Answers12) {
    start({"show", "1", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
}

TEST_F(AlertWindowTest, OKCancel_SecondButton_Answers13) {
    start({"show", "1", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(1), "answer 13");
}

TEST_F(AlertWindowTest, RetryCancel_Retry_Answers11) {
    start({"show", "2", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 11");
}

TEST_F(AlertWindowTest, RetryCancel_Cancel_Answers13) {
    start({"show", "2", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(1), "answer 13");
}

TEST_F(AlertWindowTest, AlternativeRetryCancel_AnswersAsTheOther) {
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

// The window manager's own key does what its button does.
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
    ASSERT_EQ(host_->readLine(), "waiting");
    host_->writeLine("go");
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_TRUE(desktop_.alerts().empty());
}

// Contents.

TEST_F(AlertWindowTest, TitleAndBody_AreShownAsGivenAndLinesAreBroken) {
    const auto content = contentOf({"inspect", "0", "A failure", "One line\rand another\r\r100 % of \"it\""});
    EXPECT_TRUE(contains(content, "text A failure")) << testing::PrintToString(content);
    EXPECT_TRUE(contains(content, "text One line|and another||100 % of \"it\""))
        << testing::PrintToString(content);
    EXPECT_TRUE(desktop_.takePicture("alert-ok"));
    EXPECT_EQ(lineAfterClick(0), "answer 12");
}

TEST_F(AlertWindowTest, SystemEncoding_IsMacRoman) {
    const auto content = contentOf({"inspect", "0", "\x8a\x9a\x9f", "\xd2quoted\xd3 \xd0 \xa7"});
    EXPECT_TRUE(contains(content, "text \u00e4\u00f6\u00fc")) << testing::PrintToString(content);
    EXPECT_TRUE(contains(content, "text \u201cquoted\u201d \u2013 \u00df"))
        << testing::PrintToString(content);
    EXPECT_TRUE(desktop_.takePicture("alert-encoding"));
    EXPECT_EQ(lineAfterClick(0), "answer 12");
}

TEST_F(AlertWindowTest, Captions_ComeFromTheTexts) {
    EXPECT_EQ(buttonsIn(contentOf({"inspect", "0", "T", "B"})), std::vector<std::string>{"Fine"});
    EXPECT_EQ(buttonsIn(contentOf({"inspect", "1", "T", "B"})),
              (std::vector<std::string>{"Fine", "Never mind"}));
    const auto retry = contentOf({"inspect", "2", "T", "B"});
    EXPECT_TRUE(desktop_.takePicture("alert-retry-cancel"));
    EXPECT_EQ(buttonsIn(retry), (std::vector<std::string>{"Never mind", "Once more"}));
    EXPECT_EQ(buttonsIn(contentOf({"inspect", "3", "T", "B"})),
              (std::vector<std::string>{"Never mind", "Once more"}));
}

TEST_F(AlertWindowTest, Alert_IsAWarningWithTheTitleAsItsMessageAndTheFirstButtonAddedFirst) {
    start({"content", "2", "Title", "Body", "1000"});
    for (const char* line : {"message Title", "informative Body", "style 0", "help 0", "button Once more",
                             "button Never mind", "answer 11"})
        EXPECT_EQ(host_->readLine(), line);
}

TEST_F(AlertWindowTest, AnyReturnButTheFirstButtons_Answers13) {
    start({"content", "0", "Title", "Body", "1001", "1002", "0", "1", "-1000", "-1001", "1000"});
    for (const char* answer : {"13", "13", "13", "13", "13", "13", "12"}) {
        std::string line;
        do
            line = host_->readLine();
        while (!line.empty() && line.rfind("answer ", 0) != 0);
        EXPECT_EQ(line, std::string("answer ") + answer);
    }
}

TEST_F(AlertWindowTest, Kind7AndMinus1_ShowASingleOKButton) {
    for (const char* kind : {"7", "-1"}) {
        EXPECT_EQ(buttonsIn(contentOf({"inspect", kind, "T", "B"})), std::vector<std::string>{"Fine"});
        EXPECT_EQ(lineAfterClick(0), "answer 12");
    }
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

// Threads.

TEST_F(AlertWindowTest, AskedForInATask_IsShownByTheMainThreadAndAnsweredThere) {
    start({"thread", "2", "Title", "Body"});
    ASSERT_EQ(host_->readLine(), "waiting");
    // Nothing can be seen as long as the main thread does not run its loop.
    EXPECT_FALSE(host_->hasLine(500));
    EXPECT_TRUE(desktop_.alerts().empty());
    host_->writeLine("go");
    EXPECT_EQ(lineAfterClick(0), "answer 11");
    EXPECT_EQ(host_->wait(), 0);
}

// The host's own things.

TEST_F(AlertWindowTest, HostsSignalsArgumentsLocaleFolderAndPool_AreAsBefore) {
    root_.write("document.txt", "not to be opened");
    start({"state", "0", "Title", "Body", root_.path("document.txt"), "-option", "value"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(host_->readLine(), "end");
    EXPECT_EQ(host_->wait(), 0);
}

// The fixture's end looks for the programs.
TEST_F(AlertWindowTest, WindowClasses_StartNoOtherProgram) {
    start({"ties", "0", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(host_->readLine(), "end");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertWindowTest, WindowLibrary_ComesWithTheFirstAlertOnly) {
    start({"memory", "0", "Title", "Body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    EXPECT_EQ(host_->readLine(), "window library after");
    EXPECT_EQ(host_->readLine(), "end");
}

TEST_F(AlertWindowTest, HostStartedWithBytesThatAreNoText_IsNotDisturbed) {
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
    EXPECT_NE(log().find("\"one\""), std::string::npos) << log();
    EXPECT_NE(log().find("\"two\""), std::string::npos) << log();
}

// Without a display.

TEST_F(AlertWindowTest, NoDisplay_ShowsNothingLogsTheBodyAndAnswers0) {
    for (const char* display : {"", ":4095"}) {
        setenv("DISPLAY", display, 1);
        start({"memory", "2", "Title", "The body\rof it"});
        EXPECT_EQ(host_->readLine(), "answer 0");
        EXPECT_EQ(host_->readLine(), "end");
        EXPECT_EQ(host_->wait(), 0);
    }
    const std::string line =
        "Couldn't initialise NSApplication! No Error dialogue shown; message of the failed dialogue:  \n "
        "\"The body\nof "
        "it\"\n";
    const size_t first = log().find(line);
    EXPECT_NE(first, std::string::npos) << log();
    EXPECT_NE(log().find(line, first + 1), std::string::npos) << log();
}

TEST_F(AlertWindowTest, DisplayThatEndsBetweenTwoAlerts_LogsTheSecondAndAnswers0) {
    start({"pause", "0", "Title", "The body"});
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    desktop_.end();
    host_->writeLine("go");
    EXPECT_EQ(host_->readLine(), "answer 0");
    EXPECT_EQ(host_->wait(), 0);
    EXPECT_NE(log().find("\"The body\""), std::string::npos);
}

TEST_F(AlertWindowTest, DisplayThatEndsDuringAnAlert_LogsItAndAnswers0) {
    start({"pause", "2", "Title", "The body"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    desktop_.end();
    EXPECT_EQ(host_->readLine(), "answer 0");
    host_->writeLine("go");
    EXPECT_EQ(host_->readLine(), "answer 0");
    EXPECT_EQ(host_->wait(), 0);
    EXPECT_NE(log().find("\"The body\""), std::string::npos);
}

}  // namespace
}  // namespace dovrel
