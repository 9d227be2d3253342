// Images that are not in shared memory yet, and confirmations that the socket has no room for.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>
#include <utility>

#include "portability/transport/Channel.h"
#include "tests/portability/support/Images.h"
#include "tests/portability/support/RawSocket.h"
#include "tests/support/Processes.h"

using namespace portability;

namespace {

using Sent = Channel::Sent;
using Received = Channel::Received;

class ChannelMemoryTest : public testing::Test {
  protected:
    std::pair<FileDescriptor, FileDescriptor> ends_ = connectedSockets();
    Channel sender_{std::move(ends_.first)};
    Channel receiver_{std::move(ends_.second)};
    FrameBuffer buffer_;
    ReceivedFrame frame_;
    const std::string text_ = std::string(100000, 'v');
    const Bytes image_ = itemBytes('aaaa', text_);
    const MessageMemory large_{image_.data(), image_.size()};  // a view of memory that is not shared
};

}  // namespace

TEST_F(ChannelMemoryTest, LargeImageOutsideOfSharedMemory_IsCopiedThere) {
    ASSERT_EQ(sender_.send(requestHeader(1), large_, true), Sent::done);
    ASSERT_EQ(receiver_.receive(buffer_, frame_), Received::frame);
    EXPECT_NE(frame_.block, nullptr);
    EXPECT_TRUE(firstItemText(frame_.image, frame_.header.imageSize) == text_);
}

TEST_F(ChannelMemoryTest, WithoutSharedMemory_NothingIsSent) {
    const int status = inForkedProcess([this] {
        const rlimit none{0, 0};
        setrlimit(RLIMIT_NOFILE, &none);
        return sender_.send(requestHeader(1), large_, true) == Sent::failed ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(receiver_.receive(buffer_, frame_), Received::nothing);
}

TEST_F(ChannelMemoryTest, ReleaseForWhichTheSocketHasNoRoom_GoesWithTheNextRequest) {
    MessageMemory small;
    ASSERT_EQ(sender_.send(requestHeader(1), small, true), Sent::done);
    ASSERT_EQ(receiver_.receive(buffer_, frame_), Received::frame);
    FrameHeader reply;
    reply.kind = FrameKind::reply;
    reply.id = 1;
    ASSERT_EQ(receiver_.sendReply(reply, large_), Sent::done);
    ASSERT_EQ(sender_.receive(buffer_, frame_), Received::frame);
    const uint32_t slot = uint32_t{1} << frame_.header.place;
    sender_.holdReply(frame_).reset();

    // Requests that release nothing fill the socket.
    FrameHeader packet = requestHeader(2);
    while (send(sender_.descriptor(), &packet, sizeof packet, MSG_DONTWAIT | MSG_NOSIGNAL) > 0) {
    }
    sender_.sendReleased();
    uint32_t released = 0;
    while (receiver_.receive(buffer_, frame_) == Received::frame)
        released |= frame_.header.released;
    EXPECT_EQ(released, 0u);

    ASSERT_EQ(sender_.send(requestHeader(3), small, true), Sent::done);
    ASSERT_EQ(receiver_.receive(buffer_, frame_), Received::frame);
    EXPECT_EQ(frame_.header.released, slot);
}
