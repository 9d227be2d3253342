#include "ui/alerts/AlertButtonSet.h"

#include <gtest/gtest.h>

namespace dovrel {
namespace {

void expectSet(int buttons, const char* firstKey, const char* secondKey, int firstAnswer) {
    const AlertButtonSet set = alertButtonSet(buttons);
    EXPECT_STREQ(set.firstKey, firstKey) << buttons;
    EXPECT_STREQ(set.secondKey, secondKey) << buttons;
    EXPECT_EQ(alertAnswer(set, true), firstAnswer) << buttons;
    EXPECT_EQ(alertAnswer(set, false), 13) << buttons;
}

TEST(AlertButtonSet, EachKind_HasItsCaptionsAndAnswers) {
    expectSet(0, "GENERAL_BUTTON_OK", nullptr, 12);
    expectSet(1, "GENERAL_BUTTON_OK", "GENERAL_BUTTON_CANCEL", 12);
    expectSet(2, "GENERAL_BUTTON_RETRY", "GENERAL_BUTTON_CANCEL", 11);
    expectSet(3, "GENERAL_BUTTON_RETRY", "GENERAL_BUTTON_CANCEL", 11);
}

TEST(AlertButtonSet, AnyOtherKind_IsOKAlone) {
    for (int buttons : {7, -1, 4, 1000, -2147483647 - 1})
        expectSet(buttons, "GENERAL_BUTTON_OK", nullptr, 12);
}

}  // namespace
}  // namespace dovrel
