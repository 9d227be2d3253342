#include "tools/properties/EntryList.h"

#include <gtest/gtest.h>

#include "settings/Properties.h"

namespace dovrel::tools {
namespace {

// Returns the problems as lines "LINE: TEXT".
std::string findProblems(std::string_view text, std::string_view sectionKey = "",
                         bool allowsComments = false) {
    std::string lines;
    for (const LineProblem& problem : listEntries(text, sectionKey, allowsComments).problems)
        lines += std::to_string(problem.line) + ": " + problem.text + "\n";
    return lines;
}

TEST(EntryList, Entries_HaveTheirLinesAndPlaces) {
    constexpr std::string_view kText = "# a\n//one\nINT:1\n\n  //two\t\nBAR:00\n01\n//three\n\nSTR:x";
    const std::vector<TextEntry> entries = listEntries(kText, "", true).entries;
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].key, "one");
    EXPECT_EQ(entries[0].keyLine, 2u);
    EXPECT_EQ(kText.substr(entries[0].keyBegin, entries[0].keyEnd - entries[0].keyBegin), "//one\n");
    EXPECT_EQ(kText.substr(entries[0].valueBegin, entries[0].valueEnd - entries[0].valueBegin), "INT:1\n");
    EXPECT_EQ(entries[1].key, "two");
    EXPECT_EQ(entries[1].keyLine, 5u);
    EXPECT_EQ(kText.substr(entries[1].valueBegin, entries[1].valueEnd - entries[1].valueBegin),
              "BAR:00\n01\n");
    EXPECT_EQ(entries[2].keyLine, 8u);
    EXPECT_EQ(kText.substr(entries[2].keyBegin, entries[2].keyEnd - entries[2].keyBegin), "//three\n");
    EXPECT_EQ(kText.substr(entries[2].valueBegin), "STR:x");
    EXPECT_EQ(entries[2].valueEnd, kText.size());
}

TEST(EntryList, SavedStore_HasNoProblems) {
    Properties store;
    store.addInt("a", -2147483647);
    store.addString("b", "text: INT:5");
    store.addString("empty", "");
    store.addBinary("c", "\0\xFF", 2);
    std::string text;
    store.save(text);
    EXPECT_EQ(findProblems(text), "");
    EXPECT_EQ(findProblems(""), "");
}

TEST(EntryList, LineThatIsNotPartOfAnEntry_IsAProblemOrAComment) {
    constexpr char kText[] = "# settings\n\n//a\nINT:1\nINT:2\n";
    EXPECT_EQ(findProblems(kText),
              "1: \"# settings\" is not part of an entry\n5: \"INT:2\" is not part of an entry\n");
    EXPECT_EQ(findProblems(kText, "", true), "");
}

TEST(EntryList, KeyWithoutValue_IsAProblemInTheLineOfTheKey) {
    EXPECT_EQ(findProblems("//a\n//b\nINT:1\n\n//c\n"), "1: \"a\" has no value\n5: \"c\" has no value\n");
    EXPECT_EQ(findProblems("//a\nmissing type word\n"),
              "1: \"a\" has no value\n2: \"missing type word\" is not part of an entry\n");
}

TEST(EntryList, KeyThatOccursTwice_IsAProblemUnlessItIsInAnotherSection) {
    constexpr char kText[] = "//L\nSTR:x\n//a\nINT:1\n//L\nSTR:y\n//a\nINT:2\n//a\nINT:3\n";
    EXPECT_EQ(findProblems(kText, "L"), "9: \"a\" occurs twice; readers use the first entry\n");
    EXPECT_EQ(findProblems(kText),
              "5: \"L\" occurs twice; readers use the first entry\n"
              "7: \"a\" occurs twice; readers use the first entry\n"
              "9: \"a\" occurs twice; readers use the first entry\n");
}

TEST(EntryList, ValueThatDoesNotFitItsType_IsAProblem) {
    EXPECT_EQ(findProblems("//a\nINT:5x\n//b\nINT:2147483648\n//c\nINT: -7 \n//d\nINT:\n"),
              "2: the value of \"a\" is not a 32-bit number: \"5x\"\n"
              "4: the value of \"b\" is not a 32-bit number: \"2147483648\"\n"
              "8: the value of \"d\" is not a 32-bit number: \"\"\n");
    EXPECT_EQ(findProblems("//a\nINT:+-5\n//b\nINT:-+5\n//c\nINT:+5\n//d\nINT:+\n"),
              "2: the value of \"a\" is not a 32-bit number: \"+-5\"\n"
              "4: the value of \"b\" is not a 32-bit number: \"-+5\"\n"
              "8: the value of \"d\" is not a 32-bit number: \"+\"\n");
    EXPECT_EQ(findProblems("//a\nBAR:0\n//b\nBAR:zz\n//c\nBAR:00 11\n22\n//d\nBAR:\n"),
              "2: the value of \"a\" is not pairs of hexadecimal digits: \"0\\n\"\n"
              "4: the value of \"b\" is not pairs of hexadecimal digits: \"zz\\n\"\n");
    EXPECT_EQ(findProblems("//a\nPRINT:1\n"),
              "2: the value of \"a\" does not begin with INT:, STR: or BAR:; readers drop it\n");
}

TEST(EntryList, KeyLineWithOneSlash_IsAProblemWithoutSections) {
    EXPECT_EQ(findProblems("/abc\nINT:1\n"),
              "1: \"/abc\" is read as a key, but does not begin with \"//\"\n");
    EXPECT_EQ(findProblems("//a\nINT:1\n/abc\n", "L"), "3: \"/abc\" is not part of an entry\n");
}

TEST(EntryList, CharactersThatReadersKeepOrStopAt_AreProblems) {
    EXPECT_EQ(findProblems("//a\r\nSTR:x\r\n"),
              "1: the line ends with a carriage return, which readers keep\n"
              "2: the line ends with a carriage return, which readers keep\n");
    EXPECT_EQ(findProblems(std::string_view("//a\nSTR:x\0y\n", 12)),
              "2: the line contains a NUL byte; readers of the file stop there\n");
}

TEST(EntryList, VersionEntryAtTheStartOfAConfigurationFile_IsNotAnEntry) {
    constexpr char kText[] = "//version\nINT:1\n//L\nSTR:x\n//version\nINT:2\n";
    EXPECT_EQ(listEntries(kText, "L", false).entries.size(), 2u);
    EXPECT_EQ(findProblems(kText, "L"), "");
    EXPECT_EQ(listEntries(kText, "", false).entries.size(), 3u);
}

TEST(EntryList, TextWithDamageAtEveryByte_IsRead) {
    const std::string text =
        "//version\nINT:1\n\n//L\nSTR:x\n//b\nBAR:0102\n03\n/c\nSTR:\r\n# d\n//e\nINT:-5";
    for (size_t at = 0; at < text.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            std::string damaged = text;
            damaged[at] = static_cast<char>(value);
            for (const char* key : {"", "L"})
                for (const TextEntry& entry : listEntries(damaged, key, value % 2 == 0).entries)
                    ASSERT_LE(entry.valueEnd, damaged.size());
        }
        findProblems(text.substr(0, at));
    }
}

}  // namespace
}  // namespace dovrel::tools
