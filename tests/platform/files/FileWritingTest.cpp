#include "platform/files/FileWriting.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "tests/platform/files/ScratchFolder.h"
#include "tests/support/FileSizeLimit.h"

namespace dovrel {
namespace {

using test::FileSizeLimit;
using test::ScratchFolder;

class FileWriting : public testing::Test {
  protected:
    // Creates a file with that content and opens it for writing.
    int openWith(const std::string& content) {
        descriptor_ = open(folder_.write("file", content).c_str(), O_RDWR | O_CLOEXEC);
        EXPECT_GE(descriptor_, 0);
        return descriptor_;
    }
    ~FileWriting() override { close(descriptor_); }

    std::string content() const { return ScratchFolder::readFile(folder_.path("file")); }

    const ScratchFolder folder_;
    int descriptor_ = -1;
};

TEST_F(FileWriting, WriteAt_WritesAllBytesAtTheOffset) {
    EXPECT_TRUE(writeAt(openWith("0123456789"), "abc", 3, 4));
    EXPECT_EQ(content(), "0123abc789");
    EXPECT_TRUE(writeAt(descriptor_, "xyz", 3, 12));
    EXPECT_EQ(content(), std::string("0123abc789\0\0xyz", 15));
    EXPECT_TRUE(writeAt(descriptor_, nullptr, 0, 0));
}

TEST_F(FileWriting, WriteAt_WithRoomForAPart_IsFalseWithTheCause) {
    openWith("");
    const FileSizeLimit limit(5);
    EXPECT_FALSE(writeAt(descriptor_, "0123456789", 10, 0));
    EXPECT_EQ(errno, EFBIG);
}

TEST_F(FileWriting, AppendAtOnce_WritesAtTheEndOrNothing) {
    folder_.write("file", "0123456789");
    descriptor_ = open(folder_.path("file").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    EXPECT_TRUE(appendAtOnce(descriptor_, "abc", 3));
    const FileSizeLimit limit(15);
    EXPECT_FALSE(appendAtOnce(descriptor_, "xyz", 3));
    EXPECT_EQ(errno, EFBIG);
    EXPECT_TRUE(appendAtOnce(descriptor_, "xy", 2));
    EXPECT_EQ(content(), "0123456789abcxy");
}

TEST_F(FileWriting, AppendAtOnce_ToAPipe_KnowsNoLimit) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const FileSizeLimit limit(0);
    EXPECT_TRUE(appendAtOnce(ends[1], "abc", 3));
    char read[4] = "";
    EXPECT_EQ(::read(ends[0], read, 3), 3);
    EXPECT_STREQ(read, "abc");
    close(ends[0]);
    close(ends[1]);
}

TEST_F(FileWriting, Overwrite_LeavesOnlyTheNewContent) {
    for (const char* const text : {"shorter", "as long as before!", "a good deal longer than before", ""}) {
        const std::string old = "as long as it was ";
        EXPECT_TRUE(overwrite(openWith(old), static_cast<off_t>(old.size()), text));
        EXPECT_EQ(content(), text);
        close(descriptor_);
    }
    openWith("");
    EXPECT_TRUE(overwrite(descriptor_, 0, "something"));
    EXPECT_EQ(content(), "something");
}

TEST_F(FileWriting, Overwrite_WithoutRoomForTheNewContent_LeavesTheOldOne) {
    openWith("old");
    const FileSizeLimit limit(10);
    EXPECT_FALSE(overwrite(descriptor_, 3, "longer than the limit"));
    EXPECT_EQ(content(), "old");
}

}  // namespace
}  // namespace dovrel
