#include "platform/files/FileUtilities.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/platform/files/FileUtilitiesFixture.h"
#include "tests/platform/files/ScratchFolder.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

class FileUtilities : public test::FileUtilitiesFixture {};

using std::string_literals::operator""s;
using test::ScratchFolder;

// The same name in the two encodings of paths.
constexpr char kMacRomanName[] = "caf\x8E.txt";
constexpr char kUtf8Name[] = "caf\xC3\xA9.txt";

TEST_F(FileUtilities, ReadWholeFile_WithANulByte_ReturnsTheTextBeforeIt) {
    EXPECT_EQ(readBack("before\0after"s, false), "before");
    EXPECT_EQ(readBack("\0after"s, true), "");
}

TEST_F(FileUtilities, ReadWholeFile_NormalisingLineEnds_TurnsEachIntoALineFeed) {
    EXPECT_EQ(readBack("x\r\ny\rz", true), "x\ny\nz");
    EXPECT_EQ(readBack("x\r\ny\rz", false), "x\r\ny\rz");
    EXPECT_EQ(readBack("\r\r\n\n\r\r\n", true), "\n\n\n\n\n");
}

TEST_F(FileUtilities, ReadWholeFile_WithATrailingLoneReturn_EndsInALineFeed) {
    EXPECT_EQ(readBack("x\r", true), "x\n");
    EXPECT_EQ(readBack("\r", true), "\n");
}

TEST_F(FileUtilities, ReadWholeFile_OfAnEmptyFile_IsEmpty) {
    EXPECT_EQ(readBack("", true), "");
    EXPECT_EQ(readBack("", false), "");
}

TEST_F(FileUtilities, ReadWholeFile_OfALargeFile_ReturnsAllOfIt) {
    const std::string large(3000001, 'x');
    EXPECT_TRUE(readBack(large, false) == large);
}

TEST_F(FileUtilities, ReadWholeFile_OfAMissingFile_ThrowsWithItsPath) {
    const std::string path = folder_.path("missing");
    const auto failure = test::failureOf([&] { readWholeFile(path, false); });
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->getMessage(), "Could not open file for reading: " + path);
    EXPECT_STREQ(failure->getDetail(), "???");
    EXPECT_EQ(failure->getCode(), 0);
    EXPECT_EQ(failure->getTypeCode(), 0u);
}

TEST_F(FileUtilities, ReadWholeFile_OfAFolder_ThrowsTheSame) {
    const auto failure = test::failureOf([&] { readWholeFile(folder_.path(), true); });
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->getMessage(), "Could not open file for reading: " + folder_.path());
}

TEST_F(FileUtilities, WriteWholeFile_CreatesAFileForAllUsersWithAllBytes) {
    const std::string path = folder_.path("new");
    EXPECT_TRUE(writeWholeFile(path, "a\0\r\n\xFF"s));
    EXPECT_EQ(ScratchFolder::readFile(path), "a\0\r\n\xFF"s);
    EXPECT_EQ(ScratchFolder::readPermissions(path), 0777u);
}

TEST_F(FileUtilities, WriteWholeFile_ReplacesTheContentOfAnExistingFile) {
    const std::string path = folder_.write("old", "a long content");
    EXPECT_TRUE(writeWholeFile(path, "short"));
    EXPECT_EQ(ScratchFolder::readFile(path), "short");
    EXPECT_TRUE(writeWholeFile(path, ""));
    EXPECT_EQ(ScratchFolder::readFile(path), "");
}

TEST_F(FileUtilities, WriteWholeFile_ThatCannotBeOpened_IsFalse) {
    EXPECT_FALSE(writeWholeFile(folder_.path("missing/file"), "x"));
    EXPECT_FALSE(writeWholeFile(folder_.path(), "x")) << "a folder";
}

TEST_F(FileUtilities, WriteWholeFile_OnAFullDisk_IsFalse) {
    EXPECT_FALSE(writeWholeFile("/dev/full", "x")) << "noticed when the file is closed";
    EXPECT_FALSE(writeWholeFile("/dev/full", std::string(1000000, 'x'))) << "noticed while it is written";
}

TEST_F(FileUtilities, WriteWholeFile_WithAMacRomanName_IsOpenedToAllOnlyIfTheUtf8NameIs) {
    // fopen and similar functions use the bytes unchanged; the platform's calls read them as Mac Roman. So
    // these are two different names.
    const std::string utf8 = folder_.write(kUtf8Name, "the other file");
    ScratchFolder::setPermissions(utf8, 0600);
    const std::string macRoman = folder_.path(kMacRomanName);
    EXPECT_TRUE(writeWholeFile(macRoman, "text"));
    EXPECT_EQ(readWholeFile(macRoman, false), "text");
    EXPECT_EQ(ScratchFolder::readPermissions(macRoman), 0600u);
    EXPECT_EQ(ScratchFolder::readPermissions(utf8), 0777u);
}

TEST_F(FileUtilities, RenameIfTargetMissing_Renames) {
    const std::string source = folder_.write("source", "content");
    EXPECT_TRUE(renameIfTargetMissing(source, folder_.path("target")));
    EXPECT_FALSE(std::filesystem::exists(source));
    EXPECT_EQ(ScratchFolder::readFile(folder_.path("target")), "content");
}

TEST_F(FileUtilities, RenameIfTargetMissing_OntoAnExistingTarget_IsFalseAndLeavesBothFiles) {
    const std::string source = folder_.write("source", "one");
    const std::string target = folder_.write("target", "two");
    EXPECT_FALSE(renameIfTargetMissing(source, target));
    EXPECT_EQ(ScratchFolder::readFile(source), "one");
    EXPECT_EQ(ScratchFolder::readFile(target), "two");
}

TEST_F(FileUtilities, RenameIfTargetMissing_OfAMissingSource_IsFalse) {
    EXPECT_FALSE(renameIfTargetMissing(folder_.path("source"), folder_.path("target")));
}

TEST_F(FileUtilities, RenameIfTargetMissing_IntoAMissingFolder_IsFalseAndLeavesTheSource) {
    const std::string source = folder_.write("source", "one");
    EXPECT_FALSE(renameIfTargetMissing(source, folder_.path("missing/target")));
    EXPECT_TRUE(std::filesystem::exists(source));
}

TEST_F(FileUtilities, RemoveFile_ReturnsWhetherItIsGone) {
    const std::string path = folder_.write("file", "x");
    EXPECT_TRUE(removeFile(path));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(removeFile(path));
}

TEST_F(FileUtilities, DeleteFileObject_ReturnsWhetherItIsGone) {
    const std::string path = folder_.write("file", "x");
    EXPECT_TRUE(deleteFileObject(path));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(deleteFileObject(path));
}

TEST_F(FileUtilities, DeleteFileObject_OfAFolder_DeletesOnlyAnEmptyOne) {
    ASSERT_TRUE(std::filesystem::create_directories(folder_.path("folder/inner")));
    EXPECT_FALSE(deleteFileObject(folder_.path("folder")));
    EXPECT_TRUE(deleteFileObject(folder_.path("folder/inner")));
    EXPECT_TRUE(deleteFileObject(folder_.path("folder/"))) << "with a slash at the end";
    EXPECT_FALSE(std::filesystem::exists(folder_.path("folder")));
}

TEST_F(FileUtilities, FileManagerForms_TakeAMacRomanPath) {
    const std::string onDisk = folder_.write(kUtf8Name, "x");
    const std::string asMacRoman = folder_.path(kMacRomanName);
    EXPECT_TRUE(pathExists(asMacRoman));
    EXPECT_FALSE(pathExists(onDisk)) << "UTF-8 bytes name something else in Mac Roman";
    EXPECT_TRUE(grantAllPermissions(asMacRoman));
    EXPECT_EQ(ScratchFolder::readPermissions(onDisk), 0777u);
    EXPECT_TRUE(deleteFileObject(asMacRoman));
    EXPECT_FALSE(std::filesystem::exists(onDisk));
}

TEST_F(FileUtilities, LanguageForms_TakeTheBytesOfAPathAsTheyAre) {
    for (const char* name : {kUtf8Name, kMacRomanName}) {
        const std::string path = folder_.path(name);
        EXPECT_TRUE(writeWholeFile(path, name));
        EXPECT_TRUE(fileExists(path));
        EXPECT_EQ(readWholeFile(path, false), name);
        EXPECT_TRUE(copyFileWithShell(path.c_str(), (path + "2").c_str(), true));
        EXPECT_TRUE(renameIfTargetMissing(path + "2", path + "3"));
        EXPECT_TRUE(removeFile(path + "3"));
        EXPECT_TRUE(removeFile(path));
    }
}

TEST_F(FileUtilities, FileExists_IsTrueForWhatCanBeOpened) {
    EXPECT_FALSE(fileExists(folder_.path("file")));
    EXPECT_TRUE(fileExists(folder_.write("file", "")));
    EXPECT_FALSE(fileExists(""));
}

TEST_F(FileUtilities, FileThatMayNotBeRead_ExistsForTheFileManagerOnly) {
    const std::string path = folder_.write("file", "content");
    std::filesystem::permissions(folder_.path(), std::filesystem::perms::all);
    ScratchFolder::setPermissions(path, 0);
    EXPECT_TRUE(holdsForOrdinaryUser([&] { return pathExists(path) && !fileExists(path); }));
    EXPECT_TRUE(holdsForOrdinaryUser([&] { return !renameIfTargetMissing(path, folder_.path("new")); }))
        << "a source that cannot be opened for reading is not renamed";
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(FileUtilities, PathExists_IsTrueForFilesAndFolders) {
    EXPECT_FALSE(pathExists(folder_.path("file")));
    EXPECT_TRUE(pathExists(folder_.write("file", "")));
    EXPECT_TRUE(pathExists(folder_.path()));
    EXPECT_TRUE(pathExists(folder_.path() + "/"));
    EXPECT_FALSE(pathExists(""));
}

}  // namespace
}  // namespace dovrel
