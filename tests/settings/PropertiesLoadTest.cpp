// How Properties reads its text form.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "settings/Properties.h"
#include "tests/settings/TextForm.h"

using namespace std::string_literals;

namespace dovrel {
namespace {

using test::loaded;
using test::saved;

TEST(PropertiesLoad, EveryType) {
    const Properties store = loaded("//a\nINT:-1\n//b\nBAR:01ef\n//c\nSTR:text\n");
    EXPECT_EQ(store.size(), 3u);
    EXPECT_EQ(store.getInt("a"), -1);
    EXPECT_EQ(store.getString("b"), "\x01\xEF");
    EXPECT_EQ(store.getString("c"), "text");
    EXPECT_EQ(saved(store), "//a\nINT:-1\n//b\nBAR:01EF\n//c\nSTR:text\n");
}

TEST(PropertiesLoad, ClearsTheStoreFirst) {
    Properties store;
    store.addInt("old", 1);
    std::string text = "//new\nINT:2\n";
    store.load(text, true);
    EXPECT_FALSE(store.contains("old"));
    EXPECT_EQ(store.getInt("new"), 2);
}

TEST(PropertiesLoad, WithTheCursor_LeavesTheText) {
    Properties store;
    std::string text = "//a\nINT:1\n";
    store.load(text, true);
    EXPECT_EQ(text, "//a\nINT:1\n");
    EXPECT_EQ(store.getInt("a"), 1);
}

TEST(PropertiesLoad, KeyRepeated_FirstOneWins) {
    EXPECT_EQ(loaded("//a\nINT:1\n//a\nINT:2\n//a\nSTR:x\n").getInt("a"), 1);
}

TEST(PropertiesLoad, BlanksAndTabsAroundAnyLineIncludingAKeyLine_AreIgnored) {
    const Properties store = loaded("\t //a\t \n  INT: 5 \t\n \t\n\t//b b \n STR: x \t");
    EXPECT_EQ(store.getInt("a"), 5);
    EXPECT_EQ(store.getString("b b"), " x");
}

TEST(PropertiesLoad, BinaryInLinesOf16Bytes_LoadsAsTheOneLineForm) {
    const std::string bytes = "0123456789abcdef!";
    Properties store;
    store.addBinary("a", bytes.data(), 17);
    EXPECT_EQ(loaded(saved(store)).getString("a"), bytes);
    EXPECT_EQ(loaded("//a\nBAR:30313233343536373839616263646566\n21\n").getString("a"), bytes);
}

TEST(PropertiesLoad, BinaryFollowedByAnEmptyLine_IsTheSame) {
    const Properties store = loaded("//a\nBAR:41\n\n//b\nINT:1\n");
    EXPECT_EQ(store.getString("a"), "A");
    EXPECT_EQ(store.getInt("b"), 1);
}

TEST(PropertiesLoad, BinaryWithOddLastDigit_DropsTheDigit) {
    EXPECT_EQ(loaded("//a\nBAR:414\n").getString("a"), "A");
    EXPECT_EQ(loaded("//a\nBAR:4").getString("a"), "");
}

TEST(PropertiesLoad, BinaryWithADigitPairBrokenByALineEnd_IsJoined) {
    EXPECT_EQ(loaded("//a\nBAR:4\n1\n").getString("a"), "A");
}

TEST(PropertiesLoad, BinaryWithoutDigits_IsAnEmptyValue) {
    const Properties store = loaded("//a\nBAR:\n//b\nINT:1\n");
    ASSERT_TRUE(store.contains("a"));
    EXPECT_EQ(store.getBinary("a")->getSize(), 0u);
}

TEST(PropertiesLoad, BinaryWithCarriageReturnsAndLowerCase_IsRead) {
    EXPECT_EQ(loaded("//a\nBAR:6a 6B\r\n6c\r\n").getString("a"), "jkl");
}

TEST(PropertiesLoad, UnknownTypeWord_DropsThatEntryAndGoesOn) {
    const Properties store = loaded("//a\nxINT:1\n//b\nINT:2\n");
    EXPECT_FALSE(store.contains("a"));
    EXPECT_EQ(store.getInt("b"), 2);
}

TEST(PropertiesLoad, LinesThatAreNeitherKeyNorValue_AreIgnoredAndTheKeyWaits) {
    const Properties store = loaded("noise\n//a\nmore noise\n\nINT:1\nnoise\n");
    EXPECT_EQ(store.size(), 1u);
    EXPECT_EQ(store.getInt("a"), 1);
}

TEST(PropertiesLoad, LineThatBeginsWithASlashAndContainsATypeWord_IsAKeyLine) {
    const Properties store = loaded("/?INT:5\nINT:6\n");
    EXPECT_EQ(store.getInt("INT:5"), 6);
}

TEST(PropertiesLoad, TitleLine_IsNotAnEntry) {
    const Properties store = loaded("//Title\n//a\nINT:1\n");
    EXPECT_EQ(store.size(), 1u);
}

TEST(PropertiesLoad, EmptyKey_IsAKey) {
    EXPECT_EQ(loaded("//\nINT:1\n").getInt(""), 1);
    EXPECT_EQ(loaded("/\nINT:1\n").getInt(""), 1);
}

TEST(PropertiesLoad, StringValue_KeepsColonsTypeWordsAndSlashes) {
    EXPECT_EQ(loaded("//a\nSTR:INT:1 //b BAR:\n").getString("a"), "INT:1 //b BAR:");
}

TEST(PropertiesLoad, CarriageReturnBeforeTheLineFeed_StaysPartOfTheLine) {
    const Properties store = loaded("//a\r\nSTR:x\r\n//b\r\nINT:7\r\n");
    EXPECT_EQ(store.getString("a\r"), "x\r");
    EXPECT_EQ(store.getInt("b\r"), 7);
}

TEST(PropertiesLoad, LastLineWithoutALineFeed_Counts) {
    EXPECT_EQ(loaded("//a\nSTR:x").getString("a"), "x");
}

TEST(PropertiesLoad, KeyWithoutAValue_IsNotAnEntry) {
    EXPECT_EQ(loaded("//a").size(), 0u);
    EXPECT_EQ(loaded("//a\n").size(), 0u);
    EXPECT_EQ(loaded("//a\n//b\nINT:1").size(), 1u);
}

TEST(PropertiesLoad, EmptyText_IsAnEmptyStore) {
    EXPECT_EQ(loaded("").size(), 0u);
    EXPECT_EQ(loaded("\n\n\n").size(), 0u);
}

TEST(PropertiesLoad, NulBytes_AreCharactersLikeAnyOther) {
    const Properties store = loaded("//a\0b\nSTR:x\0y\n//c\nBAR:4\0001\n"s);
    EXPECT_EQ(store.getString("a\0b"s), "x\0y"s);
    EXPECT_EQ(store.getString("c"), "A");
}

TEST(PropertiesLoad, IntegerWithoutDigits_IsZero) {
    EXPECT_EQ(loaded("//a\nINT:\n").getInt("a"), 0);
}

TEST(PropertiesLoad, TextCutAnywhere_ReturnsTheEntriesBeforeTheCut) {
    const std::string text = "//a\nINT:12\n//b\nBAR:4142\n//c\nSTR:text\n";
    for (size_t length = 0; length <= text.size(); ++length) {
        const Properties store = loaded(text.substr(0, length));
        EXPECT_EQ(store.contains("a") && store.getInt("a") == 12, length >= 10) << length;
        EXPECT_EQ(store.contains("b") && store.getString("b") == "AB", length >= 23) << length;
        EXPECT_EQ(store.contains("c") && store.getString("c") == "text", length >= 36) << length;
    }
}

TEST(PropertiesLoad, LinesOfTenMegabytes_AreReadInOnePass) {
    const std::string longText(10'000'000, 'x');
    const std::string digits(10'000'000, '5');
    std::string text = "//" + longText + "\nSTR:" + longText + "\n" + longText + "\n//b\nBAR:" + digits +
                       "\n//c\nINT:" + std::string(10'000'000, '0') + "7\n";
    const Properties store = loaded(std::move(text));
    EXPECT_EQ(store.size(), 3u);
    EXPECT_EQ(store.getString(longText), longText);
    EXPECT_EQ(store.getString("b"), std::string(5'000'000, 'U'));
    EXPECT_EQ(store.getInt("c"), 7);
}

TEST(PropertiesLoad, BinaryOfTenMegabytesInShortLines_IsReadInOnePass) {
    std::string text = "//a\nBAR:";
    for (int i = 0; i < 300'000; ++i)
        text += "55555555555555555555555555555555\n";
    EXPECT_EQ(loaded(std::move(text)).getString("a"), std::string(300'000 * 16, 'U'));
}

TEST(PropertiesLoad, MillionsOfSlashLines_AreReadInOnePass) {
    std::string text;
    for (int i = 0; i < 5'000'000; ++i)
        text += "/\n";
    EXPECT_EQ(loaded(std::move(text)).size(), 0u);
}

}  // namespace
}  // namespace dovrel
