// The functions for folders and permissions of the file utilities.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/files/FileUtilities.h"
#include "tests/platform/files/FileUtilitiesFixture.h"
#include "tests/platform/files/ScratchFolder.h"
#include "tests/support/OrdinaryUser.h"

namespace dovrel {
namespace {

using test::ScratchFolder;

class FolderUtilities : public test::FileUtilitiesFixture {};

TEST_F(FolderUtilities, CreateFolder_MakesTheLastComponentForAllUsers) {
    EXPECT_TRUE(createFolder(folder_.path("new")));
    EXPECT_TRUE(std::filesystem::is_directory(folder_.path("new")));
    EXPECT_EQ(ScratchFolder::readPermissions(folder_.path("new")), 0777u);
}

TEST_F(FolderUtilities, CreateFolder_WithASlashAtTheEnd_MakesTheSameFolder) {
    EXPECT_TRUE(createFolder(folder_.path("new//")));
    EXPECT_TRUE(std::filesystem::is_directory(folder_.path("new")));
}

TEST_F(FolderUtilities, CreateFolder_ThatExists_CountsAsCreatedAndIsLeftAsItIs) {
    ASSERT_TRUE(std::filesystem::create_directory(folder_.path("old")));
    EXPECT_TRUE(createFolder(folder_.path("old")));
    EXPECT_EQ(ScratchFolder::readPermissions(folder_.path("old")), 0700u);
}

TEST_F(FolderUtilities, CreateFolder_UnderTheNameOfAFile_CountsAsCreatedAndLeavesTheFile) {
    const std::string file = folder_.write("file", "content");
    EXPECT_TRUE(createFolder(file)) << "the system only says that the name is taken";
    EXPECT_EQ(ScratchFolder::readFile(file), "content");
    EXPECT_EQ(ScratchFolder::readPermissions(file), 0600u);
}

TEST_F(FolderUtilities, CreateFolder_InAMissingFolder_IsFalse) {
    EXPECT_FALSE(createFolder(folder_.path("missing/new")));
    EXPECT_FALSE(createFolder(""));
}

TEST_F(FolderUtilities, CreateFolder_OfTheRoot_CountsAsCreated) {
    EXPECT_TRUE(createFolder("/"));
    EXPECT_TRUE(createFolder("///"));
}

TEST_F(FolderUtilities, CreateFolder_OfAPathThatEndsInDots_IsTrueIfTheFolderExists) {
    ASSERT_TRUE(std::filesystem::create_directory(folder_.path("old")));
    EXPECT_TRUE(createFolder("."));
    EXPECT_TRUE(createFolder(".."));
    EXPECT_TRUE(createFolder(folder_.path("old/.")));
    EXPECT_TRUE(createFolder(folder_.path("old/../")));
    EXPECT_FALSE(createFolder(folder_.path("missing/.")));
    EXPECT_FALSE(createFolder(folder_.write("file", "") + "/."));
    EXPECT_EQ(ScratchFolder::readPermissions(folder_.path("old")), 0700u);
}

TEST_F(FolderUtilities, CreateFolder_InAFile_IsFalse) {
    EXPECT_FALSE(createFolder(folder_.write("file", "") + "/new"));
}

TEST_F(FolderUtilities, CreateFolder_TakesAUtf8Path) {
    const std::string path = folder_.path("d\xC3\xA9j\xC3\xA0 vu");
    EXPECT_TRUE(createFolder(path));
    EXPECT_TRUE(createFolder(path + "/inner")) << "also in the folder before the last component";
    EXPECT_EQ(ScratchFolder::readPermissions(path + "/inner"), 0777u);
    EXPECT_FALSE(createFolder(folder_.path("d\x8Ej\x88 vu"))) << "Mac Roman bytes are no UTF-8";
}

TEST_F(FolderUtilities, CreateFolder_WithAColonInItsName_MakesThatName) {
    EXPECT_TRUE(createFolder(folder_.path("a:b")));
    EXPECT_TRUE(std::filesystem::is_directory(folder_.path("a:b")));
}

TEST_F(FolderUtilities, CreateFolder_WithARelativePath_StartsAtTheCurrentFolder) {
    std::filesystem::current_path(folder_.path());
    EXPECT_TRUE(createFolder("new"));
    EXPECT_TRUE(createFolder("new/inner"));
    EXPECT_TRUE(std::filesystem::is_directory(folder_.path("new/inner")));
}

TEST_F(FolderUtilities, GrantAllPermissions_TakesNoneAway) {
    const std::string path = folder_.write("file", "");
    ScratchFolder::setPermissions(path, 04750);
    EXPECT_TRUE(grantAllPermissions(path));
    EXPECT_EQ(ScratchFolder::readPermissions(path), 04777u);
}

TEST_F(FolderUtilities, GrantAllPermissions_OfAMissingFile_IsTrueAndMakesNothing) {
    EXPECT_TRUE(grantAllPermissions(folder_.path("missing")));
    EXPECT_FALSE(std::filesystem::exists(folder_.path("missing")));
}

TEST_F(FolderUtilities, GrantAllPermissions_ThatCannotBeWritten_IsFalse) {
    EXPECT_TRUE(holdsForOrdinaryUser([] { return !grantAllPermissions("/"); }))
        << "only its owner may change it";
}

}  // namespace
}  // namespace dovrel
