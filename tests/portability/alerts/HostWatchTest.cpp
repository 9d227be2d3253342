// How the alert helper ends with its host, and when waiting has lasted too long.
#include "alerts/helper/HostWatch.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <csignal>
#include <thread>

#include "alerts/helper/ExitCode.h"
#include "alerts/helper/HostStream.h"

namespace alerthelper {
namespace {

using namespace std::chrono_literals;
using portability::AlertEvent;
using portability::FileDescriptor;

constexpr std::chrono::milliseconds kForever = 1h;

// Each test watches in a process of its own, which the watch ends.
class HostWatchTest : public testing::Test {
  protected:
    HostWatchTest() {
        testing::FLAGS_gtest_death_test_style = "threadsafe";
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        host_.reset(ends[0]);
        helper_.reset(ends[1]);
    }

    // Longer than the process needs to end; it is not waited for.
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
    // Far more than the limit; a watch that counts on would have ended this process.
    std::this_thread::sleep_for(100ms);
}

TEST_F(HostWatchTest, EndOfTheWatch_LeavesTheProcess) {
    { const HostWatch watch(helper_.get(), getpid(), 20ms); }
    host_.reset();
    std::this_thread::sleep_for(100ms);
}

// The stream.

TEST_F(HostWatchTest, Receive_WithoutARequestInTimeReturnsNothing) {
    HostStream stream(helper_.get());
    EXPECT_FALSE(stream.receive(20ms).has_value());
    send(host_.get(), "{\"version\":1", 12, 0);
    EXPECT_FALSE(stream.receive(20ms).has_value());
}

TEST_F(HostWatchTest, Receive_TakesARequestThatComesInPieces) {
    const std::string line = portability::AlertMessages::compose({"T", "B", {"OK"}, false, getpid()});
    std::thread sender([&] {
        for (const char byte : line)
            send(host_.get(), &byte, 1, 0);
    });
    HostStream stream(helper_.get());
    const auto request = stream.receive(kForever);
    sender.join();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->title, "T");
}

TEST_F(HostWatchTest, Send_ToAHostThatHasGoneIsIgnored) {
    HostStream stream(helper_.get());
    host_.reset();
    stream.send({AlertEvent::Kind::pressed, 0});
}

TEST_F(HostWatchTest, IsStream_IsTrueForALocalStreamSocketOnly) {
    EXPECT_TRUE(HostStream(helper_.get()).isStream());
    EXPECT_FALSE(HostStream(-1).isStream());
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const FileDescriptor reading(ends[0]);
    const FileDescriptor writing(ends[1]);
    EXPECT_FALSE(HostStream(reading.get()).isStream());
    const FileDescriptor packets(socket(AF_UNIX, SOCK_SEQPACKET, 0));
    EXPECT_FALSE(HostStream(packets.get()).isStream());
    const FileDescriptor network(socket(AF_INET, SOCK_STREAM, 0));
    EXPECT_FALSE(HostStream(network.get()).isStream());
}

}  // namespace
}  // namespace alerthelper
