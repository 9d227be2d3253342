#include "settings/LogFileReader.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::failureText;

TEST(LogFileReader, Load_ExpectedTitle_ReturnsTheEntries) {
    std::string text = "//Error log\n//code\nINT:-600\n";
    Properties store;
    LogFileReader::load(text, "Error log", store, true);
    EXPECT_EQ(store.size(), 1u);
    EXPECT_EQ(store.getInt("code"), -600);
    EXPECT_EQ(text, "//Error log\n//code\nINT:-600\n");
}

TEST(LogFileReader, Load_WithoutTheCursor_UsesTheTextUp) {
    std::string text = "//Error log\n//code\nINT:-600\n";
    Properties store;
    LogFileReader::load(text, "Error log", store, false);
    EXPECT_EQ(store.getInt("code"), -600);
    EXPECT_EQ(text, "");
}

TEST(LogFileReader, Load_WrongTitle_ThrowsBothTitlesAndLeavesStoreAndText) {
    std::string text = "//Other\n//code\nINT:1\n";
    Properties store;
    store.addInt("old", 7);
    EXPECT_EQ(failureText([&] { LogFileReader::load(text, "Error log", store, false); }),
              "Failed to parse log file, wrong title [Other], expected [Error log].");
    EXPECT_EQ(store.getInt("old"), 7);
    EXPECT_FALSE(store.contains("code"));
    EXPECT_EQ(text, "//Other\n//code\nINT:1\n");
}

TEST(LogFileReader, Load_Title_IsComparedWithoutItsFirstTwoCharacters) {
    std::string text = "##Error log\n//code\nINT:1\n";
    Properties store;
    LogFileReader::load(text, "Error log", store, true);
    EXPECT_EQ(store.getInt("code"), 1);
}

TEST(LogFileReader, Load_BlanksAroundTheTitleLine_AreIgnored) {
    std::string text = " \t//Error log \n//code\nINT:1\n";
    Properties store;
    LogFileReader::load(text, "Error log", store, true);
    EXPECT_EQ(store.getInt("code"), 1);
}

TEST(LogFileReader, Load_ValueLineAfterTheTitle_IsNotAnEntryOfTheTitle) {
    for (const bool throughCursor : {true, false}) {
        std::string text = "//T\nINT:5\n//a\nINT:1\n";
        Properties store;
        LogFileReader::load(text, "T", store, throughCursor);
        EXPECT_EQ(store.size(), 1u);
        EXPECT_EQ(store.getInt("a"), 1);
    }
}

TEST(LogFileReader, Load_TitleWithoutALineFeed_IsAnEmptyStore) {
    for (const bool throughCursor : {true, false}) {
        std::string text = "//T";
        Properties store;
        store.addInt("old", 1);
        LogFileReader::load(text, "T", store, throughCursor);
        EXPECT_EQ(store.size(), 0u);
    }
}

TEST(LogFileReader, Load_EmptyText_HasAnEmptyTitle) {
    std::string text;
    Properties store;
    EXPECT_EQ(failureText([&] { LogFileReader::load(text, "T", store, true); }),
              "Failed to parse log file, wrong title [], expected [T].");
}

TEST(LogFileReader, Load_BinaryInLinesOf16Bytes_IsOneValue) {
    std::string text = "//T\n//a\nBAR:41414141414141414141414141414141\n42\n//b\nINT:1\n";
    Properties store;
    LogFileReader::load(text, "T", store, true);
    EXPECT_EQ(store.getString("a"), "AAAAAAAAAAAAAAAAB");
    EXPECT_EQ(store.getInt("b"), 1);
}

TEST(LogFileReader, GetText_HasItsLineFeedsBack) {
    Properties store;
    store.addString("message", "onechg-lftwochg-lf");
    EXPECT_EQ(LogFileReader::getText(store, "message"), "one\ntwo\n");
}

TEST(LogFileReader, GetText_MissingKey_ThrowsAsTheStoreDoes) {
    EXPECT_EQ(failureText([] { LogFileReader::getText(Properties(), "k"); }),
              "Could not find key: 'k' for string value!");
}

}  // namespace
}  // namespace dovrel
