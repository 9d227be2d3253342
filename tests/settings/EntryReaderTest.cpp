#include "settings/EntryReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dovrel {
namespace {

// Returns every step as a line of text, so that a test can compare all of them at once.
std::vector<std::string> steps(std::string_view text, KeyLineRule rule = KeyLineRule::kOneSlash) {
    PropertiesStringObj cursor(text);
    EntryReader reader(cursor, rule);
    std::vector<std::string> result;
    for (EntryReader::Step step = reader.next(); step != EntryReader::Step::kEnd; step = reader.next()) {
        if (step == EntryReader::Step::kOther) {
            result.push_back("other " + std::string(reader.line()));
            continue;
        }
        std::string line = "key " + std::string(reader.key());
        if (step == EntryReader::Step::kValue) {
            line += " type " + std::to_string(static_cast<int>(reader.type()));
            line += " value " + std::string(reader.value());
        }
        result.push_back(line);
    }
    return result;
}

using Steps = std::vector<std::string>;

TEST(EntryReader, Next_KeyLineAndValueLine_AreTwoSteps) {
    EXPECT_EQ(steps("//a\nINT:1\n"), (Steps{"key a", "key a type 0 value 1"}));
}

TEST(EntryReader, Next_LinesThatAreNeitherKeyNorValue_LetTheKeyWait) {
    EXPECT_EQ(
        steps("noise\n//a\n\nnoise\nSTR:x\nnoise"),
        (Steps{"other noise", "key a", "other ", "other noise", "key a type 1 value x", "other noise"}));
}

TEST(EntryReader, Next_SecondKeyLineBeforeTheValue_TakesThePlaceOfTheFirst) {
    EXPECT_EQ(steps("//a\n//b\nSTR:x"), (Steps{"key a", "key b", "key b type 1 value x"}));
}

TEST(EntryReader, Next_ValueLineWithoutAKey_IsAnotherLine) {
    EXPECT_EQ(steps("STR:x\n//a\nSTR:y\n STR:z\n"),
              (Steps{"other STR:x", "key a", "key a type 1 value y", "other STR:z"}));
}

TEST(EntryReader, Next_LineThatBeginsWithASlashAndContainsATypeWord_IsAKeyLine) {
    EXPECT_EQ(steps("//a\n//STR:b\nSTR:x"), (Steps{"key a", "key STR:b", "key STR:b type 1 value x"}));
}

TEST(EntryReader, Next_UnknownTypeWord_UsesTheKeyUp) {
    EXPECT_EQ(steps("//a\nxSTR:y\nSTR:z"), (Steps{"key a", "key a type 255 value y", "other STR:z"}));
}

TEST(EntryReader, Next_BinaryValue_GoesOnToTheNextSlash) {
    EXPECT_EQ(steps("//a\nBAR:41\n42\nINT:43\n//b\nINT:1"),
              (Steps{"key a", "key a type 2 value 41\n42\nINT:43\n", "key b", "key b type 0 value 1"}));
}

TEST(EntryReader, Next_OneSlashRule_OneSlashMakesAKeyLine) {
    EXPECT_EQ(steps("/xa\nINT:1"), (Steps{"key a", "key a type 0 value 1"}));
}

TEST(EntryReader, Next_TwoSlashesRule_LineWithOneSlashIsAnotherLine) {
    EXPECT_EQ(steps("//a\n/x\nINT:1", KeyLineRule::kTwoSlashes),
              (Steps{"key a", "other /x", "key a type 0 value 1"}));
}

TEST(EntryReader, Next_TwoSlashesRule_LineWithOneSlashStillEndsABinaryValue) {
    EXPECT_EQ(steps("//a\nBAR:41\n/x\n42", KeyLineRule::kTwoSlashes),
              (Steps{"key a", "key a type 2 value 41\n", "other /x", "other 42"}));
}

TEST(EntryReader, Line_OfEachStep_IsTheLineWithoutBlanksAtItsEnds) {
    const std::string text = " //a\t\n\tBAR:41 \n42\n";
    PropertiesStringObj cursor(text);
    EntryReader reader(cursor, KeyLineRule::kOneSlash);
    EXPECT_EQ(reader.next(), EntryReader::Step::kKey);
    EXPECT_EQ(reader.line(), "//a");
    EXPECT_EQ(reader.next(), EntryReader::Step::kValue);
    EXPECT_EQ(reader.line(), "BAR:41");
    EXPECT_EQ(reader.next(), EntryReader::Step::kEnd);
}

}  // namespace
}  // namespace dovrel
