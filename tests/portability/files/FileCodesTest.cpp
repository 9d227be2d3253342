// Which code this layer returns if the platform allows several codes for one cause.
#include <CoreServices/CoreServices.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "FileManager.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace files = std::filesystem;

// Makes a file immutable while the object exists, if the user's rights and the file system permit it.
class ImmutableFile {
  public:
    explicit ImmutableFile(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        refusal_ = change(true);
    }
    ~ImmutableFile() {
        change(false);
        close(descriptor_);
    }
    ImmutableFile(const ImmutableFile&) = delete;
    ImmutableFile& operator=(const ImmutableFile&) = delete;

    /// Returns why the system refused to make the file immutable; 0 if it did not refuse.
    int refusal() const { return refusal_; }

  private:
    int change(bool immutable) const {
        int flags = 0;
        if (ioctl(descriptor_, FS_IOC_GETFLAGS, &flags) != 0) return errno;
        flags = immutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
        return ioctl(descriptor_, FS_IOC_SETFLAGS, &flags) == 0 ? 0 : errno;
    }

    const int descriptor_;
    int refusal_ = 0;
};

class FileCodes : public testing::Test {
  protected:
    FileCodes() {
        folder_.write("file", "x");
        chmod(folder_.path().c_str(), 0755);
    }

    const dovrel::test::TemporaryFolder folder_;
    FSRef ref_;
};

}  // namespace

TEST_F(FileCodes, MissingFileAndMissingFolderAbove_AreFileNotFound) {
    EXPECT_EQ(makeRef(folder_.path("absent"), &ref_), fnfErr);
    EXPECT_EQ(makeRef(folder_.path("absent/inner"), &ref_), fnfErr);
    EXPECT_EQ(makeChildRef(makeRef(folder_.path()), "absent", &ref_), fnfErr);
}

TEST_F(FileCodes, PathThroughAFile_IsDirectoryNotFound) {
    EXPECT_EQ(makeRef(folder_.path("file/inner"), &ref_), dirNFErr);
}

TEST_F(FileCodes, FolderReferenceToAFile_IsNotAFolder) {
    const FSRef file = makeRef(folder_.path("file"));
    EXPECT_EQ(makeChildRef(file, "inner", &ref_), errFSNotAFolder);
    EXPECT_EQ(makeDirectory(file, "inner"), errFSNotAFolder);
}

TEST_F(FileCodes, FolderReferenceThatIsStale_IsFileNotFound) {
    files::create_directory(folder_.path("gone"));
    const FSRef gone = makeRef(folder_.path("gone"));
    files::remove(folder_.path("gone"));
    EXPECT_EQ(makeChildRef(gone, "inner", &ref_), fnfErr);
    EXPECT_EQ(makeDirectory(gone, "inner"), fnfErr);
}

TEST_F(FileCodes, NameTooLongInUnitsOrInBytes_IsNameTooLong) {
    const FSRef folder = makeRef(folder_.path());
    EXPECT_EQ(makeDirectory(folder, std::string(256, 'n')), errFSNameTooLong);
    EXPECT_EQ(makeRef(folder_.path(std::string(256, 'n')), &ref_), errFSNameTooLong);
    const std::vector<UniChar> wide(200, 0x20AC);
    EXPECT_EQ(FSCreateDirectoryUnicode(&folder, wide.size(), wide.data(), kFSCatInfoNone, nullptr, nullptr,
                                       nullptr, nullptr),
              errFSNameTooLong);
    EXPECT_EQ(makeDirectory(folder, std::string(255, 'n')), noErr);
}

TEST_F(FileCodes, NamesThatNoFileCanHave_AreBadNames) {
    const FSRef folder = makeRef(folder_.path());
    EXPECT_EQ(makeDirectory(folder, ""), errFSMissingName);
    for (const std::string& name :
         {std::string("."), std::string(".."), std::string("a:b"), std::string("a\0b", 3)}) {
        EXPECT_EQ(makeDirectory(folder, name), bdNamErr) << name;
    }
    const UniChar halfPair[] = {'a', 0xD800};
    EXPECT_EQ(FSMakeFSRefUnicode(&folder, 2, halfPair, 0, &ref_), bdNamErr);
    EXPECT_EQ(FSMakeFSRefUnicode(&folder, 2, nullptr, 0, &ref_), paramErr);
}

TEST_F(FileCodes, Loop_KeepsItsNumberInAStatus) {
    files::create_symlink(folder_.path("loop"), folder_.path("loop"));
    EXPECT_EQ(makeRef(folder_.path("loop"), &ref_), kPOSIXErrorBase + ELOOP);
}

TEST_F(FileCodes, Denied_IsAccessDenied) {
    files::create_directory(folder_.path("closed"));
    chmod(folder_.path("closed").c_str(), 0555);
    EXPECT_TRUE(holdsForOrdinaryUser(
        [this] { return makeDirectory(makeRef(folder_.path("closed")), "inner") == afpAccessDenied; }));
}

TEST_F(FileCodes, LockingAFile_IsAccessDenied) {
    const FSRef file = makeRef(folder_.path("file"));
    FSCatalogInfo info = {};
    info.nodeFlags = kFSNodeLockedMask;
    EXPECT_EQ(FSSetCatalogInfo(&file, kFSCatInfoNodeFlags, &info), afpAccessDenied);
}

TEST_F(FileCodes, LockedFile_IsShownAsLockedAndNotDeleted) {
    const ImmutableFile immutable(folder_.path("file"));
    if (immutable.refusal() == EPERM) GTEST_SKIP() << "root's right is missing to lock a file";
    if (immutable.refusal() == ENOTTY || immutable.refusal() == EOPNOTSUPP)
        GTEST_SKIP() << "a file system with locks is missing below " << folder_.path("");
    ASSERT_EQ(immutable.refusal(), 0);
    const FSRef file = makeRef(folder_.path("file"));
    FSCatalogInfo info = {};
    EXPECT_EQ(FSGetCatalogInfo(&file, kFSCatInfoNodeFlags, &info, nullptr, nullptr, nullptr), noErr);
    EXPECT_EQ(info.nodeFlags & kFSNodeLockedMask, kFSNodeLockedMask);
    EXPECT_EQ(FSDeleteObject(&file), fLckdErr);
}
