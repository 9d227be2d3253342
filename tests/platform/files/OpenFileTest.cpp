#include "platform/files/OpenFile.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/platform/files/ScratchFolder.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::ScratchFolder;

void expectOpeningFailure(const std::string& path) {
    const auto failure = test::failureOf([&] { openForReading(path); });
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->getMessage(), "Could not open file for reading: " + path);
    EXPECT_STREQ(failure->getDetail(), "???");
    EXPECT_EQ(failure->getCode(), 0);
}

TEST(OpenFile, OpenForReading_FileThatIsThere_CanBeReadByteForByte) {
    const ScratchFolder folder;
    const OpenFile file = openForReading(folder.write("file", "A\r\nB"));
    char content[8] = {};
    EXPECT_EQ(std::fread(content, 1, sizeof content, file.get()), 4u);
    EXPECT_STREQ(content, "A\r\nB");
}

TEST(OpenFile, OpenForReading_NoSuchFile_ThrowsAMessageThatNamesThePath) {
    const ScratchFolder folder;
    expectOpeningFailure(folder.path("missing"));
    expectOpeningFailure("");
}

TEST(OpenFile, OpenForReading_Folder_ThrowsTheSame) {
    const ScratchFolder folder;
    expectOpeningFailure(folder.path());
}

TEST(OpenFile, IsFolder_TellsFoldersFromFiles) {
    const ScratchFolder folder;
    EXPECT_TRUE(isFolder(OpenFile(std::fopen(folder.path().c_str(), "rb")).get()));
    EXPECT_FALSE(isFolder(OpenFile(std::fopen(folder.write("file", "x").c_str(), "rb")).get()));
}

}  // namespace
}  // namespace dovrel
