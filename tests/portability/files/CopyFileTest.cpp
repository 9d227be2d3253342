// Contract tests of copying what belongs to a file besides its content.
#include <copyfile.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "tests/support/ExtendedAttributes.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using dovrel::test::setAttribute;

constexpr copyfile_flags_t kBoth = COPYFILE_ACL | COPYFILE_XATTR;

class CopyFile : public testing::Test {
  protected:
    CopyFile() { folder_.write("file", ""); }

    static int check(const std::string& path, copyfile_flags_t kinds = kBoth) {
        return copyfile(path.c_str(), nullptr, nullptr, COPYFILE_CHECK | kinds);
    }

    const dovrel::test::TemporaryFolder folder_;
    const std::string file_ = folder_.path("file");
};

}  // namespace

TEST_F(CopyFile, CheckOfAnOrdinaryFile_FindsNothing) {
    EXPECT_EQ(check(file_), 0);
}

TEST_F(CopyFile, CheckOfAFileWithExtendedAttributes_FindsThem) {
    SET_ATTRIBUTE_OR_SKIP(file_, "user.one", "1");
    SET_ATTRIBUTE_OR_SKIP(file_, "user.two", std::string(200, '2'));
    EXPECT_EQ(check(file_), COPYFILE_XATTR);
    EXPECT_EQ(check(file_, COPYFILE_ACL), 0) << "nobody asked for attributes";
}

TEST_F(CopyFile, CheckOfAFileWithAnAccessControlList_FindsIt) {
    SET_ATTRIBUTE_OR_SKIP(file_, dovrel::test::kAccessList, dovrel::test::sharedAccessList());
    EXPECT_EQ(check(file_), COPYFILE_ACL);
    EXPECT_EQ(check(file_, COPYFILE_XATTR), 0);
}

TEST_F(CopyFile, CheckOfASymbolicLink_IsThatOfItsTarget) {
    SET_ATTRIBUTE_OR_SKIP(file_, "user.one", "1");
    std::filesystem::create_symlink(file_, folder_.path("link"));
    EXPECT_EQ(check(folder_.path("link")), COPYFILE_XATTR);
}

TEST_F(CopyFile, CheckOfAMissingFile_FindsNothing) {
    EXPECT_EQ(check(folder_.path("missing")), 0);
}

TEST_F(CopyFile, NoPath_IsAnError) {
    EXPECT_EQ(copyfile(nullptr, nullptr, nullptr, COPYFILE_CHECK | kBoth), -1);
    EXPECT_EQ(errno, EINVAL);
}
