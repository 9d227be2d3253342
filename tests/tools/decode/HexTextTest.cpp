#include "tools/decode/HexText.h"

#include <gtest/gtest.h>

namespace dovrel::tools {
namespace {

std::string bytesFrom(std::string_view text) {
    const HexText result = parseHexText(text);
    EXPECT_EQ(result.problem, "") << text;
    return result.bytes;
}

std::string problemOf(std::string_view text) {
    const HexText result = parseHexText(text);
    EXPECT_EQ(result.bytes, "") << text;
    return result.problem;
}

TEST(HexText, Digits_MayHaveBlanksCommasAndLineEndsBetweenTheBytes) {
    for (const char* text :
         {"4173416B", "41 73 41 6b", "4173 416B\n", "\n41\t73\r\n 41,6B  ", "0x41, 0x73,\n0X41, 0x6B"})
        EXPECT_EQ(bytesFrom(text), "AsAk");
    EXPECT_EQ(bytesFrom(""), "");
    EXPECT_EQ(bytesFrom("00000000"), std::string(4, '\0'));
    EXPECT_EQ(bytesFrom("00000000\n01"), std::string("\0\0\0\0\1", 5));
}

TEST(HexText, DumpWithCharactersAfterABar_IsItsBytes) {
    EXPECT_EQ(bytesFrom("00000000  41 73 41 6b 00 01 00 00  00 08 00 00 00 00 00 00  |AsAk............|\n"
                        "00000010  41                                                |A|\n"
                        "00000011\n"),
              std::string("AsAk\0\1\0\0\0\x08\0\0\0\0\0\0A", 17));
}

TEST(HexText, DumpWithColons_IsItsBytesWithoutTheCharactersAtTheEnd) {
    EXPECT_EQ(bytesFrom("00000000: 4173 416b 0001 0000 0008 0000 0000 0000  AsAk............\n"
                        "00000010: 41                                       A\n"),
              std::string("AsAk\0\1\0\0\0\x08\0\0\0\0\0\0A", 17));
}

TEST(HexText, ExampleOfAPage_IsItsBytesWithoutTheExplanations) {
    EXPECT_EQ(bytesFrom("0000  41 73 41 6B  00 01 00 00  00 08                     | a block, \"ab\"\n"
                        "000A  00 00                                               | cafe\n"),
              std::string("AsAk\0\1\0\0\0\x08\0\0", 12));
    EXPECT_EQ(bytesFrom("0000                                                      | no bytes\n"), "");
}

TEST(HexText, OtherCharacters_AreAProblemWithTheLine) {
    EXPECT_EQ(problemOf("41 73\n4G"), "line 2: \"4G\" is not hexadecimal");
    EXPECT_EQ(problemOf("41 7"), "line 1: \"7\" has an odd number of digits");
    EXPECT_EQ(problemOf("0x"), "line 1: \"\" is not hexadecimal");
    EXPECT_EQ(problemOf("0000  41 73 | a\n0002  zz\n"), "line 2: \"zz\" is not hexadecimal");
}

TEST(HexText, DumpThatIsNotWhole_IsAProblemWithTheLine) {
    EXPECT_EQ(problemOf("00000000  00 00\n*\n00000020  00\n"),
              "line 2: the dump omits repeated lines (\"*\")");
    EXPECT_EQ(problemOf("0000  41 73\n0003  41\n"),
              "line 2: the offset does not fit; the lines before have 2 bytes");
    EXPECT_EQ(problemOf("0000  41 73\n41 6B\n"), "line 2: the line does not begin with an offset");
}

TEST(HexText, PlainText_HasOnlyPrintableCharactersAndIsNotBlank) {
    EXPECT_TRUE(isPlainText("41 73\r\n\t~"));
    for (const std::string& text : {std::string(), std::string(" \n"), std::string("A\0", 2),
                                    std::string("\x7F"), std::string("\xC3\xA4"), std::string("A\x1B")})
        EXPECT_FALSE(isPlainText(text)) << text;
}

}  // namespace
}  // namespace dovrel::tools
