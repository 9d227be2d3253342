#include "tools/texts/TextsCheck.h"

#include <gtest/gtest.h>

#include "settings/TextKeys.h"
#include "tools/WholeFile.h"

namespace dovrel::tools {
namespace {

std::string findProblems(const std::string& text) {
    std::string lines;
    for (const LineProblem& problem : checkTexts(TextsFile::fromText(text)))
        lines += std::to_string(problem.line) + ": " + problem.text + "\n";
    return lines;
}

// Returns a section with a text for each key: the key's line is 3 + 2 * index, counted from that of LANGUAGE.
std::string section(const std::string& language) {
    std::string text = "//LANGUAGE\nSTR:" + language + "\n";
    for (const char* key : kAllTextKeys)
        text += std::string("//") + key + "\nSTR:text\n";
    return text;
}

// Three complete languages. The first text of the first language is in line 4.
std::string completeFile() {
    return section("English") + section("German") + section("Francais");
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos);
    return text.replace(at, from.size(), to);
}

TEST(TextsCheck, ShippedTexts_HaveNoProblems) {
    EXPECT_EQ(findProblems(readInput(SHIPPED_TEXTS)), "");
    EXPECT_EQ(findProblems(completeFile()), "");
}

TEST(TextsCheck, MissingLanguages_AreProblemsWithoutALine) {
    EXPECT_EQ(findProblems(""),
              "0: there are no texts in German\n"
              "0: there are no texts in Francais\n"
              "0: there are no texts in English\n");
    EXPECT_EQ(findProblems(section("English") + section("Francais")), "0: there are no texts in German\n");
}

TEST(TextsCheck, LanguageThatIsNotUsed_IsAProblem) {
    const std::string file = completeFile();
    EXPECT_EQ(findProblems(section("Spanish") + file),
              "1: the texts in Spanish are never used; the library shows those in English\n");
    EXPECT_EQ(findProblems(section("french") + file),
              "1: the library does not know the language \"french\"\n");
    EXPECT_EQ(findProblems("//ERROR_DLG_TITLE\nSTR:x\n" + file),
              "1: the entries from here on belong to no language\n");
    EXPECT_EQ(findProblems(section("German") + file),
              std::to_string(5 + 4 * std::size(kAllTextKeys)) +
                  ": German occurs twice; the library uses the first section\n");
}

TEST(TextsCheck, KeyThatIsMissingInALanguage_IsAProblem) {
    EXPECT_EQ(findProblems(replaced(completeFile(), "//ERROR_DLG_TITLE\nSTR:text\n", "")),
              "1: English has no text for ERROR_DLG_TITLE\n");
}

TEST(TextsCheck, KeyThatNoCodeUses_IsAProblem) {
    EXPECT_EQ(findProblems(replaced(completeFile(), "//ERROR_DLG_TITLE",
                                    "//ERROR_DLG_TITEL\nSTR:x\n//ERROR_DLG_TITLE")),
              "3: the library does not use ERROR_DLG_TITEL\n");
}

TEST(TextsCheck, EmptyTextAndOtherTypes_AreProblems) {
    EXPECT_EQ(findProblems(replaced(completeFile(), "STR:text", "STR:")),
              "4: the text of ERROR_DLG_TITLE is empty\n");
    EXPECT_EQ(findProblems(replaced(completeFile(), "STR:text", "INT:5")),
              "4: the value of ERROR_DLG_TITLE is not a string\n");
}

TEST(TextsCheck, LineWithoutTypeWord_IsAProblemOfTheKey) {
    EXPECT_EQ(findProblems(replaced(completeFile(), "STR:text", "text")),
              "1: English has no text for ERROR_DLG_TITLE\n"
              "3: \"ERROR_DLG_TITLE\" has no value\n");
}

TEST(TextsCheck, CharactersOutsideTheEncoding_AreProblems) {
    EXPECT_EQ(findProblems(replaced(completeFile(), "STR:text", "STR:gr\xC3\xB6\xE2\x82\xAC")),
              "4: the text of ERROR_DLG_TITLE contains \"ö\" in UTF-8 (C3B6); the file is in Mac Roman\n"
              "4: the text of ERROR_DLG_TITLE contains \"€\" in UTF-8 (E282AC); the file is in Mac Roman\n");
    EXPECT_EQ(findProblems(replaced(completeFile(), "STR:text", "STR:a\tb\x7F")),
              "4: the text of ERROR_DLG_TITLE contains the control character 09\n"
              "4: the text of ERROR_DLG_TITLE contains the control character 7F\n");
    EXPECT_EQ(findProblems(replaced(completeFile(), "STR:text", "STR:text\r")),
              "4: the line ends with a carriage return, which readers keep\n");
    EXPECT_EQ(findProblems(replaced(completeFile(), "STR:text",
                                    "STR:gr\x9A\xA7"
                                    "er")),
              "");
}

TEST(TextsCheck, FileWithDamageAtEveryByte_IsChecked) {
    const std::string file = section("English").substr(0, 200);
    for (size_t at = 0; at < file.size(); ++at) {
        for (const int value : {0x00, 0x0A, 0x2F, 0x3A, 0x80, 0xC3, 0xFF}) {
            std::string damaged = file;
            damaged[at] = static_cast<char>(value);
            EXPECT_NE(findProblems(damaged), "");
        }
        EXPECT_NE(findProblems(file.substr(0, at)), "");
    }
}

}  // namespace
}  // namespace dovrel::tools
