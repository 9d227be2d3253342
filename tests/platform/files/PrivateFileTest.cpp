#include "platform/files/PrivateFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "tests/support/NeedsRoot.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel {
namespace {

class PrivateFileTest : public testing::Test {
  protected:
    void writeAndClose(int descriptor, const std::string& text) const {
        ASSERT_GT(descriptor, 2);
        EXPECT_EQ(write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        close(descriptor);
    }

    const test::TemporaryFolder folder_;
};

TEST_F(PrivateFileTest, NewFile_IsForItsOwnerOnlyWhateverTheUmask) {
    for (const mode_t mask : {0, 0777}) {
        const std::string path = folder_.path("file" + std::to_string(mask));
        const mode_t oldMask = umask(mask);
        writeAndClose(openPrivateFile(path), "text");
        umask(oldMask);
        struct stat status = {};
        ASSERT_EQ(stat(path.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777u, 0600u);
    }
}

TEST_F(PrivateFileTest, ExistingFile_IsAppendedTo) {
    folder_.write("file", "old ");
    writeAndClose(openPrivateFile(folder_.path("file")), "new");
    EXPECT_EQ(folder_.read("file"), "old new");
}

TEST_F(PrivateFileTest, AnythingButARegularFile_IsRefusedWithoutWaiting) {
    ASSERT_EQ(symlink(folder_.path("target").c_str(), folder_.path("link").c_str()), 0);
    ASSERT_EQ(mkfifo(folder_.path("pipe").c_str(), 0600), 0);
    for (const char* name : {"link", "pipe", "missing/file", ""})
        EXPECT_EQ(openPrivateFile(folder_.path(name)), -1) << name;
}

TEST_F(PrivateFileTest, FileOfAnotherUser_IsRefused) {
    NEEDS_ROOT("make a file of another user");
    folder_.write("file", "");
    ASSERT_EQ(chown(folder_.path("file").c_str(), 1, 1), 0);
    EXPECT_EQ(openPrivateFile(folder_.path("file")), -1);
}

TEST_F(PrivateFileTest, FileWithASecondName_IsRefused) {
    folder_.write("file", "");
    ASSERT_EQ(link(folder_.path("file").c_str(), folder_.path("second").c_str()), 0);
    EXPECT_EQ(openPrivateFile(folder_.path("file")), -1);
}

}  // namespace
}  // namespace dovrel
