#include "server/SettingValue.h"

#include <gtest/gtest.h>

namespace merrowd::test {
namespace {

using std::chrono::milliseconds;

TEST(SettingValue, SetFlag_TakesOneAndZeroOnly) {
    bool flag = false;
    setFlag(flag, "1");
    EXPECT_TRUE(flag);
    for (const char* value : {"2", "-1", "true", "", "1 "})
        EXPECT_THROW(setFlag(flag, value), UnfitValue) << value;
    EXPECT_TRUE(flag);
    setFlag(flag, "0");
    EXPECT_FALSE(flag);
}

TEST(SettingValue, SetNumber_TakesWhatAnEntryCanHold) {
    uint32_t number = 5;
    setNumber(number, "2147483647");
    EXPECT_EQ(number, 2147483647u);
    for (const char* value : {"2147483648", "-1", "", "-", "12x", "0x10", "99999999999999999999"}) {
        EXPECT_THROW(setNumber(number, value), UnfitValue) << value;
    }
    EXPECT_EQ(number, 2147483647u);
}

TEST(SettingValue, SetStatus_TakesSixteenBitsWithSign) {
    int16_t status = 0;
    setStatus(status, "-1712");
    EXPECT_EQ(status, -1712);
    EXPECT_THROW(setStatus(status, "32768"), UnfitValue);
    EXPECT_THROW(setStatus(status, "-32769"), UnfitValue);
}

TEST(SettingValue, SetDelay_IsInMilliseconds) {
    milliseconds delay{0};
    setDelay(delay, "250");
    EXPECT_EQ(delay, milliseconds(250));
    EXPECT_THROW(setDelay(delay, "soon"), UnfitValue);
}

TEST(SettingValue, SetText_BringsLineFeedsBack) {
    std::string text;
    setText(text, "onechg-lftwo");
    EXPECT_EQ(text, "one\ntwo");
}

TEST(SettingValue, SetChoice_TakesANameAndOtherwiseListsAllNames) {
    constexpr Choice<int> kChoices[] = {{"one", 1}, {"two", 2}};
    int chosen = 0;
    setChoice(chosen, kChoices, "two");
    EXPECT_EQ(chosen, 2);
    try {
        setChoice(chosen, kChoices, "Two");
        FAIL();
    } catch (const UnfitValue& unfit) {
        EXPECT_EQ(describeProblem("key", "Two", unfit),
                  "the value \"Two\" of \"key\" does not fit; expected one of one, two");
    }
}

TEST(SettingValue, InQuotes_ShowsControlCharactersAndTheBeginningOfLongTexts) {
    EXPECT_EQ(inQuotes("a b"), "\"a b\"");
    EXPECT_EQ(inQuotes("Gr\xC3\xB6\xC3\x9F"
                       "e"),
              "\"Gr\xC3\xB6\xC3\x9F"
              "e\"");
    EXPECT_EQ(inQuotes(std::string_view("\0\n\r\x1F\x7F", 5)), "\"\\x00\\x0A\\x0D\\x1F\\x7F\"");
    EXPECT_EQ(inQuotes(std::string(80, 'x')), '"' + std::string(80, 'x') + '"');
    EXPECT_EQ(inQuotes(std::string(81, 'x')), '"' + std::string(80, 'x') + "...\"");
}

}  // namespace
}  // namespace merrowd::test
