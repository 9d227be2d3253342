#include "portability/posix/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "portability/posix/ErrnoKeeper.h"

using namespace portability;

namespace {

bool isOpen(int number) {
    return fcntl(number, F_GETFD) >= 0;
}

int openOne() {
    return open("/dev/null", O_RDONLY | O_CLOEXEC);
}

}  // namespace

TEST(FileDescriptor, End_ClosesItAndKeepsErrno) {
    const int number = openOne();
    {
        const FileDescriptor owner(number);
        EXPECT_TRUE(owner);
        errno = 12345;
    }
    EXPECT_EQ(errno, 12345);
    EXPECT_FALSE(isOpen(number));
}

TEST(FileDescriptor, Release_ReturnsItWithoutClosingIt) {
    const int number = openOne();
    {
        FileDescriptor owner(number);
        EXPECT_EQ(owner.release(), number);
        EXPECT_FALSE(owner);
    }
    EXPECT_TRUE(isOpen(number));
    close(number);
}

TEST(FileDescriptor, Assignment_ClosesWhatWasThere) {
    const int first = openOne();
    const int second = openOne();
    FileDescriptor owner(first);
    owner = FileDescriptor(second);
    EXPECT_FALSE(isOpen(first));
    EXPECT_EQ(owner.get(), second);
}

TEST(ErrnoKeeper, End_SetsErrnoBack) {
    errno = 12345;
    {
        const ErrnoKeeper keeper;
        errno = 1;
    }
    EXPECT_EQ(errno, 12345);
}

TEST(FileDescriptor, AboveStandardStreams_LeavesANumberOfAStandardStreamFree) {
    const pid_t host = fork();
    if (host == 0) {
        close(STDOUT_FILENO);
        const int number = openOne();
        const FileDescriptor moved = aboveStandardStreams(number);
        const bool closesOnExec = (fcntl(moved.get(), F_GETFD) & FD_CLOEXEC) != 0;
        _exit(number == STDOUT_FILENO && moved.get() > STDERR_FILENO && closesOnExec && !isOpen(STDOUT_FILENO)
                  ? 0
                  : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(host, &status, 0), host);
    EXPECT_EQ(status, 0);
}

TEST(FileDescriptor, AboveStandardStreams_KeepsAnyOtherNumber) {
    const int number = openOne();
    EXPECT_EQ(aboveStandardStreams(number).get(), number);
    EXPECT_FALSE(isOpen(number));
    errno = 0;
    EXPECT_FALSE(aboveStandardStreams(-1));
}
