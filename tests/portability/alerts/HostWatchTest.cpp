// How the alert helper ends when its host ends, or when its window does not open.
#include "portability/alerts/helper/HostWatch.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <csignal>
#include <thread>

#include "portability/alerts/helper/ExitCode.h"

namespace alerthelper {
namespace {

using namespace std::chrono_literals;
using portability::FileDescriptor;

constexpr std::chrono::milliseconds kForever = 1h;

// Each test watches in a separate process, because the watch ends its process.
class HostWatchTest : public testing::Test {
  protected:
    HostWatchTest() {
        testing::FLAGS_gtest_death_test_style = "threadsafe";
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        host_.reset(ends[0]);
        helper_.reset(ends[1]);
    }

    // Longer than the process needs to end. The sleep never runs to its end.
    static void waitForTheEnd() { std::this_thread::sleep_for(kForever); }

    FileDescriptor host_;
    FileDescriptor helper_;
};

TEST_F(HostWatchTest, ClosedStream_EndsTheProcess) {
    EXPECT_EXIT(
        {
            const HostWatch watch(helper_.get(), getpid(), kForever);
            host_.reset();
            waitForTheEnd();
        },
        testing::ExitedWithCode(kFinished), "");
}

TEST_F(HostWatchTest, EndOfTheHost_EndsTheProcess) {
    EXPECT_EXIT(
        {
            const pid_t host = fork();
            if (host == 0) {
                pause();
                _exit(0);
            }
            const HostWatch watch(helper_.get(), host, kForever);
            kill(host, SIGKILL);
            waitForTheEnd();
        },
        testing::ExitedWithCode(kFinished), "");
}

TEST_F(HostWatchTest, HostThatHasEndedAlready_EndsTheProcess) {
    EXPECT_EXIT(
        {
            const pid_t host = fork();
            if (host == 0) _exit(0);
            waitpid(host, nullptr, 0);
            const HostWatch watch(helper_.get(), host, kForever);
            waitForTheEnd();
        },
        testing::ExitedWithCode(kFinished), "");
}

TEST_F(HostWatchTest, AnythingFromTheHost_EndsTheProcess) {
    EXPECT_EXIT(
        {
            const HostWatch watch(helper_.get(), getpid(), kForever);
            send(host_.get(), "x", 1, 0);
            waitForTheEnd();
        },
        testing::ExitedWithCode(kBadMessage), "");
}

TEST_F(HostWatchTest, WindowThatIsNotShownInTime_EndsTheProcess) {
    EXPECT_EXIT(
        {
            const HostWatch watch(helper_.get(), getpid(), 20ms);
            waitForTheEnd();
        },
        testing::ExitedWithCode(kNotShown), "");
}

TEST_F(HostWatchTest, ShownWindow_StaysAsLongAsTheHostLives) {
    HostWatch watch(helper_.get(), getpid(), 20ms);
    watch.windowIsShown();
    // Far more than the limit. A watch that still counted would have ended this process.
    std::this_thread::sleep_for(100ms);
}

TEST_F(HostWatchTest, EndOfTheWatch_LeavesTheProcess) {
    { const HostWatch watch(helper_.get(), getpid(), 20ms); }
    host_.reset();
    std::this_thread::sleep_for(100ms);
}

}  // namespace
}  // namespace alerthelper
