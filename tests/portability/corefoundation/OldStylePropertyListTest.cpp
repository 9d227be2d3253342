#include "portability/corefoundation/OldStylePropertyList.h"

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using portability::ObjectHolder;
using portability::readOldStylePropertyList;
using portability::readStringsFile;
using portability::toUtf8;

// Returns "(none)" for a damaged document or a missing key.
std::string parseValueA(const std::string& document) {
    const ObjectHolder list = readOldStylePropertyList(document);
    if (!list || list.get()->kind() != portability::kDictionaryKind) return "(none)";
    const ObjectHolder key = portability::newString("a");
    const portability::Object* const value = static_cast<const __CFDictionary*>(list.get())->value(key.get());
    return value == nullptr ? "(none)" : toUtf8(value);
}

std::string string(const std::string& document) {
    const ObjectHolder value = readOldStylePropertyList(document);
    return value && value.get()->kind() == portability::kStringKind ? toUtf8(value.get()) : "(none)";
}

}  // namespace

TEST(OldStylePropertyList, Dictionary_PlainAndQuotedTexts_AreRead) {
    EXPECT_EQ(parseValueA("{ a = b; }"), "b");
    EXPECT_EQ(parseValueA("{a=b;}"), "b");
    EXPECT_EQ(parseValueA("{ \"a\" = \"b c\"; 'd' = 'e'; }"), "b c");
    EXPECT_EQ(parseValueA("{ x = { a = no; }; a = com.example-1/2; }"), "com.example-1/2");
}

TEST(OldStylePropertyList, CommentsAndBlanks_AreSkipped) {
    EXPECT_EQ(parseValueA("// first\n{ /* a = c; */ a\t=\r\nb; } // last"), "b");
}

TEST(OldStylePropertyList, Escapes_StandForTheirCharacters) {
    EXPECT_EQ(string(R"("a\"b\\c\n\t")"), "a\"b\\c\n\t");
    EXPECT_EQ(string(R"("\U00e9\u20AC\101")"),
              "\xC3\xA9\xE2\x82\xAC"
              "A");
}

TEST(OldStylePropertyList, ArraysAndData_AreRead) {
    const ObjectHolder array = readOldStylePropertyList("( one, \"two\", <0a 0B0c>, (), )");
    ASSERT_TRUE(array);
    const auto& values = dynamic_cast<const __CFArray&>(*array.get()).values;
    ASSERT_EQ(values.size(), 4U);
    EXPECT_EQ(toUtf8(values[1].get()), "two");
    EXPECT_EQ(dynamic_cast<const __CFData&>(*values[2].get()).bytes, "\x0A\x0B\x0C");
}

TEST(OldStylePropertyList, KeyThatComesTwice_HasItsLastValue) {
    EXPECT_EQ(parseValueA("{ a = b; a = c; }"), "c");
}

TEST(OldStylePropertyList, DamagedDocuments_AreRefused) {
    for (const char* document : {"",          "{",        "{ a = ",   "{ a = b }",
                                 "{ a = b; ", "{ a b; }", "{ = b; }", "( a",
                                 "( a b )",   "<0",       "<0a",      "<0g>",
                                 "\"a",       "\"\\",     "\"\\U\"",  "\"\\UD800\"",
                                 "a b",       "{} x",     "/* a",     "{ \"\xFF\" = b; }",
                                 "(a)) "}) {
        EXPECT_FALSE(readOldStylePropertyList(document)) << document;
    }
}

TEST(OldStylePropertyList, Nesting_IsLimited) {
    const auto nested = [](std::size_t depth) { return std::string(depth, '(') + std::string(depth, ')'); };
    EXPECT_TRUE(readOldStylePropertyList(nested(100)));
    EXPECT_FALSE(readOldStylePropertyList(nested(1000)));
    EXPECT_FALSE(readOldStylePropertyList(nested(1000000)));
}

TEST(OldStylePropertyList, StringsFile_HasNoBracesAndAKeyWithoutAValueIsItsOwnValue) {
    const ObjectHolder strings = readStringsFile("/* comment */\n\"a\" = \"b\";\nc;\n");
    ASSERT_TRUE(strings);
    const auto& dictionary = dynamic_cast<const __CFDictionary&>(*strings.get());
    EXPECT_EQ(dictionary.values.size(), 2U);
    const ObjectHolder key = portability::newString("c");
    EXPECT_EQ(toUtf8(dictionary.value(key.get())), "c");
    EXPECT_FALSE(readStringsFile("\"a\" = \"b\""));
    EXPECT_FALSE(readStringsFile("\"a\" = \"b\"; }"));
}
