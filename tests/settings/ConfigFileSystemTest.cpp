#include "settings/ConfigFileSystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "settings/EncipheredText.h"
#include "tests/settings/TextForm.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/library/Failures.h"

using namespace std::string_literals;

namespace dovrel {
namespace {

using test::failureText;
using test::TemporaryFolder;

// Returns all sections as text, one after another, with "--" before each.
std::string readSections(std::string_view text, const std::string& sectionKey = "LANGUAGE") {
    std::string result;
    for (const Properties& section : ConfigFileSystem::readSections(text, sectionKey)) {
        result += "--\n";
        section.save(result);
    }
    return result;
}

TEST(ConfigFileSystem, ReadText_PlainFile_IsItsContentWithItsLineEnds) {
    const TemporaryFolder folder;
    folder.write("file", "//a\r\nSTR:x\r//b\n");
    EXPECT_EQ(ConfigFileSystem::readText(folder.path("file")), "//a\r\nSTR:x\r//b\n");
}

TEST(ConfigFileSystem, ReadText_NulByte_EndsTheText) {
    const TemporaryFolder folder;
    folder.write("file", "//a\nSTR:x\0y\n"s);
    EXPECT_EQ(ConfigFileSystem::readText(folder.path("file")), "//a\nSTR:x");
}

TEST(ConfigFileSystem, ReadText_EmptyFile_IsEmpty) {
    const TemporaryFolder folder;
    folder.write("file", "");
    EXPECT_EQ(ConfigFileSystem::readText(folder.path("file")), "");
}

TEST(ConfigFileSystem, ReadText_NoSuchFile_ThrowsAMessageThatNamesThePath) {
    const TemporaryFolder folder;
    const std::string path = folder.path("missing");
    EXPECT_EQ(failureText([&] { ConfigFileSystem::readText(path); }),
              "Could not open file for reading: " + path);
}

TEST(ConfigFileSystem, ReadText_Folder_ThrowsAMessageThatNamesThePath) {
    const TemporaryFolder folder;
    EXPECT_EQ(failureText([&] { ConfigFileSystem::readText(folder.path()); }),
              "Could not open file for reading: " + folder.path());
}

TEST(ConfigFileSystem, ReadText_EncipheredFile_IsThePlainText) {
    const TemporaryFolder folder;
    folder.write("file", encipher("//a\nSTR:x\n"));
    EXPECT_EQ(ConfigFileSystem::readText(folder.path("file")), "//a\nSTR:x\n");
}

TEST(ConfigFileSystem, ReadText_FileThatOnlyBeginsAsAnEncipheredOne_ThrowsAMessageThatNamesThePath) {
    const TemporaryFolder folder;
    const std::string path = folder.path("file");
    const std::string whole = encipher("text");
    for (const std::string& content : {"ENC"s, "ENC and words"s, "ENC\n"s, whole + "!", whole.substr(0, 8)}) {
        folder.write("file", content);
        EXPECT_EQ(failureText([&] { ConfigFileSystem::readText(path); }), "Could not decipher file: " + path);
    }
}

TEST(ConfigFileSystem, ReadSections_VersionEntry_ParsesAsWithoutIt) {
    const std::string text = "//LANGUAGE\nSTR:English\n//a\nSTR:x\n";
    const std::string expected = "--\n//LANGUAGE\nSTR:English\n//a\nSTR:x\n";
    EXPECT_EQ(readSections(text), expected);
    EXPECT_EQ(readSections("//version\nINT:3\n" + text), expected);
}

TEST(ConfigFileSystem, ReadSections_VersionLineWithBlanksAndTab_IsRecognised) {
    EXPECT_EQ(readSections("  //version\t\nINT:3\n//a\nSTR:x\n"), "--\n//a\nSTR:x\n");
}

TEST(ConfigFileSystem, ReadSections_VersionLineWithoutAValueLine_IsTheOnlySkippedLine) {
    EXPECT_EQ(readSections("//version\n//a\nSTR:x\n"), "--\n//a\nSTR:x\n");
    EXPECT_EQ(readSections("//version\n//INT:\nSTR:x\n"), "--\n//INT:\nSTR:x\n");
    EXPECT_EQ(readSections("//version"), "");
}

TEST(ConfigFileSystem, ReadSections_VersionNotInTheFirstLineOrSpeltOtherwise_IsAnEntry) {
    EXPECT_EQ(readSections("\n//version\nINT:3\n"), "--\n//version\nINT:3\n");
    EXPECT_EQ(readSections("//Version\nINT:3\n"), "--\n//Version\nINT:3\n");
    EXPECT_EQ(readSections("//version\r\nINT:3\n"), "--\n//version\r\nINT:3\n");
}

TEST(ConfigFileSystem, ReadSections_TwoSectionKeys_SplitTheFileInTwo) {
    EXPECT_EQ(readSections("//LANGUAGE\nSTR:English\n//a\nSTR:x\n//LANGUAGE\nSTR:German\n//a\nSTR:y\n"),
              "--\n//LANGUAGE\nSTR:English\n//a\nSTR:x\n--\n//LANGUAGE\nSTR:German\n//a\nSTR:y\n");
}

TEST(ConfigFileSystem, ReadSections_EntriesBeforeTheFirstSectionKey_AreASectionOfTheirOwn) {
    EXPECT_EQ(readSections("//a\nSTR:x\n//LANGUAGE\nSTR:English\n"),
              "--\n//a\nSTR:x\n--\n//LANGUAGE\nSTR:English\n");
}

TEST(ConfigFileSystem, ReadSections_KeyRepeatedInASection_KeepsItsFirstValue) {
    EXPECT_EQ(readSections("//LANGUAGE\nSTR:English\n//a\nSTR:x\n//a\nSTR:y\n"),
              "--\n//LANGUAGE\nSTR:English\n//a\nSTR:x\n");
}

TEST(ConfigFileSystem, ReadSections_SectionWithoutEntries_IsLeftOut) {
    EXPECT_EQ(readSections("//LANGUAGE\n//LANGUAGE\nSTR:English\n//LANGUAGE\n"),
              "--\n//LANGUAGE\nSTR:English\n");
}

TEST(ConfigFileSystem, ReadSections_TextWithoutAnyEntry_IsAnEmptyList) {
    EXPECT_EQ(readSections(""), "");
    EXPECT_EQ(readSections("words\n\n//key\n"), "");
}

TEST(ConfigFileSystem, ReadSections_UnknownTypeWord_DropsThatEntryAndGoesOn) {
    EXPECT_EQ(readSections("//a\nTEXTSTR:x\n//b\nINT:1\n"), "--\n//b\nINT:1\n");
}

TEST(ConfigFileSystem, ReadSections_LineWithOneSlashOrNoise_IsDropped) {
    EXPECT_EQ(readSections("/x\n//a\nnoise\n/y\nSTR:x\nnoise\n"), "--\n//a\nSTR:x\n");
}

TEST(ConfigFileSystem, ReadSections_BinaryValueInSeveralLines_IsOneValue) {
    EXPECT_EQ(readSections("//a\nBAR:41\n42\n//LANGUAGE\nINT:1\n"),
              "--\n//a\nBAR:4142\n--\n//LANGUAGE\nINT:1\n");
}

TEST(ConfigFileSystem, ReadSections_WithAFilter_ShowsItEveryStepAndLeavesOutWhatItRejects) {
    using Step = EntryReader::Step;
    std::string steps;
    const auto sections = ConfigFileSystem::readSections(
        "//version\nINT:3\n//a\nINT:1\nnoise\n//S\nSTR:x\n//b\nINT:2\n//c\n", "S",
        [&steps](Step step, const EntryReader& reader) {
            const char* const names[] = {"key ", "value ", "other ", "end "};
            steps +=
                names[static_cast<size_t>(step)] + std::string(step == Step::kEnd ? "" : reader.line()) + '|';
            return reader.key() != "b";
        });
    EXPECT_EQ(steps, "key //a|value INT:1|other noise|key //S|value STR:x|key //b|value INT:2|key //c|end |");
    ASSERT_EQ(sections.size(), 2u);
    EXPECT_EQ(test::saved(sections[0]), "//a\nINT:1\n");
    EXPECT_EQ(test::saved(sections[1]), "//S\nSTR:x\n");
}

TEST(ConfigFileSystem, ReadSections_AMillionEntries_AreReadInOnePass) {
    std::string text;
    for (int i = 0; i < 500'000; ++i)
        text += "//S\nINT:1\n//a\nINT:2\n";
    EXPECT_EQ(ConfigFileSystem::readSections(text, "S").size(), 500'000u);
}

TEST(ConfigFileSystem, WriteProperties_CreatesAFileThatReadsBackEqual) {
    const TemporaryFolder folder;
    Properties store;
    store.addString("a", "x");
    store.addInt("b", 2);
    EXPECT_TRUE(ConfigFileSystem::writeProperties(folder.path("file"), store));
    EXPECT_EQ(folder.read("file"), "//a\nSTR:x\n//b\nINT:2\n");
    EXPECT_EQ(readSections(ConfigFileSystem::readText(folder.path("file"))), "--\n//a\nSTR:x\n//b\nINT:2\n");
}

TEST(ConfigFileSystem, WriteProperties_OverALongerFile_LeavesNothingOfIt) {
    const TemporaryFolder folder;
    folder.write("file", std::string(100, 'x'));
    Properties store;
    store.addInt("a", 1);
    EXPECT_TRUE(ConfigFileSystem::writeProperties(folder.path("file"), store));
    EXPECT_EQ(folder.read("file"), "//a\nINT:1\n");
}

TEST(ConfigFileSystem, Writers_OpenTheFileToAllUsers) {
    const TemporaryFolder folder;
    ASSERT_TRUE(ConfigFileSystem::writeProperties(folder.path("plain"), Properties()));
    ASSERT_TRUE(ConfigFileSystem::writeEnciphered(folder.path("enciphered"), "text"));
    for (const char* name : {"plain", "enciphered"}) {
        struct stat status {};
        ASSERT_EQ(stat(folder.path(name).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0777u) << name;
    }
}

TEST(ConfigFileSystem, Writers_FileThatCannotBeOpened_ReturnFalse) {
    const TemporaryFolder folder;
    EXPECT_FALSE(ConfigFileSystem::writeProperties(folder.path("no folder/file"), Properties()));
    EXPECT_FALSE(ConfigFileSystem::writeEnciphered(folder.path("no folder/file"), "text"));
    EXPECT_FALSE(ConfigFileSystem::writeProperties(folder.path(), Properties()));
}

TEST(ConfigFileSystem, Writers_NoRoomForTheWholeText_ReturnFalse) {
    const TemporaryFolder folder;
    Properties store;
    store.addString("a", std::string(100'000, 'x'));
    const test::FileSizeLimit limit(50'000);
    EXPECT_FALSE(ConfigFileSystem::writeProperties(folder.path("plain"), store));
    EXPECT_FALSE(ConfigFileSystem::writeEnciphered(folder.path("enciphered"), std::string(100'000, 'x')));
}

TEST(ConfigFileSystem, Writers_NoRoomForTheWholeText_LeaveAGoodFileAsItWas) {
    const TemporaryFolder folder;
    folder.write("plain", "//a\nINT:1\n");
    folder.write("enciphered", "//b\nINT:2\n");
    Properties store;
    store.addString("a", std::string(100'000, 'x'));
    {
        const test::FileSizeLimit limit(50'000);
        EXPECT_FALSE(ConfigFileSystem::writeProperties(folder.path("plain"), store));
        EXPECT_FALSE(ConfigFileSystem::writeEnciphered(folder.path("enciphered"), std::string(100'000, 'x')));
    }
    EXPECT_EQ(folder.read("plain"), "//a\nINT:1\n");
    EXPECT_EQ(folder.read("enciphered"), "//b\nINT:2\n");
}

TEST(ConfigFileSystem, WriteEnciphered_HidesTheTextAndReadsBackEqual) {
    const TemporaryFolder folder;
    EXPECT_TRUE(ConfigFileSystem::writeEnciphered(folder.path("file"), "//a\nSTR:secret\n"));
    const std::string stored = folder.read("file");
    EXPECT_EQ(stored.substr(0, 3), "ENC");
    EXPECT_EQ(stored.find("secret"), std::string::npos);
    EXPECT_EQ(ConfigFileSystem::readText(folder.path("file")), "//a\nSTR:secret\n");
}

TEST(ConfigFileSystem, RemoveFile_IsGone) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    ConfigFileSystem::removeFile(folder.path("file"));
    EXPECT_FALSE(std::filesystem::exists(folder.path("file")));
}

TEST(ConfigFileSystem, RemoveFile_NoSuchFile_IsIgnored) {
    const TemporaryFolder folder;
    ConfigFileSystem::removeFile(folder.path("missing"));
    EXPECT_TRUE(std::filesystem::exists(folder.path()));
}

}  // namespace
}  // namespace dovrel
