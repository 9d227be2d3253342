// Contract tests of references to files and folders.
#include <CoreServices/CoreServices.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "FileManager.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace files = std::filesystem;
using testing::AnyOf;

// Versions of the platform return different codes of one group.
const auto kNotFound = AnyOf(OSStatus{fnfErr}, OSStatus{dirNFErr});
const auto kNoFolder = AnyOf(OSStatus{dirNFErr}, OSStatus{errFSNotAFolder}, OSStatus{fnfErr});
const auto kBadName = AnyOf(OSStatus{bdNamErr}, OSStatus{errFSNameTooLong}, OSStatus{errFSMissingName});

bool isDenied(OSStatus status) {
    return status == afpAccessDenied || status == permErr;
}

mode_t readMode(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

class Files : public testing::Test {
  protected:
    Files() {
        folder_.write("file", "content");
        files::create_directory(folder_.path("empty"));
        folder_.write("full/inner", "x");
        files::permissions(folder_.path(), files::perms(0755));
    }

    const dovrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(Files, PathMakeRef_FileAndFolder_TellsWhichItIs) {
    FSRef ref;
    Boolean isDirectory = 7;
    EXPECT_EQ(makeRef(folder_.path("file"), &ref, &isDirectory), noErr);
    EXPECT_FALSE(isDirectory);
    EXPECT_EQ(toPath(ref), folder_.path("file"));
    EXPECT_EQ(makeRef(folder_.path("empty/"), &ref, &isDirectory), noErr);
    EXPECT_TRUE(isDirectory);
    EXPECT_EQ(toPath(ref), folder_.path("empty"));
}

TEST_F(Files, PathMakeRef_SymbolicLinkAtTheEnd_IsFollowed) {
    files::create_symlink(folder_.path("file"), folder_.path("link"));
    EXPECT_EQ(toPath(makeRef(folder_.path("link"))), folder_.path("file"));
}

TEST_F(Files, PathMakeRef_Failures_HaveTheirCodesAndLeaveTheOutputs) {
    FSRef ref = markedRef();
    Boolean isDirectory = 7;
    EXPECT_THAT(makeRef(folder_.path("absent"), &ref, &isDirectory), kNotFound);
    EXPECT_THAT(makeRef(folder_.path("absent/inner"), &ref, &isDirectory), kNotFound);
    EXPECT_THAT(makeRef(folder_.path("file/inner"), &ref, &isDirectory), kNoFolder);
    EXPECT_THAT(makeRef(folder_.path(std::string(300, 'n')), &ref, &isDirectory), kBadName);
    EXPECT_EQ(makeRef("relative/path", &ref, &isDirectory), nsvErr);
    EXPECT_EQ(FSPathMakeRef(nullptr, &ref, &isDirectory), paramErr);
    EXPECT_EQ(makeRef(folder_.path("file"), nullptr, &isDirectory), paramErr);
    EXPECT_TRUE(isMarked(ref));
    EXPECT_EQ(isDirectory, 7);
}

TEST_F(Files, PathMakeRef_FolderClosedToTheUser_IsDenied) {
    files::permissions(folder_.path("full"), files::perms::none);
    EXPECT_TRUE(holdsForOrdinaryUser([this] {
        FSRef ref;
        return isDenied(makeRef(folder_.path("full/inner"), &ref));
    }));
    files::permissions(folder_.path("full"), files::perms::all);
}

TEST_F(Files, RefMakePath_BufferTooSmallByOne_IsPathTooLong) {
    const FSRef ref = makeRef(folder_.path("file"));
    const std::string path = folder_.path("file");
    std::string buffer(path.size() + 1, '#');
    UInt8* bytes = reinterpret_cast<UInt8*>(buffer.data());
    EXPECT_EQ(FSRefMakePath(&ref, bytes, static_cast<UInt32>(path.size())), pathTooLongErr);
    EXPECT_EQ(FSRefMakePath(&ref, bytes, static_cast<UInt32>(path.size() + 1)), noErr);
    EXPECT_EQ(buffer, path + '\0');
}

TEST_F(Files, Ref_ToAPathFarLongerThanItself_Works) {
    std::string path = folder_.path();
    for (int depth = 0; depth < 10; ++depth) {
        path += '/' + std::string(90, static_cast<char>('a' + depth));
    }
    files::create_directories(path);
    EXPECT_EQ(toPath(makeRef(path)), path);
}

TEST_F(Files, Ref_OfAFileThatIsRenamed_GoesWithIt) {
    const FSRef ref = makeRef(folder_.path("file"));
    files::rename(folder_.path("file"), folder_.path("renamed"));
    EXPECT_EQ(toPath(ref), folder_.path("renamed"));
}

TEST_F(Files, Ref_OfADeletedFile_IsNotFound) {
    const FSRef ref = makeRef(folder_.path("file"));
    files::remove(folder_.path("file"));
    FSCatalogInfo info;
    EXPECT_THAT(OSStatus{FSGetCatalogInfo(&ref, kFSCatInfoNodeFlags, &info, nullptr, nullptr, nullptr)},
                kNotFound);
    EXPECT_THAT(OSStatus{FSDeleteObject(&ref)}, kNotFound);
}

TEST_F(Files, Ref_OfAFileThatAnotherReplaced_IsNotFound) {
    const FSRef ref = makeRef(folder_.path("file"));
    folder_.write("other", "other");
    files::rename(folder_.path("other"), folder_.path("file"));
    EXPECT_THAT(OSStatus{FSDeleteObject(&ref)}, kNotFound);
    EXPECT_EQ(folder_.read("file"), "other");
}

TEST_F(Files, MakeFSRefUnicode_NameInAFolder_RefersToIt) {
    FSRef ref;
    ASSERT_EQ(makeChildRef(makeRef(folder_.path()), "file", &ref), noErr);
    EXPECT_EQ(toPath(ref), folder_.path("file"));
}

TEST_F(Files, MakeFSRefUnicode_Failures_HaveTheirCodesAndLeaveTheReference) {
    const FSRef folder = makeRef(folder_.path());
    FSRef ref = markedRef();
    EXPECT_THAT(OSStatus{makeChildRef(folder, "absent", &ref)}, kNotFound);
    EXPECT_THAT(OSStatus{makeChildRef(folder, "", &ref)}, kBadName);
    EXPECT_THAT(OSStatus{makeChildRef(folder, std::string(256, 'n'), &ref)}, kBadName);
    EXPECT_THAT(OSStatus{makeChildRef(makeRef(folder_.path("file")), "inner", &ref)}, kNoFolder);
    EXPECT_EQ(FSMakeFSRefUnicode(nullptr, 1, unicode("x").data(), 0, &ref), paramErr);
    EXPECT_TRUE(isMarked(ref));
}

TEST_F(Files, Names_SlashHere_IsAColonOnTheDisk) {
    folder_.write("a:b", "x");
    FSRef ref;
    ASSERT_EQ(makeChildRef(makeRef(folder_.path()), "a/b", &ref), noErr);
    EXPECT_EQ(toPath(ref), folder_.path("a:b"));
    HFSUniStr255 name;
    ASSERT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, &name, nullptr, nullptr), noErr);
    EXPECT_EQ(std::string(name.unicode, name.unicode + name.length), "a/b");
}

TEST_F(Files, Names_NotASCII_AreKeptInUTF8) {
    const UniChar name[] = {0x00E9, 0x20AC, 0xD834, 0xDD1E};
    const FSRef folder = makeRef(folder_.path());
    FSRef made;
    ASSERT_EQ(FSCreateDirectoryUnicode(&folder, 4, name, kFSCatInfoNone, nullptr, &made, nullptr, nullptr),
              noErr);
    EXPECT_EQ(toPath(made), folder_.path("\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E"));
}

TEST_F(Files, CreateDirectoryUnicode_NewName_MakesItAndTellsItsReferenceAndNumber) {
    FSRef made;
    UInt32 number = 0;
    ASSERT_EQ(makeDirectory(makeRef(folder_.path()), "new", &made, &number), noErr);
    EXPECT_TRUE(files::is_directory(folder_.path("new")));
    EXPECT_EQ(toPath(made), folder_.path("new"));
    FSCatalogInfo info;
    ASSERT_EQ(FSGetCatalogInfo(&made, kFSCatInfoNodeID, &info, nullptr, nullptr, nullptr), noErr);
    EXPECT_EQ(UInt32{info.nodeID}, number);
}

TEST_F(Files, CreateDirectoryUnicode_NameTaken_IsDuplicateAndLeavesTheOutputs) {
    const FSRef folder = makeRef(folder_.path());
    FSRef made = markedRef();
    UInt32 number = 77;
    EXPECT_EQ(makeDirectory(folder, "empty", &made, &number), dupFNErr);
    EXPECT_EQ(makeDirectory(folder, "file", &made, &number), dupFNErr);
    EXPECT_TRUE(isMarked(made));
    EXPECT_EQ(number, 77U);
    EXPECT_EQ(folder_.read("file"), "content");
}

TEST_F(Files, CreateDirectoryUnicode_BadArguments_HaveTheirCodes) {
    const FSRef folder = makeRef(folder_.path());
    const FSRef file = makeRef(folder_.path("file"));
    EXPECT_THAT(OSStatus{makeDirectory(folder, "")}, kBadName);
    EXPECT_THAT(OSStatus{makeDirectory(folder, std::string(256, 'n'))}, kBadName);
    EXPECT_THAT(OSStatus{makeDirectory(file, "inner")}, kNoFolder);
    const FSRef gone = makeRef(folder_.path("empty"));
    files::remove(folder_.path("empty"));
    EXPECT_THAT(OSStatus{makeDirectory(gone, "inner")}, kNotFound);
}

TEST_F(Files, CreateDirectoryUnicode_WithPermissions_SetsExactlyThatMode) {
    const FSRef folder = makeRef(folder_.path());
    FSCatalogInfo info = {};
    reinterpret_cast<FSPermissionInfo*>(&info.permissions)->mode = 0777;
    const mode_t before = umask(077);
    const OSErr open = FSCreateDirectoryUnicode(&folder, 4, unicode("open").data(), kFSCatInfoPermissions,
                                                &info, nullptr, nullptr, nullptr);
    const OSErr plain = makeDirectory(folder, "plain");
    umask(before);
    EXPECT_EQ(open, noErr);
    EXPECT_EQ(plain, noErr);
    EXPECT_EQ(readMode(folder_.path("open")), 0777U);
    EXPECT_EQ(readMode(folder_.path("plain")), 0700U);
}

TEST_F(Files, CreateDirectoryUnicode_FolderOfAnotherUser_IsDenied) {
    files::permissions(folder_.path("empty"), files::perms(0555));
    EXPECT_TRUE(holdsForOrdinaryUser(
        [this] { return isDenied(makeDirectory(makeRef(folder_.path("empty")), "inner")); }));
    EXPECT_TRUE(files::is_empty(folder_.path("empty")));
}

TEST_F(Files, DeleteObject_FileAndEmptyFolder_AreGone) {
    const FSRef file = makeRef(folder_.path("file"));
    const FSRef empty = makeRef(folder_.path("empty"));
    EXPECT_EQ(FSDeleteObject(&file), noErr);
    EXPECT_EQ(FSDeleteObject(&empty), noErr);
    EXPECT_FALSE(files::exists(folder_.path("file")));
    EXPECT_FALSE(files::exists(folder_.path("empty")));
}

TEST_F(Files, DeleteObject_FolderThatIsNotEmpty_IsBusyAndStays) {
    const FSRef full = makeRef(folder_.path("full"));
    EXPECT_EQ(FSDeleteObject(&full), fBsyErr);
    EXPECT_EQ(folder_.read("full/inner"), "x");
}

TEST_F(Files, DeleteObject_FolderClosedToTheUser_IsDenied) {
    files::permissions(folder_.path("full"), files::perms(0555));
    EXPECT_TRUE(holdsForOrdinaryUser([this] {
        const FSRef inner = makeRef(folder_.path("full/inner"));
        return isDenied(FSDeleteObject(&inner));
    }));
    EXPECT_EQ(folder_.read("full/inner"), "x");
}

TEST_F(Files, DeleteObject_ReferenceToASymbolicLink_DeletesOnlyTheLink) {
    files::create_symlink(folder_.path("file"), folder_.path("link"));
    FSRef link;
    ASSERT_EQ(makeChildRef(makeRef(folder_.path()), "link", &link), noErr);
    EXPECT_EQ(FSDeleteObject(&link), noErr);
    EXPECT_FALSE(files::is_symlink(folder_.path("link")));
    EXPECT_EQ(folder_.read("file"), "content");
}

TEST_F(Files, UnlinkObject_OpenFile_IsGone) {
    const FSRef ref = makeRef(folder_.path("file"));
    const std::ifstream open(folder_.path("file"));
    EXPECT_EQ(FSUnlinkObject(&ref), noErr);
    EXPECT_FALSE(files::exists(folder_.path("file")));
}

TEST_F(Files, CompareFSRefs_TellsOneObjectFromTwoAndFromAnotherVolume) {
    files::create_symlink(folder_.path("file"), folder_.path("link"));
    const FSRef file = makeRef(folder_.path("file"));
    const FSRef sameFile = makeRef(folder_.path("link"));
    const FSRef folder = makeRef(folder_.path("full"));
    const FSRef devices = makeRef("/dev");
    EXPECT_EQ(FSCompareFSRefs(&file, &sameFile), noErr);
    EXPECT_EQ(FSCompareFSRefs(&file, &folder), errFSRefsDifferent);
    EXPECT_EQ(FSCompareFSRefs(&file, &devices), diffVolErr);
    EXPECT_EQ(FSCompareFSRefs(&file, nullptr), paramErr);
}
