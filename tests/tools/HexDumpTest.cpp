#include "tools/calls/HexDump.h"

#include <gtest/gtest.h>

namespace dovrel::tools {
namespace {

using namespace std::string_view_literals;

TEST(HexDump, NoBytes_HasNoLines) {
    EXPECT_EQ(hexDump(""), "");
}

TEST(HexDump, SeventeenBytes_AreTwoLinesInTheSameColumns) {
    EXPECT_EQ(hexDump("0123456789ABCDEF\x80"sv),
              "00000000  30 31 32 33 34 35 36 37 38 39 41 42 43 44 45 46  |0123456789ABCDEF|\n"
              "00000010  80                                               |.|\n");
}

TEST(HexDump, BytesThatAreNotVisible_AreDots) {
    EXPECT_EQ(hexDump("\0\t ~\x7F"sv),
              "00000000  00 09 20 7E 7F                                   |.. ~.|\n");
}

TEST(HexDump, Printable_AreTextsInUTF8) {
    for (const std::string_view text : {""sv, "a"sv, "two\nlines\r\n\t"sv, "h\xC3\xA9\xE2\x82\xAC"sv})
        EXPECT_TRUE(isPrintable(text)) << text;
}

TEST(HexDump, NotPrintable_AreControlCharactersAndOtherBytes) {
    for (const std::string_view bytes :
         {"\0"sv, "\x1B[31m"sv, "\x7F"sv, "\xC2\x9B"sv, "\xC3"sv, "\xFF"sv, "caf\x8E"sv})
        EXPECT_FALSE(isPrintable(bytes)) << bytes;
}

}  // namespace
}  // namespace dovrel::tools
