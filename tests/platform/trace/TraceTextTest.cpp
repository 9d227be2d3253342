#include "platform/trace/TraceText.h"

#include <gtest/gtest.h>

#include <string>

namespace dovrel {
namespace {

using std::string_literals::operator""s;

TEST(TraceText, BytesOfBothEncodings_BecomeUTF8) {
    constexpr char kMacRoman[] =
        "Gr\x9A\xA7"
        "e";
    for (const auto makeText : {traceEntryText, traceValueText, traceOneLineText}) {
        EXPECT_EQ(makeText("Größe, "s + kMacRoman), "Größe, Größe");
        EXPECT_EQ(makeText("a\tb \"\\\" ~"), "a\tb \"\\\" ~");
        EXPECT_EQ(makeText(""), "");
    }
}

TEST(TraceText, LineEndsOfEveryKind_BecomeOneLineFeed) {
    EXPECT_EQ(traceEntryText("a\rb\nc\r\nd\n\re"), "a\n    b\n    c\n    d\n    \n    e");
    EXPECT_EQ(traceValueText("a\rb\nc\r\nd\n\re"), "a\n| b\n| c\n| d\n| \n| e");
    EXPECT_EQ(traceOneLineText("a\rb\nc\r\nd\n\re"), "a\\nb\\nc\\nd\\n\\ne");
}

TEST(TraceText, LineEndAtTheEnd_BeginsAnEmptyLine) {
    EXPECT_EQ(traceEntryText("a\r"), "a\n    ");
    EXPECT_EQ(traceValueText("a\r\n"), "a\n| ");
    EXPECT_EQ(traceOneLineText("a\n"), "a\\n");
}

TEST(TraceText, OtherControlCharacters_BecomeHexadecimalDigits) {
    for (const auto makeText : {traceEntryText, traceValueText, traceOneLineText})
        EXPECT_EQ(makeText("\x1B[2J\0\x07\x7F"s), "\\x1B[2J\\x00\\x07\\x7F");
}

TEST(TraceText, ValueThatLooksLikeTheTrace_CannotBeginALineOfItsOwn) {
    const std::string value =
        "x\ndovrel 1 2 us exchange: call method\r> 107 method name\n< 151 exception code";
    EXPECT_EQ(traceEntryText("exchange: " + traceValueText(value)),
              "exchange: x\n"
              "    | dovrel 1 2 us exchange: call method\n"
              "    | > 107 method name\n"
              "    | < 151 exception code");
}

TEST(TraceText, Data_AreTheirSizeDigitsAndPrintableCharacters) {
    EXPECT_EQ(traceDataText("hello", 5), "5 bytes: 68 65 6C 6C 6F \"hello\"");
    EXPECT_EQ(traceDataText("a\x80\x1B", 3), "3 bytes: 61 80 1B \"a..\"");
    EXPECT_EQ(traceDataText("\xFF", 1), "1 byte: FF");
    EXPECT_EQ(traceDataText(nullptr, 0), "0 bytes");
    EXPECT_EQ(traceDataText("hello", 5, 2), "5 bytes: 68 65 ... \"he\"");
}

TEST(TraceText, LongData_AreTheirFirst64Bytes) {
    const std::string data(64, 'a');
    std::string digits;
    for (size_t i = 0; i < data.size(); ++i)
        digits += " 61";
    EXPECT_EQ(traceDataText(data.data(), 64), "64 bytes:" + digits + " \"" + data + "\"");
    EXPECT_EQ(traceDataText((data + "b").data(), 65), "65 bytes:" + digits + " ... \"" + data + "\"");
}

TEST(TraceText, ByteCount_HasTheUnitOfItsNumber) {
    EXPECT_EQ(byteCountText(0), "0 bytes");
    EXPECT_EQ(byteCountText(1), "1 byte");
    EXPECT_EQ(byteCountText(4294967295u), "4294967295 bytes");
}

}  // namespace
}  // namespace dovrel
