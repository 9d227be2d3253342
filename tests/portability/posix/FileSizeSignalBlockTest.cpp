#include "portability/posix/FileSizeSignalBlock.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <cerrno>

#include "tests/support/SignalAction.h"

using portability::FileSizeSignalBlock;

namespace {

int arrived = 0;

void count(int) {
    ++arrived;
}

void raiseInThisThread() {
    pthread_kill(pthread_self(), SIGXFSZ);
}

class FileSizeSignalBlockTest : public testing::Test {
  protected:
    FileSizeSignalBlockTest() { arrived = 0; }

    const dovrel::test::SignalAction action_{SIGXFSZ, count};
};

}  // namespace

TEST_F(FileSizeSignalBlockTest, SignalInside_NeverArrives) {
    {
        const FileSizeSignalBlock block;
        raiseInThisThread();
        errno = EFBIG;
    }
    EXPECT_EQ(errno, EFBIG);
    EXPECT_EQ(arrived, 0);
    raiseInThisThread();
    EXPECT_EQ(arrived, 1) << "the host's action and mask are as before";
}

TEST_F(FileSizeSignalBlockTest, SignalThatTheHostHasBlocked_StaysPending) {
    sigset_t signals;
    sigset_t before;
    sigemptyset(&signals);
    sigaddset(&signals, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &signals, &before);
    raiseInThisThread();
    {
        const FileSizeSignalBlock block;
        raiseInThisThread();
    }
    EXPECT_EQ(arrived, 0);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(arrived, 1);
}
