#include "platform/text/TextConversions.h"

#include <gtest/gtest.h>

#include <string>

namespace dovrel {
namespace {

using std::string_literals::operator""s;

TEST(TextConversions, BytesToHexText_OfZeroAndAB_Is00AB) {
    const uint8_t bytes[] = {0x00, 0xAB};
    EXPECT_EQ(bytesToHexText(bytes, 2), "00AB");
    CPPByteArray array;
    array.set(bytes, 2);
    EXPECT_EQ(bytesToHexText(array), "00AB");
}

TEST(TextConversions, BytesToHexText_OfNothing_IsEmpty) {
    EXPECT_EQ(bytesToHexText(nullptr, 0), "");
    EXPECT_EQ(bytesToHexText(CPPByteArray()), "");
}

TEST(TextConversions, BytesToHexText_OfEveryByte_HasHighNibbleFirst) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const std::string text = bytesToHexText(all.data(), 256);
    ASSERT_EQ(text.size(), 512u);
    for (size_t byte = 0; byte < 256; ++byte) {
        char expected[3];
        std::snprintf(expected, sizeof expected, "%02X", static_cast<unsigned>(byte));
        EXPECT_EQ(text.substr(2 * byte, 2), expected);
    }
}

TEST(TextConversions, BytesToText_CopiesAlsoZeroBytes) {
    CPPByteArray array;
    array.set("a\0\xFF", 3);
    EXPECT_EQ(bytesToText(array), "a\0\xFF"s);
    EXPECT_EQ(bytesToText(CPPByteArray()), "");
}

TEST(TextConversions, ReplaceChar_ReplacesEveryOne) {
    EXPECT_EQ(replaceChar("a.b..", '.', ','), "a,b,,");
    EXPECT_EQ(replaceChar("a\0b\0"s, '\0', ' '), "a b ");
    EXPECT_EQ(replaceChar("", 'a', 'b'), "");
}

TEST(TextConversions, ReplaceAll_ReplacesEveryOneFromLeftToRight) {
    EXPECT_EQ(replaceAll("aXbXX", "X", "--"), "a--b----");
    EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
}

TEST(TextConversions, ReplaceAll_DoesNotSearchTheInsertedText) {
    EXPECT_EQ(replaceAll("ab", "ab", "abab"), "abab");
}

TEST(TextConversions, ReplaceAll_WithNothingToReplace_IsACopy) {
    EXPECT_EQ(replaceAll("abc", "x", "y"), "abc");
    EXPECT_EQ(replaceAll("", "x", "y"), "");
}

TEST(TextConversions, ReplaceAll_InTenMegabytesFullOfOccurrences_NeedsOnePass) {
    std::string text;
    for (int i = 0; i < 2'500'000; ++i)
        text += "SDNL";
    EXPECT_EQ(replaceAll(text, "SDNL", "\r"), std::string(2'500'000, '\r'));
}

TEST(TextConversions, WithLineFeedsOnly_MakesEachLineEndOneLineFeed) {
    EXPECT_EQ(withLineFeedsOnly("a\r\nb\rc\nd\r\r\ne\n\r"), "a\nb\nc\nd\n\ne\n\n");
    EXPECT_EQ(withLineFeedsOnly(""), "");
}

TEST(TextConversions, AsciiCase_ChangesAsciiLettersOnly) {
    EXPECT_EQ(toLowerAscii("@AZ[`az{\xC4\xE4 1"), "@az[`az{\xC4\xE4 1");
    EXPECT_EQ(toUpperAscii("@AZ[`az{\xC4\xE4 1"), "@AZ[`AZ{\xC4\xE4 1");
    EXPECT_EQ(toLowerAscii("A\0B"s), "a\0b"s);
}

TEST(TextConversions, NumberToText_WithBase2Value5Minimum8_Is00000101) {
    EXPECT_EQ(numberToText(5, 2, 8), "00000101");
}

TEST(TextConversions, NumberToText_OfZero_HasOneDigitAtLeast) {
    EXPECT_EQ(numberToText(0, 10, 0), "0");
    EXPECT_EQ(numberToText(0, 10, 1), "0");
    EXPECT_EQ(numberToText(0, 10, 3), "000");
}

TEST(TextConversions, NumberToText_PadsToTheMinimumAndNoFurther) {
    EXPECT_EQ(numberToText(255, 16, 4), "00FF");
    EXPECT_EQ(numberToText(0x12345, 16, 4), "12345");
}

TEST(TextConversions, NumberToText_OfTheLargestValue_IsExactInEveryBase) {
    const uint64_t largest = ~uint64_t{0};
    EXPECT_EQ(numberToText(largest, 10, 0), "18446744073709551615");
    EXPECT_EQ(numberToText(largest, 2, 0), std::string(64, '1'));
    EXPECT_EQ(numberToText(largest, 16, 0), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(numberToText(35, 36, 0), "Z");
    EXPECT_EQ(numberToText(36, 36, 0), "10");
}

TEST(TextConversions, TextToNumber_OfMinus1fInBase16_IsMinus31) {
    EXPECT_EQ(textToNumber("-1f", 16), -31);
    EXPECT_FALSE(lastConversionFailed);
}

TEST(TextConversions, TextToNumber_Of12z4InBase10_Is120AndFails) {
    EXPECT_EQ(textToNumber("12z4", 10), 120);
    EXPECT_TRUE(lastConversionFailed);
}

TEST(TextConversions, TextToNumber_OfMinus9xInBase10_IsPositive90AndFails) {
    EXPECT_EQ(textToNumber("-9x", 10), 90);
    EXPECT_TRUE(lastConversionFailed);
}

TEST(TextConversions, TextToNumber_OfNoDigits_IsZero) {
    for (const char* text : {"", "-", "+"}) {
        lastConversionFailed = true;
        EXPECT_EQ(textToNumber(text, 10), 0) << text;
        EXPECT_FALSE(lastConversionFailed) << text;
    }
}

TEST(TextConversions, TextToNumber_WithASecondSign_Fails) {
    EXPECT_EQ(textToNumber("--1", 10), 0);
    EXPECT_TRUE(lastConversionFailed);
    EXPECT_EQ(textToNumber("1-", 10), 10);
    EXPECT_TRUE(lastConversionFailed);
}

TEST(TextConversions, TextToNumber_ReadsBothCases) {
    EXPECT_EQ(textToNumber("+fF", 16), 255);
    EXPECT_EQ(textToNumber("Zz", 36), 35 * 36 + 35);
    EXPECT_FALSE(lastConversionFailed);
}

TEST(TextConversions, TextToNumber_WithADigitOfALargerBase_Fails) {
    EXPECT_EQ(textToNumber("12", 2), 2);
    EXPECT_TRUE(lastConversionFailed);
}

TEST(TextConversions, TextToNumber_AtAZeroByte_Fails) {
    EXPECT_EQ(textToNumber("1\0"s, 10), 10);
    EXPECT_TRUE(lastConversionFailed);
}

TEST(TextConversions, TextToNumber_BeyondSixtyFourBits_Wraps) {
    EXPECT_EQ(textToNumber("18446744073709551615", 10), -1);
    EXPECT_EQ(textToNumber("18446744073709551621", 10), 5);
    EXPECT_EQ(textToNumber("-9223372036854775808", 10), INT64_MIN);
    EXPECT_EQ(textToNumber("-18446744073709551615", 10), 1);
    EXPECT_FALSE(lastConversionFailed);
}

TEST(TextConversions, ParseNumberLiteral_PicksTheBaseFromThePrefix) {
    const struct {
        const char* text;
        uint32_t value;
    } literals[] = {{"0x1A", 26}, {"0X1a", 26},       {"0b101", 5}, {"0B101", 5}, {"017", 15},
                    {"0", 0},     {"19", 19},         {"", 0},      {"0x", 0},    {"0b", 0},
                    {"00", 0},    {"-5", 0xFFFFFFFB}, {"+5", 5}};
    for (const auto& literal : literals) {
        EXPECT_EQ(parseNumberLiteral(literal.text), literal.value) << literal.text;
        EXPECT_FALSE(lastConversionFailed) << literal.text;
    }
}

TEST(TextConversions, ParseNumberLiteral_Of08_IsZeroAndFails) {
    EXPECT_EQ(parseNumberLiteral("08"), 0u);
    EXPECT_TRUE(lastConversionFailed);
}

TEST(TextConversions, ParseNumberLiteral_BeyondThirtyTwoBits_IsCut) {
    EXPECT_EQ(parseNumberLiteral("4294967297"), 1u);
    EXPECT_EQ(parseNumberLiteral("0x123456789"), 0x23456789u);
}

TEST(TextConversions, TextChecksum16_OfAnEmptyText_IsZero) {
    EXPECT_EQ(textChecksum16(""), 0);
}

TEST(TextConversions, TextChecksum16_FoldsEachByte) {
    // 0 ^ 'a' + 'a' = 0xC2; 0xC2 ^ 'b' + 'b' = 0xA0 + 0x62 = 0x102.
    EXPECT_EQ(textChecksum16("a"), 0xC2);
    EXPECT_EQ(textChecksum16("ab"), 0x102);
    // 0 ^ 0xFF + 0xFF = 0x1FE; 0x1FE ^ 0xFF + 0xFF = 0x101 + 0xFF = 0x200: bytes are unsigned.
    EXPECT_EQ(textChecksum16("\xFF\xFF"), 0x200);
}

TEST(TextConversions, TextChecksum16_KeepsTheLowSixteenBits) {
    uint32_t expected = 0;
    const std::string text(2000, '\x7F');
    for (size_t i = 0; i < text.size(); ++i)
        expected = (expected ^ 0x7F) + 0x7F;
    ASSERT_GT(expected, 0xFFFFu);
    EXPECT_EQ(textChecksum16(text.c_str()), expected % 0x10000);
}

}  // namespace
}  // namespace dovrel
