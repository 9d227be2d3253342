#include "platform/FileReplacement.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "tests/platform/ScratchFolder.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/OrdinaryUser.h"

namespace dovrel {
namespace {

using test::FileSizeLimit;
using test::ScratchFolder;

constexpr rlim_t kLimit = 50'000;

struct FileReplacement : testing::Test {
    size_t filesInFolder() const {
        const std::filesystem::directory_iterator all(folder.path());
        return static_cast<size_t>(std::distance(begin(all), end(all)));
    }

    static ino_t inodeOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_ino;
    }

    const ScratchFolder folder;
    const std::string tooLong = std::string(kLimit + 1, 'x');
};

TEST_F(FileReplacement, NoSuchFile_IsCreated) {
    EXPECT_TRUE(replaceFileContent(folder.path("file"), "new"));
    EXPECT_EQ(ScratchFolder::contentOf(folder.path("file")), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, ExistingFile_HasTheNewContentAloneAndItsPermissions) {
    const std::string path = folder.write("file", "a long old content");
    ScratchFolder::setPermissions(path, 0640);
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(ScratchFolder::contentOf(path), "new");
    EXPECT_EQ(ScratchFolder::permissionsOf(path), 0640u);
    EXPECT_TRUE(replaceFileContent(path, ""));
    EXPECT_EQ(ScratchFolder::contentOf(path), "");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, NoRoomForTheNewContent_LeavesTheOldOneAndNothingElse) {
    const std::string path = folder.write("file", "old");
    const FileSizeLimit limit(kLimit);
    EXPECT_FALSE(replaceFileContent(path, tooLong));
    EXPECT_EQ(ScratchFolder::contentOf(path), "old");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, SomebodyWhoHasTheOldFileOpen_ReadsItToItsEnd) {
    const std::string path = folder.write("file", "old");
    std::ifstream reader(path);
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
}

TEST_F(FileReplacement, NamesThatAreTakenBesideTheFile_AreLeftAlone) {
    const std::string path = folder.write("file", "old");
    const std::string other = folder.write("file.new0", "left behind");
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(ScratchFolder::contentOf(path), "new");
    EXPECT_EQ(ScratchFolder::contentOf(other), "left behind");
    EXPECT_EQ(filesInFolder(), 2u);
}

TEST_F(FileReplacement, FileWithTwoNames_HasTheNewContentUnderBoth) {
    const std::string path = folder.write("file", "old");
    std::filesystem::create_hard_link(path, folder.path("other name"));
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(ScratchFolder::contentOf(folder.path("other name")), "new");
}

TEST_F(FileReplacement, SymbolicLink_StaysOneAndItsTargetHasTheNewContent) {
    const std::string target = folder.write("target", "old");
    std::filesystem::create_symlink(target, folder.path("link"));
    EXPECT_TRUE(replaceFileContent(folder.path("link"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
    EXPECT_EQ(ScratchFolder::contentOf(target), "new");
}

TEST_F(FileReplacement, Device_IsWrittenToAndStays) {
    EXPECT_TRUE(replaceFileContent("/dev/null", "x"));
    EXPECT_FALSE(replaceFileContent("/dev/full", "x"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(FileReplacement, FolderOrMissingFolder_IsFalse) {
    EXPECT_FALSE(replaceFileContent(folder.path(), "x"));
    EXPECT_FALSE(replaceFileContent(folder.path("missing/file"), "x"));
}

TEST_F(FileReplacement, FileThatMayNotBeWritten_IsFalseAndStaysThoughItsFolderMay) {
    const std::string path = folder.write("file", "old");
    ScratchFolder::setPermissions(path, 0444);
    ScratchFolder::setPermissions(folder.path(), 0777);
    EXPECT_TRUE(holdsForOrdinaryUser([&] { return !replaceFileContent(path, "new"); }));
    EXPECT_EQ(ScratchFolder::contentOf(path), "old");
}

TEST_F(FileReplacement, FolderThatMayNotBeWritten_FileInItIsWrittenInPlace) {
    const std::string path = folder.write("file", "old");
    ScratchFolder::setPermissions(path, 0666);
    ScratchFolder::setPermissions(folder.path(), 0555);
    EXPECT_TRUE(holdsForOrdinaryUser([&] { return replaceFileContent(path, "new"); }));
    ScratchFolder::setPermissions(folder.path(), 0777);
    EXPECT_EQ(ScratchFolder::contentOf(path), "new");
}

TEST_F(FileReplacement, FileOfAnotherUser_StaysThatUsers) {
    NEEDS_ROOT("give a file to another user");
    const std::string path = folder.write("file", "old");
    ASSERT_EQ(chown(path.c_str(), 65534, 65534), 0);
    const ino_t inode = inodeOf(path);
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(inodeOf(path), inode);
    EXPECT_EQ(ScratchFolder::contentOf(path), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

}  // namespace
}  // namespace dovrel
