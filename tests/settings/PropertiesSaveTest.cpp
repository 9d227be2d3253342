// How Properties writes its text form.
#include <gtest/gtest.h>

#include <string>

#include "settings/Properties.h"
#include "tests/settings/TextForm.h"

namespace dovrel {
namespace {

using test::loaded;
using test::saved;
using test::Text;

TEST(PropertiesSave, EveryType_IsAKeyLineAndAValueLineInKeyOrder) {
    Properties store;
    store.addString("c", "text");
    store.addBinary("b", "\x01\xEF", 2);
    store.addInt("a", -1);
    EXPECT_EQ(saved(store), "//a\nINT:-1\n//b\nBAR:01EF\n//c\nSTR:text\n");
}

TEST(PropertiesSave, EmptyStore_IsEmpty) {
    EXPECT_EQ(saved(Properties()), "");
}

TEST(PropertiesSave, AppendsToTheOutput) {
    Properties store;
    store.addInt("a", 1);
    std::string text = "//title\n";
    store.save(text);
    EXPECT_EQ(text, "//title\n//a\nINT:1\n");
}

TEST(PropertiesSave, SeventeenBytes_AreOneLineOf34Digits) {
    Properties store;
    store.addBinary("a", std::string(17, '\x5A').data(), 17);
    EXPECT_EQ(saved(store), "//a\nBAR:5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A\n");
}

TEST(PropertiesSave, StringWithALineFeed_IsSavedAsItIsAndReadBackUpToTheLineFeed) {
    Properties store;
    store.addString("a", "one\ntwo");
    const std::string text = saved(store);
    EXPECT_EQ(text, "//a\nSTR:one\ntwo\n");
    EXPECT_EQ(loaded(text).getString("a"), "one");
}

// A store that was loaded with its text still writes every entry in the standard form.
TEST(PropertiesSave, LoadedText_WrittenAsItIsSaved_ComesBackByteForByte) {
    const std::string text =
        "//\nSTR:\n//a\nINT:-2147483648\n//b\nSTR:x: //y\r\n//c\nBAR:00FF\n//d\nINT:0\n//e\nSTR:z\n";
    EXPECT_EQ(saved(loaded(text, Text::kGivenAway)), text);
    EXPECT_EQ(saved(loaded(text, Text::kKept)), text);
}

TEST(PropertiesSave, LoadedText_WrittenOtherwise_IsSavedInTheStandardForm) {
    struct Case {
        const char* text;
        const char* saved;
    };
    const Case cases[] = {
        {"//a\nSTR:x", "//a\nSTR:x\n"},
        {" //a\n\tSTR:x\n", "//a\nSTR:x\n"},
        {"//a \nSTR:x \n", "//a\nSTR:x\n"},
        {"/#a\nSTR:x\n", "//a\nSTR:x\n"},
        {"/", ""},
        {"//a\nnoise\nSTR:x\n", "//a\nSTR:x\n"},
        {"//a\nINT:007\n", "//a\nINT:7\n"},
        {"//a\nINT: 7\n", "//a\nINT:7\n"},
        {"//a\nINT:+7\n", "//a\nINT:7\n"},
        {"//a\nINT:-0\n", "//a\nINT:0\n"},
        {"//a\nINT:7x\n", "//a\nINT:7\n"},
        {"//a\nINT:\n", "//a\nINT:0\n"},
        {"//a\nINT:99999999999\n", "//a\nINT:2147483647\n"},
        {"//a\nBAR:0a\nb\n", "//a\nBAR:0A\n"},
        {"//b\nSTR:2\n//a\nSTR:1\n", "//a\nSTR:1\n//b\nSTR:2\n"},
        {"//a\nSTR:1\n//a\nSTR:2\n//b\nSTR:3\n", "//a\nSTR:1\n//b\nSTR:3\n"},
        {"//a\nSTR:1\nSTR:2\n//b\nSTR:3\n", "//a\nSTR:1\n//b\nSTR:3\n"},
    };
    for (const Case& given : cases) {
        EXPECT_EQ(saved(loaded(given.text, Text::kGivenAway)), given.saved) << given.text;
        EXPECT_EQ(saved(loaded(given.text, Text::kKept)), given.saved) << given.text;
    }
}

TEST(PropertiesSave, LoadedTextThatWasChanged_HasTheChanges) {
    Properties store = loaded("//a\nSTR:1\n//b\nSTR:2\n//c\nSTR:3\n//e\nINT:5\n");
    store.replaceInt("b", -2);
    store.remove("c");
    store.addString("d", "4");
    store.addString("f", "6");
    const std::string expected = "//a\nSTR:1\n//b\nINT:-2\n//d\nSTR:4\n//e\nINT:5\n//f\nSTR:6\n";
    EXPECT_EQ(saved(store), expected);
    EXPECT_EQ(saved(Properties(store)), expected);
}

}  // namespace
}  // namespace dovrel
