#include "portability/alerts/helper/HostStream.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <thread>

#include "portability/posix/FileDescriptor.h"

namespace alerthelper {
namespace {

using namespace std::chrono_literals;
using portability::AlertEvent;
using portability::FileDescriptor;

class HostStreamTest : public testing::Test {
  protected:
    HostStreamTest() {
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        host_.reset(ends[0]);
        helper_.reset(ends[1]);
    }

    FileDescriptor host_;
    FileDescriptor helper_;
};

TEST_F(HostStreamTest, Receive_WithoutARequestInTimeReturnsNothing) {
    HostStream stream(helper_.get());
    EXPECT_FALSE(stream.receive(20ms).has_value());
    send(host_.get(), "{\"version\":1", 12, 0);
    EXPECT_FALSE(stream.receive(20ms).has_value());
}

TEST_F(HostStreamTest, Receive_TakesARequestThatComesInPieces) {
    const std::string line = portability::AlertMessages::compose({"T", "B", {"OK"}, false, getpid()});
    std::thread sender([&] {
        for (const char byte : line)
            send(host_.get(), &byte, 1, 0);
    });
    HostStream stream(helper_.get());
    const auto request = stream.receive(1h);
    sender.join();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->title, "T");
}

TEST_F(HostStreamTest, Send_ToAHostThatHasGoneIsIgnored) {
    HostStream stream(helper_.get());
    host_.reset();
    stream.send({AlertEvent::Kind::pressed, 0});
}

TEST_F(HostStreamTest, IsStream_IsTrueForALocalStreamSocketOnly) {
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
