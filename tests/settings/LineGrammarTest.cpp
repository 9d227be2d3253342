#include "settings/LineGrammar.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace std::string_literals;

namespace dovrel {
namespace {

TEST(LineGrammar, Trimmed_BlanksAndTabsAtBothEnds_AreGone) {
    EXPECT_EQ(trimmed(" \t a \t b\t "), "a \t b");
}

TEST(LineGrammar, Trimmed_OtherWhiteSpace_Stays) {
    EXPECT_EQ(trimmed("\va\r"), "\va\r");
}

TEST(LineGrammar, Trimmed_NothingButBlanks_IsEmpty) {
    EXPECT_EQ(trimmed(" \t "), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(LineGrammar, StartsAsKeyLine_OneSlashIsEnough) {
    EXPECT_TRUE(startsAsKeyLine("//key"));
    EXPECT_TRUE(startsAsKeyLine("/"));
    EXPECT_FALSE(startsAsKeyLine("key"));
    EXPECT_FALSE(startsAsKeyLine(""));
}

TEST(LineGrammar, KeyFromLine_DropsTheFirstTwoCharactersWhateverTheyAre) {
    EXPECT_EQ(keyFromLine("//key"), "key");
    EXPECT_EQ(keyFromLine("/kkey"), "key");
    EXPECT_EQ(keyFromLine("// key"), " key");
    EXPECT_EQ(keyFromLine("//"), "");
    EXPECT_EQ(keyFromLine("/"), "");
    EXPECT_EQ(keyFromLine(""), "");
}

TEST(LineGrammar, ParseValueLine_TypeWordAnywhereInTheLine_IsOne) {
    for (const char* line :
         {"INT:1", "STR:", "BAR:00", "some words STR:x", "a:b BAR:", "INTINT:", "INT:STR:"}) {
        EXPECT_TRUE(parseValueLine(line).has_value()) << line;
    }
}

TEST(LineGrammar, ParseValueLine_NoTypeWordWithItsColon_ReturnsNothing) {
    for (const char* line : {"", "INT", "INT :1", "str:x", "text: x", "STR BAR", "abc:d"}) {
        EXPECT_FALSE(parseValueLine(line).has_value()) << line;
    }
}

TEST(LineGrammar, ParseValueLine_Type_IsTheWordBeforeTheFirstColon) {
    EXPECT_EQ(parseValueLine("INT:STR:")->type, PropertyType::kInteger);
    EXPECT_EQ(parseValueLine("STR:INT:")->type, PropertyType::kString);
    EXPECT_EQ(parseValueLine("BAR:")->type, PropertyType::kBinary);
}

TEST(LineGrammar, ParseValueLine_AnyOtherWordInFront_IsOfUnknownType) {
    for (const char* line : {"xINT:1", "note: STR:x", ":INT:1", "abc:INT:", "INTSTR:"}) {
        EXPECT_EQ(parseValueLine(line)->type, PropertyType::kUnknown) << line;
    }
    EXPECT_EQ(static_cast<int>(PropertyType::kUnknown), 0xFF);
}

TEST(LineGrammar, ParseValueLine_Value_IsAllAfterTheFirstColon) {
    EXPECT_EQ(parseValueLine("STR:a:b")->value, "a:b");
    EXPECT_EQ(parseValueLine("STR: a")->value, " a");
    EXPECT_EQ(parseValueLine("STR:")->value, "");
    EXPECT_EQ(parseValueLine("note: STR:x")->value, " STR:x");
}

TEST(LineGrammar, AppendEntries_GiveKeyLineAndValueLine) {
    std::string text;
    appendIntEntry(text, "number", -5);
    appendStringEntry(text, "word", " as it is:");
    EXPECT_EQ(text, "//number\nINT:-5\n//word\nSTR: as it is:\n");
}

TEST(LineGrammar, AppendIntEntry_BothEndsOfTheRange) {
    std::string text;
    appendIntEntry(text, "a", std::numeric_limits<int32_t>::min());
    appendIntEntry(text, "b", std::numeric_limits<int32_t>::max());
    EXPECT_EQ(text, "//a\nINT:-2147483648\n//b\nINT:2147483647\n");
}

TEST(LineGrammar, LeadingInteger_DigitsThenOtherCharacters_AreTheDigits) {
    EXPECT_EQ(leadingInteger("12abc"), 12);
    EXPECT_EQ(leadingInteger("-7 8"), -7);
    EXPECT_EQ(leadingInteger("+3"), 3);
    EXPECT_EQ(leadingInteger(" \t\n\v\f\r42"), 42);
    EXPECT_EQ(leadingInteger("007"), 7);
}

TEST(LineGrammar, LeadingInteger_NoDigitAtTheFront_IsZero) {
    EXPECT_EQ(leadingInteger("abc"), 0);
    EXPECT_EQ(leadingInteger(""), 0);
    EXPECT_EQ(leadingInteger("-"), 0);
    EXPECT_EQ(leadingInteger("- 1"), 0);
    EXPECT_EQ(leadingInteger("+-1"), 0);
}

TEST(LineGrammar, LeadingInteger_BeyondTheRange_IsTheNearestNumber) {
    EXPECT_EQ(leadingInteger("2147483647"), 2147483647);
    EXPECT_EQ(leadingInteger("2147483648"), 2147483647);
    EXPECT_EQ(leadingInteger("-2147483648"), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(leadingInteger("-2147483649"), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(leadingInteger(std::string(1000, '9')), 2147483647);
    EXPECT_EQ(leadingInteger("-" + std::string(1000, '9')), std::numeric_limits<int32_t>::min());
}

TEST(LineGrammar, DecodeHexText_BothCases) {
    EXPECT_EQ(decodeHexText("00abCDeF7f"), "\x00\xAB\xCD\xEF\x7F"s);
}

TEST(LineGrammar, DecodeHexText_BlanksTabsAndCarriageReturns_AreSkipped) {
    EXPECT_EQ(decodeHexText(" 4\t1\r\n 42 "), "AB");
}

TEST(LineGrammar, DecodeHexText_OddLastDigit_IsDropped) {
    EXPECT_EQ(decodeHexText("414"), "A");
    EXPECT_EQ(decodeHexText("4"), "");
    EXPECT_EQ(decodeHexText(""), "");
}

TEST(LineGrammar, DecodeHexText_CharactersThatAreNotDigits_AreSkipped) {
    EXPECT_EQ(decodeHexText("4g1:\xFF/4@2`"), "AB");
}

TEST(LineGrammar, IsHexText_EvenNumberOfDigitsWithWhiteSpace) {
    for (const char* text : {"", "00", "aF09", " 4\t1\r\n4 2 ", "\n"})
        EXPECT_TRUE(isHexText(text)) << text;
    for (const char* text : {"4", "414", "4g", "0x41", "41-42", "\xFF"})
        EXPECT_FALSE(isHexText(text)) << text;
    EXPECT_FALSE(isHexText("41\0"s));
}

TEST(LineGrammar, EscapeLineFeeds_EveryLineFeed_BecomesSixCharacters) {
    EXPECT_EQ(escapeLineFeeds("\na\n\nb"), "chg-lfachg-lfchg-lfb");
    EXPECT_EQ(escapeLineFeeds("no line feed\r"), "no line feed\r");
    EXPECT_EQ(escapeLineFeeds(""), "");
}

TEST(LineGrammar, RestoreLineFeeds_EveryEscape_BecomesALineFeed) {
    EXPECT_EQ(restoreLineFeeds("chg-lfachg-lfchg-lfb"), "\na\n\nb");
    EXPECT_EQ(restoreLineFeeds("chg-lchg-lf"), "chg-l\n");
    EXPECT_EQ(restoreLineFeeds("chg-l"), "chg-l");
}

}  // namespace
}  // namespace dovrel
