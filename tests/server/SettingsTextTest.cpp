#include "server/SettingsText.h"

#include <gtest/gtest.h>

#include <random>

namespace merrowd::test {
namespace {

using Problems = std::vector<std::string>;

Problems readProblems(std::string_view text) {
    Problems problems;
    readSettingsText(text, problems);
    return problems;
}

// Returns the sections as text, with a line "--" before each.
std::string readSections(std::string_view text) {
    Problems ignored;
    std::string result;
    for (const SettingsSection& section : readSettingsText(text, ignored)) {
        result += "--\n";
        section.entries.save(result);
    }
    return result;
}

TEST(SettingsText, TextThatIsUnderstood_HasNoProblemAndAllItsEntries) {
    const std::string text =
        "//version\nINT:1\n\n  //log\t\nINT: 1\n \t \n//errorText\nSTR:log=1\n//CLASS\nSTR:Scanner\n"
        "//identifier\nBAR:00010203\n04 05\t06 07\n08090A0B0C0D0E0f\n\n//log\nINT:-2147483648";
    EXPECT_EQ(readProblems(text), Problems());
    EXPECT_EQ(readSections(text),
              "--\n//errorText\nSTR:log=1\n//log\nINT:1\n"
              "--\n//CLASS\nSTR:Scanner\n//identifier\nBAR:000102030405060708090A0B0C0D0E0F\n"
              "//log\nINT:-2147483648\n");
    EXPECT_EQ(readProblems(""), Problems());
}

TEST(SettingsText, LineThatIsNeitherKeyNorValue_IsAProblem) {
    EXPECT_EQ(readProblems("log=1"), (Problems{"line 1: \"log=1\" is not part of an entry"}));
    EXPECT_EQ(readProblems("//log\nINT:1\n/delay\n//checkClasses\nINT:1\n"),
              (Problems{"line 3: \"/delay\" is not part of an entry"}));
}

TEST(SettingsText, LineBetweenAKeyAndItsValue_IsAProblemAndTheKeyWaits) {
    EXPECT_EQ(readProblems("//log\n# exchanges\nINT:1\n"),
              (Problems{"line 2: \"# exchanges\" is not part of an entry"}));
    EXPECT_EQ(readSections("//log\n# exchanges\nINT:1\n"), "--\n//log\nINT:1\n");
}

TEST(SettingsText, ValueWithoutAKey_IsAProblem) {
    EXPECT_EQ(readProblems("INT:1\n"), (Problems{"line 1: \"INT:1\" is not part of an entry"}));
    EXPECT_EQ(readProblems("//log\nINT:1\nINT:2\n"), (Problems{"line 3: \"INT:2\" is not part of an entry"}));
    EXPECT_EQ(readSections("//log\nINT:1\nINT:2\n"), "--\n//log\nINT:1\n");
}

TEST(SettingsText, LinesInARow_AreOneProblem) {
    EXPECT_EQ(readProblems("[settings]\nlog=1\n\ndelay=2\n//log\nINT:1\nend"),
              (Problems{"lines 1 to 4: \"[settings]\" and what follows is not part of an entry",
                        "line 7: \"end\" is not part of an entry"}));
}

TEST(SettingsText, KeyWithoutAValue_IsAProblem) {
    EXPECT_EQ(readProblems("//log"), (Problems{"line 1: \"log\" has no value"}));
    EXPECT_EQ(readProblems("//log\n//checkClasses\nINT:1\n//CLASS\n//delay\n1\n"),
              (Problems{"line 1: \"log\" has no value", "line 4: \"CLASS\" has no value",
                        "line 6: \"1\" is not part of an entry", "line 5: \"delay\" has no value"}));
    EXPECT_EQ(readSections("//log\n//checkClasses\nINT:1\n"), "--\n//checkClasses\nINT:1\n");
}

TEST(SettingsText, KeyRepeatedInASection_IsAProblemAndTheFirstValueStays) {
    const std::string text = "//log\nINT:1\n//log\nINT:0\n//CLASS\nSTR:A\n//log\nINT:2\n";
    EXPECT_EQ(readProblems(text), (Problems{"line 4: \"log\" has a value already"}));
    EXPECT_EQ(readSections(text), "--\n//log\nINT:1\n--\n//CLASS\nSTR:A\n//log\nINT:2\n");
}

TEST(SettingsText, ValueWithoutATypeWord_IsAProblemAndNoEntry) {
    EXPECT_EQ(
        readProblems("//log\nPRINT:1\n//delay\nINT:2\n"),
        (Problems{"line 2: the value \"1\" of \"log\" does not fit; expected one of the type words INT, STR "
                  "and BAR in front of it"}));
    EXPECT_EQ(readSections("//log\nPRINT:1\n//delay\nINT:2\n"), "--\n//delay\nINT:2\n");
}

TEST(SettingsText, InvalidNumber_IsAProblemAndNotAnEntry) {
    for (const std::string value : {"yes", "", "1x", "0x10", "--1", "2147483648", "99999999999", "1\\x0D"}) {
        const std::string written = value == "1\\x0D" ? "1\r" : value;
        EXPECT_EQ(readProblems("//log\nINT:" + written + "\n"),
                  (Problems{"line 2: the value \"" + value +
                            "\" of \"log\" does not fit; expected a number from "
                            "-2147483648 to 2147483647"}));
        EXPECT_EQ(readSections("//log\nINT:" + written + "\n"), "");
    }
}

TEST(SettingsText, BytesThatAreNotPairsOfDigits_AreAProblemAndNotAnEntry) {
    EXPECT_EQ(readProblems("//a\nBAR:4142\nlog=1\n//b\nBAR:414\n"),
              (Problems{"line 2: the value \"4142\\x0Alog=1\\x0A\" of \"a\" does not fit; expected pairs of "
                        "hexadecimal digits",
                        "line 5: the value \"414\\x0A\" of \"b\" does not fit; expected pairs of hexadecimal "
                        "digits"}));
    EXPECT_EQ(readSections("//a\nBAR:4142\nlog=1\n//b\nBAR:414\n"), "");
}

TEST(SettingsText, RandomBytes_AreProblemsOfOneLineEach) {
    std::mt19937 random(1);
    for (int round = 0; round < 100; ++round) {
        std::string text;
        for (int i = 0; i < 1000; ++i)
            text += static_cast<char>(random() & 0xFF);
        const Problems problems = readProblems(text);
        ASSERT_FALSE(problems.empty());
        for (const std::string& problem : problems)
            EXPECT_EQ(problem.find_first_of(std::string("\n\r\0", 3)), std::string::npos);
    }
}

TEST(SettingsText, ManyProblems_TakeTimeInProportion) {
    constexpr size_t kCount = 300'000;
    std::string text;
    for (size_t i = 0; i < kCount; ++i)
        text += "//a\n";
    EXPECT_EQ(readProblems(text).size(), kCount);
}

}  // namespace
}  // namespace merrowd::test
