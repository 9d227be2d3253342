#include "tools/texts/TextsFile.h"

#include <gtest/gtest.h>

#include "tools/Subcommand.h"

namespace dovrel::tools {
namespace {

constexpr char kText[] =
    "//version\nINT:1\n\n//LANGUAGE\nSTR:German\n//a\nSTR:_Gr\x9A\xA7"
    "e_SDNLzwei\n//LANGUAGE\nSTR:English\n//LANGUAGE\nSTR:German\n";

TEST(TextsFile, Languages_HaveTheirTextsAndLines) {
    const TextsFile file = TextsFile::fromText(kText);
    ASSERT_EQ(file.languages().size(), 3u);
    EXPECT_EQ(file.languages()[0].name, "German");
    EXPECT_EQ(file.languages()[0].line, 4u);
    ASSERT_EQ(file.languages()[0].texts.size(), 1u);
    EXPECT_EQ(file.languages()[0].texts[0].key, "a");
    EXPECT_EQ(file.languages()[1].name, "English");
    EXPECT_TRUE(file.languages()[1].texts.empty());
}

TEST(TextsFile, LanguageThatOccursTwice_IsTheFirstSection) {
    const TextsFile file = TextsFile::fromText(kText);
    EXPECT_EQ(&file.find("German"), &file.languages()[0]);
}

TEST(TextsFile, LanguageThatIsNotThere_IsAFailureWithTheOthers) {
    try {
        TextsFile::fromText(kText).find("Francais");
        ADD_FAILURE();
    } catch (const ToolFailure& failure) {
        EXPECT_EQ(std::string(failure.what()),
                  "there are no texts in Francais; the languages are German, English, German");
    }
    EXPECT_THROW(TextsFile::fromText("").find("German"), ToolFailure);
}

TEST(TextsFile, Text_IsShownAsTheUserSeesItOrAsStored) {
    const TextsFile file = TextsFile::fromText(kText);
    const TextEntry& entry = file.find("German").texts[0];
    EXPECT_EQ(TextsFile::shownText(entry, false), "Größe_\nzwei");
    EXPECT_EQ(TextsFile::shownText(entry, true), "_Größe_SDNLzwei");
}

}  // namespace
}  // namespace dovrel::tools
