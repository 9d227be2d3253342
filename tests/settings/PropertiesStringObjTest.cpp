#include "settings/PropertiesStringObj.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

namespace dovrel {
namespace {

TEST(PropertiesStringObj, TakeLine_LinesOneAfterTheOther_Trimmed) {
    PropertiesStringObj cursor(" first \n\n\tthird");
    EXPECT_EQ(cursor.takeLine(), "first");
    EXPECT_EQ(cursor.takeLine(), "");
    EXPECT_FALSE(cursor.atEnd());
    EXPECT_EQ(cursor.takeLine(), "third");
    EXPECT_TRUE(cursor.atEnd());
}

TEST(PropertiesStringObj, TakeLine_AtTheEnd_IsEmptyAndStaysThere) {
    PropertiesStringObj cursor("");
    EXPECT_TRUE(cursor.atEnd());
    EXPECT_EQ(cursor.takeLine(), "");
    EXPECT_TRUE(cursor.atEnd());
}

TEST(PropertiesStringObj, AtEnd_LineFeedAtTheEnd_StartsNoFurtherLine) {
    PropertiesStringObj cursor("line\n");
    cursor.takeLine();
    EXPECT_TRUE(cursor.atEnd());
}

TEST(PropertiesStringObj, TakeLine_CarriageReturn_StaysPartOfTheLine) {
    PropertiesStringObj cursor("a\r\nb");
    EXPECT_EQ(cursor.takeLine(), "a\r");
}

TEST(PropertiesStringObj, TakeLine_NulByte_IsACharacterLikeAnyOther) {
    const std::string text = "a\0b\nc"s;
    PropertiesStringObj cursor(text);
    EXPECT_EQ(cursor.takeLine(), "a\0b"s);
    EXPECT_EQ(cursor.takeLine(), "c");
}

TEST(PropertiesStringObj, TakeLinesUpToKeyLine_StopsBeforeTheSlash) {
    PropertiesStringObj cursor("41\n 42\n\t /key\nrest");
    EXPECT_EQ(cursor.takeLinesUpToKeyLine(), "41\n 42\n");
    EXPECT_EQ(cursor.takeLine(), "/key");
}

TEST(PropertiesStringObj, TakeLinesUpToKeyLine_KeyLineAtOnce_TakesNothing) {
    PropertiesStringObj cursor("//key");
    EXPECT_EQ(cursor.takeLinesUpToKeyLine(), "");
    EXPECT_EQ(cursor.takeLine(), "//key");
}

TEST(PropertiesStringObj, TakeLinesUpToKeyLine_NoKeyLineLeft_TakesAll) {
    PropertiesStringObj cursor("41\n42");
    EXPECT_EQ(cursor.takeLinesUpToKeyLine(), "41\n42");
    EXPECT_TRUE(cursor.atEnd());
}

}  // namespace
}  // namespace dovrel
