#include "platform/files/FileReplacement.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <string>

#include "tests/platform/files/ScratchFolder.h"
#include "tests/support/ExtendedAttributes.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/MountNamespace.h"
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

    static ino_t readInode(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_ino;
    }

    // A killed writer leaves a file with these permissions.
    void writeLeftover(const std::string& name) const {
        ScratchFolder::setPermissions(folder.write(name, "left behind"), 0200);
    }

    const ScratchFolder folder;
    const std::string tooLong = std::string(kLimit + 1, 'x');
};

TEST_F(FileReplacement, NoSuchFile_IsCreated) {
    EXPECT_TRUE(replaceFileContent(folder.path("file"), "new"));
    EXPECT_EQ(ScratchFolder::readFile(folder.path("file")), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, ExistingFile_HasTheNewContentAloneAndItsPermissions) {
    const std::string path = folder.write("file", "a long old content");
    ScratchFolder::setPermissions(path, 0640);
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(ScratchFolder::readFile(path), "new");
    EXPECT_EQ(ScratchFolder::readPermissions(path), 0640u);
    EXPECT_TRUE(replaceFileContent(path, ""));
    EXPECT_EQ(ScratchFolder::readFile(path), "");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, NoRoomForTheNewContent_LeavesTheOldOneAndNothingElse) {
    const std::string path = folder.write("file", "old");
    const FileSizeLimit limit(kLimit);
    EXPECT_FALSE(replaceFileContent(path, tooLong));
    EXPECT_EQ(errno, EFBIG);
    EXPECT_EQ(ScratchFolder::readFile(path), "old");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, NoRoomForANewFile_LeavesNothing) {
    const FileSizeLimit limit(kLimit);
    EXPECT_FALSE(replaceFileContent(folder.path("file"), tooLong));
    EXPECT_EQ(errno, EFBIG);
    EXPECT_EQ(filesInFolder(), 0u);
}

TEST_F(FileReplacement, ProcessThatHasTheOldFileOpen_ReadsItToItsEnd) {
    const std::string path = folder.write("file", "old");
    std::ifstream reader(path);
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
}

TEST_F(FileReplacement, LeftoversOfAKilledWriter_AreDeletedByTheNextWriteOfTheFile) {
    const std::string path = folder.write("file", "old");
    writeLeftover("file.new0");
    writeLeftover("file.new1");
    writeLeftover("other.new0");
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(ScratchFolder::readFile(path), "new");
    EXPECT_EQ(filesInFolder(), 2u);
    EXPECT_TRUE(std::filesystem::exists(folder.path("other.new0")));
}

TEST_F(FileReplacement, FileOfAUserThatIsNamedLikeALeftover_Stays) {
    const std::string path = folder.write("file", "old");
    folder.write("file.new7", "content");
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(ScratchFolder::readFile(folder.path("file.new7")), "content");
}

TEST_F(FileReplacement, LeftoversBesideAFileThatIsWrittenInPlaceOrNew_AreDeletedAsWell) {
    const std::string path = folder.write("file", "old");
    std::filesystem::create_hard_link(path, folder.path("other name"));
    writeLeftover("file.new0");
    EXPECT_TRUE(replaceFileContent(path, "new"));
    writeLeftover("created.new0");
    EXPECT_TRUE(replaceFileContent(folder.path("created"), "new"));
    EXPECT_EQ(filesInFolder(), 3u);
}

TEST_F(FileReplacement, FileWithTwoNames_HasTheNewContentUnderBoth) {
    const std::string path = folder.write("file", "old");
    std::filesystem::create_hard_link(path, folder.path("other name"));
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(ScratchFolder::readFile(folder.path("other name")), "new");
}

TEST_F(FileReplacement, FileWithExtendedAttributes_KeepsThemAndItsIdentity) {
    const std::string path = folder.write("file", "old");
    SET_ATTRIBUTE_OR_SKIP(path, "user.origin", "here");
    const ino_t inode = readInode(path);
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(test::readAttribute(path, "user.origin"), "here");
    EXPECT_EQ(readInode(path), inode);
    EXPECT_EQ(ScratchFolder::readFile(path), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, FileWithAnAccessControlList_KeepsItAndItsIdentity) {
    const std::string path = folder.write("file", "a longer old content");
    SET_ATTRIBUTE_OR_SKIP(path, test::kAccessList, test::sharedAccessList());
    const ino_t inode = readInode(path);
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(test::readAttribute(path, test::kAccessList), test::sharedAccessList());
    EXPECT_EQ(readInode(path), inode);
    EXPECT_EQ(ScratchFolder::readFile(path), "new");
}

TEST_F(FileReplacement, FileInAFolderWithADefaultAccessControlList_DoesNotInheritIt) {
    const std::string path = folder.write("file", "old");
    ScratchFolder::setPermissions(path, 0640);
    SET_ATTRIBUTE_OR_SKIP(folder.path(), test::kDefaultAccessList, test::sharedAccessList());
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(test::readAttribute(path, test::kAccessList), "");
    EXPECT_EQ(ScratchFolder::readPermissions(path), 0640u);
    EXPECT_EQ(ScratchFolder::readFile(path), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, FileThatIsWrittenInPlaceWithoutRoom_KeepsItsOldContent) {
    const std::string path = folder.write("file", "old");
    std::filesystem::create_hard_link(path, folder.path("other name"));
    const FileSizeLimit limit(kLimit);
    EXPECT_FALSE(replaceFileContent(path, tooLong));
    EXPECT_EQ(ScratchFolder::readFile(path), "old");
}

TEST_F(FileReplacement, MountPoint_IsWrittenInPlace) {
    const std::string behind = folder.write("behind", "old");
    const std::string path = folder.write("file", "never seen");
    EXPECT_WITH_OWN_MOUNTS([&] {
        return mount(behind.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
               replaceFileContent(path, "new") && ScratchFolder::readFile(path) == "new";
    });
    EXPECT_EQ(ScratchFolder::readFile(behind), "new");
    EXPECT_EQ(ScratchFolder::readFile(path), "never seen");
    EXPECT_EQ(filesInFolder(), 2u);
}

TEST_F(FileReplacement, FileThatMayBeWrittenOnAReadOnlyFileSystem_IsWrittenInPlace) {
    const std::string behind = folder.write("behind", "old");
    EXPECT_WITH_OWN_MOUNTS([&] {
        const ScratchFolder other;
        const std::string path = other.write("file", "never seen");
        const char* const top = other.path().c_str();
        return mount(top, top, nullptr, MS_BIND, nullptr) == 0 &&
               mount(behind.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
               mount(nullptr, top, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0 &&
               replaceFileContent(path, "new") && umount(path.c_str()) == 0 && umount(top) == 0;
    });
    EXPECT_EQ(ScratchFolder::readFile(behind), "new");
}

TEST_F(FileReplacement, FullDisk_IsFalseAndTheOldContentStays) {
    EXPECT_WITH_OWN_MOUNTS([&] {
        if (mount("none", folder.path().c_str(), "tmpfs", 0, "size=256k") != 0) return false;
        const std::string path = folder.write("file", std::string(100'000, 'o'));
        const std::string linked = folder.write("linked", "old");
        std::filesystem::create_hard_link(linked, folder.path("other name"));
        const std::string large(200'000, 'n');
        return !replaceFileContent(path, large) && !replaceFileContent(linked, large) &&
               ScratchFolder::readFile(path) == std::string(100'000, 'o') &&
               ScratchFolder::readFile(linked) == "old" && filesInFolder() == 3u;
    });
}

TEST_F(FileReplacement, StickyFolderOfAnotherUser_FileInItThatMayBeWrittenIsWritten) {
    NEEDS_ROOT("give a file to another user");
    constexpr uid_t kSomebody = 1234;
    const std::string path = folder.write("file", "old");
    ASSERT_EQ(chown(path.c_str(), kSomebody, kSomebody), 0);
    ScratchFolder::setPermissions(path, 0666);
    ScratchFolder::setPermissions(folder.path(), 01777);
    EXPECT_TRUE(holdsForOrdinaryUser([&] { return replaceFileContent(path, "new"); }));
    EXPECT_EQ(ScratchFolder::readFile(path), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, StickyFolderOfAnotherUser_FileOfOnesOwnInItIsExchanged) {
    ScratchFolder::setPermissions(folder.path(), 01777);
    EXPECT_TRUE(holdsForOrdinaryUser([&] {
        const std::string path = folder.write("file", "old");
        const ino_t inode = readInode(path);
        return replaceFileContent(path, "new") && readInode(path) != inode;
    }));
    EXPECT_EQ(ScratchFolder::readFile(folder.path("file")), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileReplacement, SymbolicLink_StaysOneAndItsTargetHasTheNewContent) {
    const std::string target = folder.write("target", "old");
    std::filesystem::create_symlink(target, folder.path("link"));
    EXPECT_TRUE(replaceFileContent(folder.path("link"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
    EXPECT_EQ(ScratchFolder::readFile(target), "new");
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

TEST_F(FileReplacement, FilesBesideAFolder_AreNotLeftovers) {
    std::filesystem::create_directory(folder.path("inner"));
    folder.write("inner.new0", "content");
    EXPECT_FALSE(replaceFileContent(folder.path("inner"), "x"));
    EXPECT_EQ(ScratchFolder::readFile(folder.path("inner.new0")), "content");
}

TEST_F(FileReplacement, FileThatIsNotWritable_IsFalseAndStaysEvenIfItsFolderIsWritable) {
    const std::string path = folder.write("file", "old");
    ScratchFolder::setPermissions(path, 0444);
    ScratchFolder::setPermissions(folder.path(), 0777);
    EXPECT_TRUE(holdsForOrdinaryUser([&] { return !replaceFileContent(path, "new"); }));
    EXPECT_EQ(ScratchFolder::readFile(path), "old");
}

TEST_F(FileReplacement, FolderThatMayNotBeWritten_FileInItIsWrittenInPlace) {
    const std::string path = folder.write("file", "old");
    ScratchFolder::setPermissions(path, 0666);
    ScratchFolder::setPermissions(folder.path(), 0555);
    EXPECT_TRUE(holdsForOrdinaryUser([&] { return replaceFileContent(path, "new"); }));
    ScratchFolder::setPermissions(folder.path(), 0777);
    EXPECT_EQ(ScratchFolder::readFile(path), "new");
}

TEST_F(FileReplacement, FileOfAnotherUser_StaysThatUsers) {
    NEEDS_ROOT("give a file to another user");
    const std::string path = folder.write("file", "old");
    ASSERT_EQ(chown(path.c_str(), 65534, 65534), 0);
    const ino_t inode = readInode(path);
    EXPECT_TRUE(replaceFileContent(path, "new"));
    EXPECT_EQ(readInode(path), inode);
    EXPECT_EQ(ScratchFolder::readFile(path), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

}  // namespace
}  // namespace dovrel
