#include "ui/alerts/MessageDialog.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "settings/MultiLanguageSupport.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/library/ScriptedMessageDialog.h"

namespace dovrel {
namespace {

TEST(MessageDialog, AlertOfTwoTexts_HasOnlyOK) {
    test::ScriptedMessageDialog dialog;
    EXPECT_EQ(dialog.showAlert("title", "body"), 12);
    EXPECT_EQ(dialog.shown, (std::vector<test::ShownAlert>{{"title", "body", 0}}));
}

TEST(MessageDialog, Answers_HaveTheirFixedNumbers) {
    EXPECT_EQ(kAlertAnswerNotShown, 0);
    EXPECT_EQ(kAlertAnswerRetry, 11);
    EXPECT_EQ(kAlertAnswerOK, 12);
    EXPECT_EQ(kAlertAnswerCancel, 13);
}

class InformationalMessageTest : public testing::Test {
  protected:
    InformationalMessageTest() {
        setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
        setenv("HOME", root_.path("home").c_str(), 1);
        root_.write(
            "Library/Application "
            "Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls",
            "//LANGUAGE\nSTR:English\n//DLL_MESSAGE_DIALOG_TITLE\nSTR:News\n");
        MultiLanguageSupport::initialize("English");
    }

    test::TemporaryFolder root_;
    test::ScriptedMessageDialog dialog_;
};

TEST_F(InformationalMessageTest, Text_IsShownUnderTheMessageTitleWithOK) {
    showInformationalMessage(dialog_, InformationalMessage{"Paper is low"});
    EXPECT_EQ(dialog_.shown, (std::vector<test::ShownAlert>{{"News", "Paper is low", 0}}));
}

TEST_F(InformationalMessageTest, NoText_ShowsNothing) {
    showInformationalMessage(dialog_, InformationalMessage());
    EXPECT_TRUE(dialog_.shown.empty());
}

}  // namespace
}  // namespace dovrel
