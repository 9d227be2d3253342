#include "portability/transport/Channel.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/portability/support/Images.h"
#include "tests/portability/support/MemoryFile.h"
#include "tests/portability/support/RawSocket.h"
#include "tests/support/Processes.h"
#include "tests/support/WaitUntil.h"

using namespace portability;

namespace {

using Sent = Channel::Sent;
using Received = Channel::Received;

FrameHeader replyHeader(uint64_t id) {
    FrameHeader header;
    header.kind = FrameKind::reply;
    header.id = id;
    return header;
}

void fill(MessageMemory& memory, const Bytes& image) {
    uint8_t* place = memory.append(image.size());
    if (!image.empty()) std::memcpy(place, image.data(), image.size());
}

// An image whose first item contains the text.
struct Image : MessageMemory {
    explicit Image(const std::string& text) { fill(*this, itemBytes('aaaa', text)); }
};

std::string largeText(char letter) {
    return std::string(100000, letter);
}

std::string toText(const ReceivedFrame& frame) {
    return firstItemText(frame.image, frame.header.imageSize);
}

// The connected channels of a sender and a receiver.
class ChannelTest : public testing::Test {
  protected:
    ChannelTest() {
        auto ends = connectedSockets();
        sender_ = std::make_unique<Channel>(std::move(ends.first));
        receiver_ = std::make_unique<Channel>(std::move(ends.second));
    }

    // Sends a request with that text and returns what the receiver reads.
    std::string deliver(uint64_t id, const std::string& text) {
        const Image image(text);
        if (sender_->send(requestHeader(id), image, true) != Sent::done) return "(not sent)";
        return receiver_->receive(buffer_, frame_) == Received::frame ? toText(frame_) : "(not received)";
    }

    // Sends a reply with that text and returns what the sender reads.
    std::string reply(uint64_t id, const std::string& text, ReceivedFrame& frame) {
        const Image image(text);
        if (receiver_->sendReply(replyHeader(id), image) != Sent::done) return "(not sent)";
        return sender_->receive(buffer_, frame) == Received::frame ? toText(frame) : "(not received)";
    }

    std::unique_ptr<Channel> sender_;
    std::unique_ptr<Channel> receiver_;
    FrameBuffer buffer_;
    ReceivedFrame frame_;
};

}  // namespace

TEST_F(ChannelTest, SmallImage_GoesInline) {
    EXPECT_EQ(deliver(7, "small"), "small");
    EXPECT_EQ(frame_.header.id, 7u);
    EXPECT_EQ(frame_.header.place, kInlineImage);
    EXPECT_EQ(frame_.block, nullptr);
}

TEST_F(ChannelTest, LargeImage_GoesThroughSharedMemory) {
    EXPECT_TRUE(deliver(7, largeText('x')) == largeText('x'));
    EXPECT_LT(frame_.header.place, kSlots);
    EXPECT_NE(frame_.block, nullptr);
}

TEST_F(ChannelTest, LargeImages_ConfirmedOnes_ReuseTheFile) {
    deliver(1, largeText('1'));
    EXPECT_EQ(frame_.header.bringsFile, 1u);
    const uint16_t place = frame_.header.place;
    for (uint64_t id = 2; id < 6; ++id) {
        sender_->confirmUpTo(id - 1);
        EXPECT_TRUE(deliver(id, largeText('2')) == largeText('2'));
        EXPECT_EQ(frame_.header.bringsFile, 0u) << "the receiver has it already";
        EXPECT_EQ(frame_.header.place, place);
    }
}

TEST_F(ChannelTest, LargeImages_Unconfirmed_NeverShareMemory) {
    std::vector<ReceivedFrame> frames(10);
    std::vector<std::unique_ptr<Image>> images;
    for (size_t i = 0; i < frames.size(); ++i) {
        images.push_back(std::make_unique<Image>(largeText(static_cast<char>('a' + i))));
        ASSERT_EQ(sender_->send(requestHeader(i + 1), *images.back(), true), Sent::done);
        images.back().reset();
        ASSERT_EQ(receiver_->receive(buffer_, frames[i]), Received::frame);
    }
    for (size_t i = 0; i < frames.size(); ++i) {
        EXPECT_TRUE(toText(frames[i]) == largeText(static_cast<char>('a' + i))) << i;
    }
}

TEST_F(ChannelTest, LargeReply_IsReusedOnlyAfterItWasLetGo) {
    ReceivedFrame first;
    ASSERT_EQ(deliver(1, "request"), "request");
    ASSERT_TRUE(reply(1, largeText('1'), first) == largeText('1'));
    std::shared_ptr<const void> held = sender_->holdReply(first);

    ReceivedFrame second;
    ASSERT_EQ(deliver(2, "request"), "request");
    ASSERT_TRUE(reply(2, largeText('2'), second) == largeText('2'));
    EXPECT_NE(second.header.place, first.header.place);
    EXPECT_TRUE(toText(first) == largeText('1')) << "still held";

    held.reset();
    sender_->holdReply(second).reset();
    ASSERT_EQ(deliver(3, "request"), "request");
    ReceivedFrame third;
    ASSERT_TRUE(reply(3, largeText('3'), third) == largeText('3'));
    EXPECT_EQ(third.header.bringsFile, 0u);
}

TEST_F(ChannelTest, HeldReply_OutlivesTheChannel) {
    ReceivedFrame frame;
    ASSERT_EQ(deliver(1, "request"), "request");
    ASSERT_TRUE(reply(1, largeText('1'), frame) == largeText('1'));
    std::shared_ptr<const void> held = sender_->holdReply(frame);
    frame.block.reset();
    sender_.reset();
    receiver_.reset();
    const auto others = SharedBlock::take(100000);
    std::memset(others->data(), '#', others->capacity());
    EXPECT_TRUE(toText(frame) == largeText('1'));
}

TEST_F(ChannelTest, PassingImage_IsNotKept) {
    const Image image(largeText('p'));
    ASSERT_EQ(sender_->send(requestHeader(1), image, /*confirmed=*/false), Sent::done);
    ASSERT_EQ(receiver_->receive(buffer_, frame_), Received::frame);
    EXPECT_EQ(frame_.header.place, kPassingImage);
    EXPECT_TRUE(toText(frame_) == largeText('p'));
}

TEST_F(ChannelTest, ReleasedReply_CanBeReusedWithoutAnotherRequest) {
    ReceivedFrame frame;
    ASSERT_EQ(deliver(1, "request"), "request");
    ASSERT_TRUE(reply(1, largeText('a'), frame) == largeText('a'));
    const uint16_t place = frame.header.place;
    sender_->holdReply(frame).reset();

    sender_->sendReleased();
    EXPECT_EQ(receiver_->receive(buffer_, frame_), Received::nothing);
    ASSERT_TRUE(reply(2, largeText('b'), frame) == largeText('b'));
    EXPECT_EQ(frame.header.place, place);
    EXPECT_EQ(frame.header.bringsFile, 0u);
}

TEST_F(ChannelTest, ReplyInUse_IsNotReleased) {
    ReceivedFrame frame;
    ASSERT_EQ(deliver(1, "request"), "request");
    ASSERT_TRUE(reply(1, largeText('a'), frame) == largeText('a'));
    const uint16_t place = frame.header.place;
    const std::shared_ptr<const void> held = sender_->holdReply(frame);

    sender_->sendReleased();
    EXPECT_EQ(receiver_->receive(buffer_, frame_), Received::nothing);
    ReceivedFrame other;
    ASSERT_TRUE(reply(2, largeText('b'), other) == largeText('b'));
    EXPECT_NE(other.header.place, place);
    EXPECT_TRUE(toText(frame) == largeText('a'));
}

TEST_F(ChannelTest, VeryLargeImage_Passes) {
    const std::string text(kLargestKeptBlock + 1, 'v');
    EXPECT_TRUE(deliver(1, text) == text);
    EXPECT_EQ(frame_.header.place, kPassingImage);
}

TEST_F(ChannelTest, OtherEndGone_IsClosedForBothDirections) {
    receiver_.reset();
    const Image image("x");
    EXPECT_EQ(sender_->receive(buffer_, frame_), Received::closed);
    EXPECT_EQ(sender_->send(requestHeader(1), image, true), Sent::closed) << "and no SIGPIPE";
}

TEST_F(ChannelTest, OtherEndDoesNotRead_IsFullAtLast) {
    const Image image(std::string(15000, 'x'));
    Sent sent = Sent::done;
    for (uint64_t id = 1; id < 1000 && sent == Sent::done; ++id)
        sent = sender_->send(requestHeader(id), image, true);
    EXPECT_EQ(sent, Sent::full);
    EXPECT_EQ(receiver_->receive(buffer_, frame_), Received::frame);
    EXPECT_EQ(frame_.header.id, 1u) << "what was sent before is whole";
}

TEST_F(ChannelTest, NothingThere_IsNothing) {
    EXPECT_EQ(receiver_->receive(buffer_, frame_), Received::nothing);
    EXPECT_EQ(receiver_->look(frame_), Received::nothing);
}

TEST_F(ChannelTest, Mailbox_IsUsedOnlyWhileTheOtherSideLooks) {
    sender_->offerMailbox();
    const Image image("quick");
    bool posted = true;
    ASSERT_EQ(sender_->sendQuick(requestHeader(1), image, posted), Sent::done);
    EXPECT_FALSE(posted);
    ASSERT_EQ(receiver_->look(frame_), Received::nothing);
    ASSERT_EQ(receiver_->receive(buffer_, frame_), Received::frame);

    receiver_->setLooking(true);
    ASSERT_EQ(sender_->sendQuick(requestHeader(2), image, posted), Sent::done);
    EXPECT_TRUE(posted);
    EXPECT_FALSE(sender_->wasTaken());
    ASSERT_EQ(receiver_->look(frame_), Received::frame);
    EXPECT_EQ(frame_.header.id, 2u);
    EXPECT_EQ(toText(frame_), "quick");
    EXPECT_TRUE(sender_->wasTaken());
}

TEST_F(ChannelTest, Mailbox_ReplyTakesTheWayOfTheRequest) {
    sender_->offerMailbox();
    EXPECT_EQ(deliver(1, "by socket"), "by socket");
    receiver_->setLooking(true);
    const Image image("quick");
    bool posted = false;
    ASSERT_EQ(sender_->sendQuick(requestHeader(2), image, posted), Sent::done);
    ASSERT_TRUE(posted);
    ASSERT_EQ(receiver_->look(frame_), Received::frame);
    ASSERT_EQ(receiver_->sendReply(replyHeader(2), image), Sent::done);
    ASSERT_EQ(sender_->look(frame_), Received::frame);
    EXPECT_EQ(frame_.header.kind, FrameKind::reply);
}

TEST_F(ChannelTest, Mailbox_ReplyWithAFile_ComesThroughTheSocketAndIsAnnounced) {
    sender_->offerMailbox();
    EXPECT_EQ(deliver(1, "by socket"), "by socket");
    receiver_->setLooking(true);
    const Image image("quick");
    const Image large(largeText('l'));
    bool posted = false;
    ASSERT_EQ(sender_->sendQuick(requestHeader(2), image, posted), Sent::done);
    ASSERT_EQ(receiver_->look(frame_), Received::frame);
    ASSERT_EQ(receiver_->sendReply(replyHeader(2), large), Sent::done);
    EXPECT_EQ(sender_->look(frame_), Received::elsewhere);
    ASSERT_EQ(sender_->receive(buffer_, frame_), Received::frame);
    EXPECT_TRUE(toText(frame_) == largeText('l'));
}

TEST_F(ChannelTest, Mailbox_SenderThatSleepsAgain_IsAnsweredThroughTheSocket) {
    sender_->offerMailbox();
    EXPECT_EQ(deliver(1, "by socket"), "by socket");
    receiver_->setLooking(true);
    const Image image("quick");
    bool posted = false;
    ASSERT_EQ(sender_->sendQuick(requestHeader(2), image, posted), Sent::done);
    sender_->setLooking(false);
    ASSERT_EQ(receiver_->look(frame_), Received::frame);
    ASSERT_EQ(receiver_->sendReply(replyHeader(2), image), Sent::done);
    EXPECT_EQ(sender_->look(frame_), Received::nothing);
    EXPECT_EQ(sender_->receive(buffer_, frame_), Received::frame);
}

TEST_F(ChannelTest, Mailbox_OfferedTwice_IsMalformed) {
    auto ends = connectedSockets();
    Channel channel(std::move(ends.second));
    FrameHeader header;
    header.kind = FrameKind::mailbox;
    header.bringsFile = 1;
    FileDescriptor file;
    const auto mailbox = Mailbox::create(file);
    ASSERT_TRUE(sendRaw(ends.first.get(), headerBytes(header), {file.get()}));
    EXPECT_EQ(channel.receive(buffer_, frame_), Received::nothing);
    ASSERT_TRUE(sendRaw(ends.first.get(), headerBytes(header), {file.get()}));
    EXPECT_EQ(channel.receive(buffer_, frame_), Received::malformed);
}

// The last close of a file frees its memory, which can take long.
TEST_F(ChannelTest, FileThatIsTooLarge_IsNotClosedOnThisThread) {
    DescriptorCloser closer;
    auto ends = connectedSockets();
    Channel receiver(std::move(ends.second), &closer);
    const FileDescriptor file = memoryFile(kLargestMessage + 1, F_SEAL_SHRINK);
    FrameHeader header = requestHeader(1);
    header.place = kPassingImage;
    header.bringsFile = 1;
    header.imageSize = 100;
    const int before = countThreads();
    const int open = openDescriptors();
    sendRaw(ends.first.get(), headerBytes(header), {file.get()});
    EXPECT_EQ(receiver.receive(buffer_, frame_), Received::malformed);
    EXPECT_EQ(countThreads(), before + 1);
    EXPECT_TRUE(dovrel::test::waitUntil([open] { return openDescriptors() == open; }));
}
