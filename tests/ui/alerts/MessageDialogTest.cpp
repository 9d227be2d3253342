#include "ui/alerts/MessageDialog.h"

#include <gtest/gtest.h>

#include "tests/support/library/ScriptedMessageDialog.h"

namespace dovrel {
namespace {

TEST(MessageDialog, AlertOfTwoTexts_HasOKAlone) {
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

}  // namespace
}  // namespace dovrel
