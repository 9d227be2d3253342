// Contract tests of catalog information about files.
#include <CoreServices/CoreServices.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <ctime>
#include <filesystem>
#include <string>

#include "FileManager.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace files = std::filesystem;

constexpr UInt64 kSecondsFrom1904To1970 = 2082844800;

UInt64 toSeconds(const UTCDateTime& date) {
    return (static_cast<UInt64>(date.highSeconds) << 32) | date.lowSeconds;
}

FSPermissionInfo readPermissions(const FSCatalogInfo& info) {
    FSPermissionInfo permissions;
    std::memcpy(&permissions, &info.permissions, sizeof permissions);
    return permissions;
}

void setMode(FSCatalogInfo& info, UInt16 mode) {
    FSPermissionInfo permissions = readPermissions(info);
    permissions.mode = mode;
    std::memcpy(&info.permissions, &permissions, sizeof permissions);
}

class CatalogInfo : public testing::Test {
  protected:
    CatalogInfo() {
        folder_.write("file", "content");
        folder_.write("full/one", "");
        folder_.write("full/two", "");
        chmod(folder_.path().c_str(), 0755);
        chmod(folder_.path("file").c_str(), 0640);
        std::memset(&info_, 0x5A, sizeof info_);
    }

    OSErr get(const std::string& name, FSCatalogInfoBitmap which) {
        const FSRef ref = makeRef(folder_.path(name));
        return FSGetCatalogInfo(&ref, which, &info_, nullptr, nullptr, nullptr);
    }

    OSErr set(const std::string& name, FSCatalogInfoBitmap which) {
        const FSRef ref = makeRef(folder_.path(name));
        return FSSetCatalogInfo(&ref, which, &info_);
    }

    mode_t readMode(const std::string& name) const {
        struct stat status = {};
        stat(folder_.path(name).c_str(), &status);
        return status.st_mode & 07777;
    }

    const dovrel::test::TemporaryFolder folder_;
    FSCatalogInfo info_;
};

}  // namespace

TEST_F(CatalogInfo, Get_NodeFlags_TellFoldersFromFiles) {
    ASSERT_EQ(get("file", kFSCatInfoNodeFlags), noErr);
    EXPECT_EQ(info_.nodeFlags & (kFSNodeIsDirectoryMask | kFSNodeLockedMask), 0);
    ASSERT_EQ(get("full", kFSCatInfoNodeFlags), noErr);
    EXPECT_EQ(info_.nodeFlags & kFSNodeIsDirectoryMask, kFSNodeIsDirectoryMask);
}

TEST_F(CatalogInfo, Get_Permissions_AreOwnerGroupModeAndOwnRights) {
    ASSERT_EQ(get("file", kFSCatInfoPermissions), noErr);
    EXPECT_EQ(readPermissions(info_).userID, geteuid());
    EXPECT_EQ(readPermissions(info_).mode & 07777, 0640);
    EXPECT_EQ(readPermissions(info_).userAccess & (R_OK | W_OK), R_OK | W_OK);
}

TEST_F(CatalogInfo, Get_Sizes_AreThoseOfTheFile) {
    ASSERT_EQ(get("file", kFSCatInfoDataSizes | kFSCatInfoRsrcSizes), noErr);
    EXPECT_EQ(UInt64{info_.dataLogicalSize}, 7U);
    EXPECT_EQ(UInt64{info_.rsrcLogicalSize}, 0U);
}

TEST_F(CatalogInfo, Get_Valence_IsTheNumberOfEntries) {
    ASSERT_EQ(get("full", kFSCatInfoValence), noErr);
    EXPECT_EQ(UInt32{info_.valence}, 2U);
}

TEST_F(CatalogInfo, Get_NodeAndParentNumbers_AreThoseOfTheSystem) {
    struct stat status = {};
    stat(folder_.path("full").c_str(), &status);
    ASSERT_EQ(get("full/one", kFSCatInfoParentDirID), noErr);
    EXPECT_EQ(UInt32{info_.parentDirID}, static_cast<UInt32>(status.st_ino));
    ASSERT_EQ(get("full", kFSCatInfoNodeID), noErr);
    EXPECT_EQ(UInt32{info_.nodeID}, static_cast<UInt32>(status.st_ino));
}

TEST_F(CatalogInfo, Get_Dates_CountFrom1904) {
    const struct timespec times[2] = {{1000000000, 0}, {1234567890, 500000000}};
    ASSERT_EQ(utimensat(AT_FDCWD, folder_.path("file").c_str(), times, 0), 0);
    ASSERT_EQ(get("file", kFSCatInfoContentMod | kFSCatInfoAccessDate), noErr);
    EXPECT_EQ(toSeconds(info_.contentModDate), 1234567890 + kSecondsFrom1904To1970);
    EXPECT_EQ(info_.contentModDate.fraction, 32768);
    EXPECT_EQ(toSeconds(info_.accessDate), 1000000000 + kSecondsFrom1904To1970);
}

TEST_F(CatalogInfo, Get_OnlyWhatWasAskedFor_IsWritten) {
    FSCatalogInfo expected;
    std::memset(&expected, 0x5A, sizeof expected);
    ASSERT_EQ(get("full", kFSCatInfoValence), noErr);
    expected.valence = 2;
    EXPECT_EQ(std::memcmp(&info_, &expected, sizeof expected), 0);
}

TEST_F(CatalogInfo, Get_NameAndParent_AreReturned) {
    const FSRef ref = makeRef(folder_.path("full/one"));
    HFSUniStr255 name;
    FSRef parent;
    ASSERT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, &name, nullptr, &parent), noErr);
    EXPECT_EQ(std::string(name.unicode, name.unicode + name.length), "one");
    EXPECT_EQ(toPath(parent), folder_.path("full"));
}

TEST_F(CatalogInfo, GetAndSet_BadArguments_HaveTheirCodes) {
    const FSRef ref = makeRef(folder_.path("file"));
    EXPECT_EQ(FSGetCatalogInfo(nullptr, kFSCatInfoNodeFlags, &info_, nullptr, nullptr, nullptr), paramErr);
    EXPECT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoNodeFlags, nullptr, nullptr, nullptr, nullptr), paramErr);
    EXPECT_EQ(FSGetCatalogInfo(&ref, 0x80000000, &info_, nullptr, nullptr, nullptr), errFSBadInfoBitmap);
    EXPECT_EQ(FSSetCatalogInfo(nullptr, kFSCatInfoPermissions, &info_), paramErr);
    EXPECT_EQ(FSSetCatalogInfo(&ref, kFSCatInfoPermissions, nullptr), paramErr);
    EXPECT_EQ(FSSetCatalogInfo(&ref, kFSCatInfoValence, &info_), errFSBadInfoBitmap);
}

TEST_F(CatalogInfo, Set_Permissions_ChangesTheModeAndNothingElse) {
    ASSERT_EQ(get("file", kFSCatInfoPermissions), noErr);
    setMode(info_, static_cast<UInt16>(readPermissions(info_).mode | 0777));
    reinterpret_cast<FSPermissionInfo*>(&info_.permissions)->userID = 12345;
    ASSERT_EQ(set("file", kFSCatInfoPermissions), noErr);
    EXPECT_EQ(readMode("file"), 0777U);
    ASSERT_EQ(get("file", kFSCatInfoPermissions), noErr);
    EXPECT_EQ(readPermissions(info_).userID, geteuid());
}

TEST_F(CatalogInfo, Set_Permissions_OfAnotherUsersFile_IsDenied) {
    chmod(folder_.path("file").c_str(), 0644);
    const bool isOwnFile = geteuid() != 0;
    EXPECT_EQ(holdsForOrdinaryUser([this] {
                  get("file", kFSCatInfoPermissions);
                  setMode(info_, 0777);
                  const OSErr result = set("file", kFSCatInfoPermissions);
                  return result == afpAccessDenied || result == permErr;
              }),
              !isOwnFile);
}

TEST_F(CatalogInfo, Set_Dates_ChangesThem) {
    const UInt64 seconds = 1111111111 + kSecondsFrom1904To1970;
    info_.contentModDate = {static_cast<UInt16>(seconds >> 32), static_cast<UInt32>(seconds & 0xFFFFFFFF),
                            16384};
    ASSERT_EQ(set("file", kFSCatInfoContentMod), noErr);
    struct stat status = {};
    stat(folder_.path("file").c_str(), &status);
    EXPECT_EQ(status.st_mtime, 1111111111);
}

TEST_F(CatalogInfo, Set_NodeFlagsAsTheyAre_Succeeds) {
    ASSERT_EQ(get("file", kFSCatInfoNodeFlags), noErr);
    EXPECT_EQ(set("file", kFSCatInfoNodeFlags), noErr);
}
