#include "tools/properties/Section.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>

#include "settings/ConfigFileSystem.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {
namespace {

constexpr std::string_view kText =
    "//version\nINT:1\n//before\nINT:1\n//L\nSTR:x\n//a\nINT:1\n//a\nINT:2\n\n//L\nSTR:y\n//a\nINT:3\n";

TEST(Section, Sections_AreThoseThatTheLibraryReads) {
    const std::vector<Section> sections = splitSections(kText, "L");
    const std::vector<Properties> read = ConfigFileSystem::readSections(kText, "L");
    ASSERT_EQ(sections.size(), 3u);
    ASSERT_EQ(read.size(), 3u);
    for (size_t i = 0; i < sections.size(); ++i) {
        EXPECT_EQ(sections[i].entries.size(), read[i].size());
        EXPECT_EQ(sections[i].index, i);
        for (const TextEntry& entry : sections[i].entries)
            EXPECT_TRUE(read[i].contains(std::string(entry.key)));
    }
    EXPECT_EQ(kText.substr(sections[1].begin, sections[1].end - sections[1].begin),
              "//L\nSTR:x\n//a\nINT:1\n//a\nINT:2\n\n");
    EXPECT_EQ(sections[2].end, kText.size());
}

TEST(Section, SectionKeyWithoutAValue_BeginsASection) {
    constexpr std::string_view kWithoutValue = "//L\nSTR:x\n//L\n//a\nINT:1\n//L\n";
    const std::vector<Section> sections = splitSections(kWithoutValue, "L");
    ASSERT_EQ(sections.size(), ConfigFileSystem::readSections(kWithoutValue, "L").size());
    ASSERT_EQ(sections.size(), 2u);
    EXPECT_EQ(sections[1].entries.front().key, "a");
    EXPECT_EQ(sections[1].end, kWithoutValue.size() - 4);
    EXPECT_EQ(findSection(kWithoutValue, SectionChoice::parse("L=x")).entries.size(), 1u);
}

TEST(Section, ChosenSection_IsFoundByItsValue) {
    EXPECT_EQ(findSection(kText, SectionChoice::parse("L=y")).entries.back().value, "3");
    EXPECT_THROW(findSection(kText, SectionChoice::parse("L=z")), ToolFailure);
    EXPECT_THROW(findSection("", SectionChoice::parse("L=x")), ToolFailure);
}

TEST(Section, WithoutAKey_IsTheWholeText) {
    EXPECT_EQ(findSection("//a\nINT:1\n//b\nINT:2\n", {}).entries.size(), 2u);
    EXPECT_EQ(findSection("# nothing\n", {}).end, 10u);
}

TEST(Section, ChoiceInAnotherForm_IsAWrongArgument) {
    EXPECT_EQ(SectionChoice::parse("L=a=b").value, "a=b");
    EXPECT_THROW(SectionChoice::parse("L"), CLI::ValidationError);
    EXPECT_THROW(SectionChoice::parse("=x"), CLI::ValidationError);
}

}  // namespace
}  // namespace dovrel::tools
