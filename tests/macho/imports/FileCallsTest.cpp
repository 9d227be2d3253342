#include "macho/imports/FileCalls.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::macho {
namespace {

constexpr int kWrite = 0x1;
constexpr int kAppend = 0x8;
constexpr int kCreate = 0x200;
constexpr int kExclusive = 0x800;
constexpr int kCloseOnExec = 0x1000000;

TEST(FileCalls, OpenFlags_MeanWhatTheyMeanOnMacOS) {
    const test::TemporaryFolder folder;
    const std::string path = folder.path() + "/file";
    const int file = platformOpen(path.c_str(), kWrite | kCreate | kExclusive | kAppend | kCloseOnExec, 0640);
    ASSERT_GE(file, 0);
    EXPECT_EQ(fcntl(file, F_GETFL) & (O_ACCMODE | O_APPEND | O_NONBLOCK), O_WRONLY | O_APPEND);
    EXPECT_EQ(fcntl(file, F_GETFD), FD_CLOEXEC);
    close(file);
    EXPECT_EQ(platformOpen(path.c_str(), kWrite | kCreate | kExclusive, 0640), -1);
    EXPECT_EQ(errno, EEXIST);
}

TEST(FileCalls, AnUnknownOpenFlag_IsRefused) {
    EXPECT_EQ(platformOpen("/dev/null", 0x20), -1);
    EXPECT_EQ(errno, EINVAL);
}

TEST(FileCalls, Status_IsThatOfTheFile) {
    struct stat expected = {};
    ASSERT_EQ(stat("/proc/self/exe", &expected), 0);
    PlatformStatus status;
    ASSERT_EQ(platformStat("/proc/self/exe", &status), 0);
    EXPECT_EQ(status.number, expected.st_ino);
    EXPECT_EQ(status.size, expected.st_size);
    EXPECT_EQ(status.mode, expected.st_mode);
    EXPECT_EQ(status.modified.seconds, expected.st_mtim.tv_sec);
    ASSERT_EQ(platformLstat("/proc/self/exe", &status), 0);
    EXPECT_TRUE(S_ISLNK(status.mode));
}

TEST(FileCalls, StatusOfNothing_FailsAndChangesNothing) {
    PlatformStatus status = {};
    status.size = 4711;
    EXPECT_EQ(platformStat("/nonexistent", &status), -1);
    EXPECT_EQ(platformFstat(-1, &status), -1);
    EXPECT_EQ(status.size, 4711);
}

}  // namespace
}  // namespace dovrel::macho
