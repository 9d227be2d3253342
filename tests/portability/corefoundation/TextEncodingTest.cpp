#include "portability/corefoundation/TextEncoding.h"

#include <gtest/gtest.h>

namespace {

using portability::appendCharacter;
using portability::decodeText;
using portability::encodeText;

}  // namespace

TEST(TextEncoding, DecodeAndEncode_ZeroBytes_AreKept) {
    const std::string_view bytes("a\0b", 3);
    const auto units = decodeText(bytes, kCFStringEncodingUTF8);
    ASSERT_TRUE(units);
    EXPECT_EQ(*units, (std::vector<UniChar>{'a', 0, 'b'}));
    EXPECT_EQ(encodeText(units->data(), units->size(), kCFStringEncodingUTF8), bytes);
}

TEST(TextEncoding, Encode_HalfASurrogatePair_IsNothing) {
    const UniChar highAtEnd[] = {'a', 0xD834};
    const UniChar highAlone[] = {0xD834, 'a'};
    const UniChar lowAlone[] = {0xDD1E, 'a'};
    EXPECT_FALSE(encodeText(highAtEnd, 2, kCFStringEncodingUTF8));
    EXPECT_FALSE(encodeText(highAlone, 2, kCFStringEncodingUTF8));
    EXPECT_FALSE(encodeText(lowAlone, 2, kCFStringEncodingUTF8));
}

TEST(TextEncoding, Decode_HalfASurrogatePair_IsNothing) {
    EXPECT_FALSE(decodeText("\xED\xA0\x80", kCFStringEncodingUTF8));
    EXPECT_FALSE(decodeText("\xED\xBF\xBF", kCFStringEncodingUTF8));
    EXPECT_EQ(decodeText("\xED\x9F\xBF", kCFStringEncodingUTF8), std::vector<UniChar>{0xD7FF});
    EXPECT_EQ(decodeText("\xEE\x80\x80", kCFStringEncodingUTF8), std::vector<UniChar>{0xE000});
}

TEST(TextEncoding, Encode_FirstAndLastOfEachLength_AreTheBytesOfTheStandard) {
    const UniChar units[] = {0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0xD800, 0xDC00, 0xDBFF, 0xDFFF};
    EXPECT_EQ(encodeText(units, 9, kCFStringEncodingUTF8),
              "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(TextEncoding, EncodingThatIsNotSupported_IsNothing) {
    const UniChar unit = 'a';
    EXPECT_FALSE(portability::isSupportedEncoding(kCFStringEncodingWindowsLatin1));
    EXPECT_FALSE(decodeText("a", kCFStringEncodingWindowsLatin1));
    EXPECT_FALSE(encodeText(&unit, 1, kCFStringEncodingWindowsLatin1));
}

TEST(TextEncoding, ISOLatin1_IsTheFirst256Characters) {
    EXPECT_EQ(decodeText("\xE9", kCFStringEncodingISOLatin1), std::vector<UniChar>{0xE9});
    const UniChar units[] = {0xFF, 0x100};
    EXPECT_EQ(encodeText(units, 1, kCFStringEncodingISOLatin1), "\xFF");
    EXPECT_FALSE(encodeText(units, 2, kCFStringEncodingISOLatin1));
}

TEST(TextEncoding, AppendCharacter_NumberOfNoCharacter_AppendsNothing) {
    std::string text = "x";
    EXPECT_FALSE(appendCharacter(0xD800, text));
    EXPECT_FALSE(appendCharacter(0x110000, text));
    EXPECT_EQ(text, "x");
    EXPECT_TRUE(appendCharacter(0x20AC, text));
    EXPECT_EQ(text, "x\xE2\x82\xAC");
}
