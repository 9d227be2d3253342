#include "platform/text/ReadableText.h"

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/Encodings.h"

// The linker redirects the calls that select an encoding, so that a test can set another system encoding.
extern "C" {
CFStringEncoding __real_CFStringGetSystemEncoding();
CFStringRef __real_CFStringCreateWithCString(CFAllocatorRef, const char*, CFStringEncoding);
}

namespace dovrel {
namespace {

using std::string_literals::operator""s;

constexpr CFStringEncoding kMacJapanese = 1;
constexpr CFStringEncoding kNoSystemEncoding = 0x0F00;
constexpr char kReplacement[] = "\uFFFD";

CFStringEncoding systemEncoding = kCFStringEncodingMacRoman;

std::string everyByteButZero() {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

class ReadableTextTest : public testing::Test {
  protected:
    ~ReadableTextTest() override { systemEncoding = kCFStringEncodingMacRoman; }
};

TEST_F(ReadableTextTest, UTF8Text_StaysAsItIs) {
    EXPECT_EQ(readableText("Größenprüfer"), "Größenprüfer");
    EXPECT_EQ(readableText("日本語 and 𝄞"), "日本語 and 𝄞");
}

TEST_F(ReadableTextTest, MacRomanText_IsDecoded) {
    EXPECT_EQ(readableText("Gr\x9A\xA7"
                           "enpr\x9F"
                           "fer"),
              "Größenprüfer");
}

TEST_F(ReadableTextTest, BothKindsInOneText_AreBothReadable) {
    EXPECT_EQ(readableText("Größe: Gr\x9A\xA7"
                           "e"),
              "Größe: Größe");
}

// The limit that the documents name: the same bytes are U+054E in UTF-8.
TEST_F(ReadableTextTest, MacRomanQuoteBeforeAnAccentedLetter_IsTakenForUTF8) {
    EXPECT_EQ(readableText("L\xD5\x8E"
                           "cran"),
              "L\u054Ecran");
    EXPECT_EQ(readableText("L\xD5"
                           "orage"),
              "L’orage");
}

TEST_F(ReadableTextTest, AsciiText_StaysAsItIsWithLineEndsAndZeroBytes) {
    EXPECT_EQ(readableText("a\r\n\tb\\~\x7F"), "a\r\n\tb\\~\x7F");
    EXPECT_EQ(readableText("a\0b"s), "a\0b"s);
}

TEST_F(ReadableTextTest, NoBytes_GiveAnEmptyText) {
    EXPECT_EQ(readableText(""), "");
}

TEST_F(ReadableTextTest, EveryUpperByteAlone_IsItsMacRomanCharacter) {
    for (int byte = 0x80; byte < 256; ++byte) {
        const std::string character(1, static_cast<char>(byte));
        // The three characters for which the C library's table differs.
        std::string expected = test::toUTF8(character, "MACINTOSH").value_or("");
        if (byte == 0xC6) expected = "\u2206";
        if (byte == 0xDB) expected = "\u20AC";
        if (byte == 0xF0) expected = "\uF8FF";
        EXPECT_EQ(readableText(character), expected) << byte;
    }
}

TEST_F(ReadableTextTest, EveryCharacterOfUnicode_StaysAsItIs) {
    for (uint32_t point = 0x80; point <= 0x10FFFF; ++point) {
        if (point >= 0xD800 && point <= 0xDFFF) continue;
        const uint32_t lead = point < 0x800 ? 0xC0 : point < 0x10000 ? 0xE0 : 0xF0;
        std::string sequence;
        int shift = point < 0x800 ? 6 : point < 0x10000 ? 12 : 18;
        sequence += static_cast<char>(lead | (point >> shift));
        for (shift -= 6; shift >= 0; shift -= 6)
            sequence += static_cast<char>(0x80 | ((point >> shift) & 0x3F));
        ASSERT_EQ(readableText(sequence), sequence) << point;
    }
}

TEST_F(ReadableTextTest, OverlongForms_AreMacRoman) {
    EXPECT_EQ(readableText("\xC0\xAF"), "¿Ø");
    EXPECT_EQ(readableText("\xC1\xBF"), "¡ø");
    EXPECT_EQ(readableText("\xE0\x9F\xBF"), "‡üø");
    EXPECT_EQ(readableText("\xF0\x8F\xBF\xBF"), "\uF8FFèøø");
}

TEST_F(ReadableTextTest, Surrogates_AreMacRoman) {
    EXPECT_EQ(readableText("\xED\xA0\x80"), "Ì†Ä");
    EXPECT_EQ(readableText("\xED\xBF\xBF"), "Ìøø");
}

TEST_F(ReadableTextTest, NumbersBeyondUnicode_AreMacRoman) {
    EXPECT_EQ(readableText("\xF4\x90\x80\x80"), "ÙêÄÄ");
    EXPECT_EQ(readableText("\xF5\x80\x80\x80"), "ıÄÄÄ");
}

TEST_F(ReadableTextTest, SequenceThatIsCut_IsMacRoman) {
    EXPECT_EQ(readableText("\xC3"), "√");
    EXPECT_EQ(readableText("\xE2\x82"), "‚Ç");
    EXPECT_EQ(readableText("\xE2\x82."), "‚Ç.");
    EXPECT_EQ(readableText("\xF0\x9D\x84"), "\uF8FFùÑ");
    EXPECT_EQ(readableText("\xC3ö"), "√ö");
}

TEST_F(ReadableTextTest, TwoByteCharacterOfAnotherSystemEncoding_IsOneCharacter) {
    systemEncoding = kMacJapanese;
    EXPECT_EQ(readableText("\x82\xA0\x83\\.\xB1"), "あソ.ｱ");
    EXPECT_EQ(readableText("あ\x82\xA0"), "ああ");
}

TEST_F(ReadableTextTest, ByteThatTheEncodingCannotRead_IsTheReplacementCharacter) {
    systemEncoding = kMacJapanese;
    EXPECT_EQ(readableText("a\xFF"
                           "b\x82"),
              "a"s + kReplacement + "b" + kReplacement);
}

TEST_F(ReadableTextTest, SystemEncodingWithoutAMacForm_LeavesUTF8Readable) {
    systemEncoding = kNoSystemEncoding;
    EXPECT_EQ(readableText("Größe \x9A"), "Größe "s + kReplacement);
}

TEST_F(ReadableTextTest, UnicodeAsSystemEncoding_LeavesUTF8Readable) {
    systemEncoding = kCFStringEncodingUTF8;
    EXPECT_EQ(readableText("plain, Größe"), "plain, Größe");
}

TEST_F(ReadableTextTest, EveryPairOfBytes_ReadsTheSameTwice) {
    const std::string all = everyByteButZero();
    for (const char first : all) {
        for (const char second : all) {
            const std::string text = readableText({first, second});
            ASSERT_FALSE(text.empty());
            ASSERT_EQ(readableText(text), text);
        }
    }
}

}  // namespace
}  // namespace dovrel

extern "C" {

CFStringEncoding __wrap_CFStringGetSystemEncoding() {
    return dovrel::systemEncoding;
}

CFStringRef __wrap_CFStringCreateWithCString(CFAllocatorRef allocator, const char* text,
                                             CFStringEncoding encoding) {
    if (encoding != dovrel::kMacJapanese) return __real_CFStringCreateWithCString(allocator, text, encoding);
    const auto utf8 = dovrel::test::toUTF8(text, "SHIFT_JIS");
    return utf8 ? __real_CFStringCreateWithCString(allocator, utf8->c_str(), kCFStringEncodingUTF8) : nullptr;
}
}
