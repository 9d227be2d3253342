// Contract tests of the platform's own folders.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "FileManager.h"

TEST(Folders, FindFolder_Home_IsTheUsersWhateverTheDomain) {
    const char* home = getenv("HOME");
    ASSERT_NE(home, nullptr);
    FSRef ref;
    ASSERT_EQ(FSFindFolder(kLocalDomain, kCurrentUserFolderType, kDontCreateFolder, &ref), noErr);
    EXPECT_EQ(toPath(ref), std::filesystem::canonical(home).string());
}

TEST(Folders, FindFolder_Temporary_IsAFolderToWriteTo) {
    FSRef ref;
    ASSERT_EQ(FSFindFolder(kUserDomain, kTemporaryFolderType, kCreateFolder, &ref), noErr);
    EXPECT_TRUE(std::filesystem::is_directory(toPath(ref)));
}

TEST(Folders, FindFolder_UnknownDomain_IsNoSuchVolume) {
    FSRef ref = markedRef();
    EXPECT_EQ(FSFindFolder(-12345, kApplicationSupportFolderType, kDontCreateFolder, &ref), nsvErr);
    EXPECT_TRUE(isMarked(ref));
}

TEST(Folders, FindFolder_UnknownType_IsNotFound) {
    FSRef ref = markedRef();
    EXPECT_EQ(FSFindFolder(kLocalDomain, 'none', kDontCreateFolder, &ref), fnfErr);
    EXPECT_TRUE(isMarked(ref));
}
