#include "tools/properties/StoredEntry.h"

#include <gtest/gtest.h>

#include "tools/Subcommand.h"

namespace dovrel::tools {
namespace {

std::string failureOf(const std::string& key, const std::string& value) {
    try {
        makeEntryText(key, PropertyValue::ofString(value));
    } catch (const ToolFailure& failure) {
        return failure.what();
    }
    return "none";
}

TEST(StoredEntry, EntriesThatReadersReturn_AreTheirTwoLines) {
    EXPECT_EQ(makeEntryText("a", PropertyValue::ofInt(-5)), "//a\nINT:-5\n");
    EXPECT_EQ(makeEntryText("/a b", PropertyValue::ofString(" INT:x")), "///a b\nSTR: INT:x\n");
    EXPECT_EQ(makeEntryText("a", PropertyValue::ofBinary("\0\xAB", 2)), "//a\nBAR:00AB\n");
    EXPECT_EQ(makeEntryText("a", PropertyValue::ofString("")), "//a\nSTR:\n");
    EXPECT_EQ(makeEntryText("a", PropertyValue::ofBinary(nullptr, 0)), "//a\nBAR:\n");
}

TEST(StoredEntry, ValuesThatReadersWouldChange_AreRefusedWithTheReason) {
    EXPECT_EQ(failureOf("a", "x\ny"), "the value of \"a\" cannot be stored: it contains a line feed");
    EXPECT_EQ(failureOf("a", "x\t"),
              "the value of \"a\" cannot be stored: readers remove the blanks at its end");
    EXPECT_EQ(failureOf("a", std::string("x\0y", 3)),
              "the value of \"a\" cannot be stored: it contains a NUL byte");
}

TEST(StoredEntry, KeysThatReadersWouldChange_AreRefusedWithTheReason) {
    EXPECT_EQ(failureOf("", "x"), "the key \"\" cannot be stored: it is empty");
    EXPECT_EQ(failureOf(" a", "x"), "the key \" a\" cannot be stored: readers remove the blanks at its ends");
    EXPECT_EQ(failureOf("a\nb", "x"), "the key \"a\\nb\" cannot be stored: it contains a line feed");
}

TEST(StoredEntry, Numbers_AreWholeAndOf32Bits) {
    EXPECT_EQ(parseInteger("a", "-2147483648"), -2147483647 - 1);
    for (const char* text : {"", "5x", " 5", "2147483648", "0x5", "+5", "--5", "-"})
        EXPECT_THROW(parseInteger("a", text), ToolFailure) << text;
}

TEST(StoredEntry, Bytes_ArePairsOfHexadecimalDigits) {
    EXPECT_EQ(parseBytes("a", "61 62"), "ab");
    EXPECT_EQ(parseBytes("a", ""), "");
    EXPECT_THROW(parseBytes("a", "6"), ToolFailure);
    EXPECT_THROW(parseBytes("a", "xy"), ToolFailure);
}

}  // namespace
}  // namespace dovrel::tools
