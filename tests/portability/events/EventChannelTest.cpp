#include "events/EventChannel.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "Images.h"
#include "MemoryFile.h"
#include "Processes.h"
#include "RawSocket.h"
#include "events/EventImage.h"

using namespace portability;

namespace {

using Sent = EventChannel::Sent;
using Received = EventChannel::Received;

FrameHeader requestHeader(uint64_t id) {
    FrameHeader header;
    header.id = id;
    return header;
}

FrameHeader replyHeader(uint64_t id) {
    FrameHeader header;
    header.kind = FrameKind::reply;
    header.id = id;
    return header;
}

void fill(ImageMemory& memory, const Bytes& image) {
    uint8_t* place = memory.append(image.size());
    if (!image.empty()) std::memcpy(place, image.data(), image.size());
}

// An event image with one parameter of that text.
struct Image : ImageMemory {
    explicit Image(const std::string& text) { fill(*this, itemBytes('aaaa', text)); }
};

std::string largeText(char letter) {
    return std::string(100000, letter);
}

std::string textOf(const ReceivedFrame& frame) {
    ImageItem item;
    if (!findItem(frame.image, frame.header.imageSize, ItemKind::parameter, 'aaaa', item)) return "(none)";
    return std::string(reinterpret_cast<const char*>(item.data), item.header.size);
}

// A sender's and a receiver's channel that are connected.
class EventChannelTest : public testing::Test {
  protected:
    EventChannelTest() {
        auto ends = connectedSockets();
        sender_ = std::make_unique<EventChannel>(std::move(ends.first));
        receiver_ = std::make_unique<EventChannel>(std::move(ends.second));
    }

    // What the receiver gets of a request with that text.
    std::string deliver(uint64_t id, const std::string& text) {
        const Image image(text);
        if (sender_->send(requestHeader(id), image, true) != Sent::done) return "(not sent)";
        return receiver_->receive(buffer_, frame_) == Received::frame ? textOf(frame_) : "(not received)";
    }

    // What the sender gets of a reply with that text.
    std::string reply(uint64_t id, const std::string& text, ReceivedFrame& frame) {
        const Image image(text);
        if (receiver_->sendReply(replyHeader(id), image) != Sent::done) return "(not sent)";
        return sender_->receive(buffer_, frame) == Received::frame ? textOf(frame) : "(not received)";
    }

    std::unique_ptr<EventChannel> sender_;
    std::unique_ptr<EventChannel> receiver_;
    FrameBuffer buffer_;
    ReceivedFrame frame_;
};

// What a channel makes of a packet that its peer sends.
Received receivedOf(const Bytes& packet, const std::vector<int>& descriptors = {}) {
    auto ends = connectedSockets();
    EventChannel channel(std::move(ends.second));
    EXPECT_TRUE(sendRaw(ends.first.get(), packet, descriptors));
    FrameBuffer buffer;
    ReceivedFrame frame;
    return channel.receive(buffer, frame);
}

FrameHeader inSlot(uint16_t slot, uint32_t imageSize) {
    FrameHeader header = requestHeader(1);
    header.place = slot;
    header.imageSize = imageSize;
    header.bringsFile = 1;
    return header;
}

}  // namespace

TEST_F(EventChannelTest, SmallImage_GoesInline) {
    EXPECT_EQ(deliver(7, "small"), "small");
    EXPECT_EQ(frame_.header.id, 7u);
    EXPECT_EQ(frame_.header.place, kInlineImage);
    EXPECT_EQ(frame_.block, nullptr);
}

TEST_F(EventChannelTest, LargeImage_GoesThroughSharedMemory) {
    EXPECT_TRUE(deliver(7, largeText('x')) == largeText('x'));
    EXPECT_LT(frame_.header.place, kSlots);
    EXPECT_NE(frame_.block, nullptr);
}

TEST_F(EventChannelTest, LargeImages_ConfirmedOnes_ReuseTheFile) {
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

TEST_F(EventChannelTest, LargeImages_Unconfirmed_NeverShareMemory) {
    std::vector<ReceivedFrame> frames(10);
    std::vector<std::unique_ptr<Image>> images;
    for (size_t i = 0; i < frames.size(); ++i) {
        images.push_back(std::make_unique<Image>(largeText(static_cast<char>('a' + i))));
        ASSERT_EQ(sender_->send(requestHeader(i + 1), *images.back(), true), Sent::done);
        images.back().reset();
        ASSERT_EQ(receiver_->receive(buffer_, frames[i]), Received::frame);
    }
    for (size_t i = 0; i < frames.size(); ++i) {
        EXPECT_TRUE(textOf(frames[i]) == largeText(static_cast<char>('a' + i))) << i;
    }
}

TEST_F(EventChannelTest, LargeReply_IsReusedOnlyAfterItWasLetGo) {
    ReceivedFrame first;
    ASSERT_EQ(deliver(1, "request"), "request");
    ASSERT_TRUE(reply(1, largeText('1'), first) == largeText('1'));
    std::shared_ptr<const void> held = sender_->holdReply(first);

    ReceivedFrame second;
    ASSERT_EQ(deliver(2, "request"), "request");
    ASSERT_TRUE(reply(2, largeText('2'), second) == largeText('2'));
    EXPECT_NE(second.header.place, first.header.place);
    EXPECT_TRUE(textOf(first) == largeText('1')) << "still held";

    held.reset();
    sender_->holdReply(second).reset();
    ASSERT_EQ(deliver(3, "request"), "request");
    ReceivedFrame third;
    ASSERT_TRUE(reply(3, largeText('3'), third) == largeText('3'));
    EXPECT_EQ(third.header.bringsFile, 0u);
}

TEST_F(EventChannelTest, HeldReply_OutlivesTheChannel) {
    ReceivedFrame frame;
    ASSERT_EQ(deliver(1, "request"), "request");
    ASSERT_TRUE(reply(1, largeText('1'), frame) == largeText('1'));
    std::shared_ptr<const void> held = sender_->holdReply(frame);
    frame.block.reset();
    sender_.reset();
    receiver_.reset();
    const auto others = SharedBlock::take(100000);
    std::memset(others->data(), '#', others->capacity());
    EXPECT_TRUE(textOf(frame) == largeText('1'));
}

TEST_F(EventChannelTest, PassingImage_IsNotKept) {
    const Image image(largeText('p'));
    ASSERT_EQ(sender_->send(requestHeader(1), image, /*confirmed=*/false), Sent::done);
    ASSERT_EQ(receiver_->receive(buffer_, frame_), Received::frame);
    EXPECT_EQ(frame_.header.place, kPassingImage);
    EXPECT_TRUE(textOf(frame_) == largeText('p'));
}

TEST_F(EventChannelTest, VeryLargeImage_Passes) {
    const std::string text(kLargestKeptBlock + 1, 'v');
    EXPECT_TRUE(deliver(1, text) == text);
    EXPECT_EQ(frame_.header.place, kPassingImage);
}

TEST_F(EventChannelTest, OtherEndGone_IsClosedForBothDirections) {
    receiver_.reset();
    const Image image("x");
    EXPECT_EQ(sender_->receive(buffer_, frame_), Received::closed);
    EXPECT_EQ(sender_->send(requestHeader(1), image, true), Sent::closed) << "and no SIGPIPE";
}

TEST_F(EventChannelTest, OtherEndDoesNotRead_IsFullAtLast) {
    const Image image(std::string(15000, 'x'));
    Sent sent = Sent::done;
    for (uint64_t id = 1; id < 1000 && sent == Sent::done; ++id)
        sent = sender_->send(requestHeader(id), image, true);
    EXPECT_EQ(sent, Sent::full);
    EXPECT_EQ(receiver_->receive(buffer_, frame_), Received::frame);
    EXPECT_EQ(frame_.header.id, 1u) << "what was sent before is whole";
}

TEST_F(EventChannelTest, NothingThere_IsNothing) {
    EXPECT_EQ(receiver_->receive(buffer_, frame_), Received::nothing);
    EXPECT_EQ(receiver_->look(frame_), Received::nothing);
}

TEST_F(EventChannelTest, Mailbox_IsUsedOnlyWhileTheOtherSideLooks) {
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
    EXPECT_EQ(textOf(frame_), "quick");
    EXPECT_TRUE(sender_->wasTaken());
}

TEST_F(EventChannelTest, Mailbox_ReplyTakesTheWayOfTheRequest) {
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

TEST_F(EventChannelTest, Mailbox_ReplyWithAFile_ComesThroughTheSocketAndIsAnnounced) {
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
    EXPECT_TRUE(textOf(frame_) == largeText('l'));
}

TEST_F(EventChannelTest, Mailbox_SenderThatSleepsAgain_IsAnsweredThroughTheSocket) {
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

TEST_F(EventChannelTest, Mailbox_OfferedTwice_IsMalformed) {
    auto ends = connectedSockets();
    EventChannel channel(std::move(ends.second));
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

TEST(EventChannel, WakeUpsWithoutEnd_DoNotHoldTheReceiver) {
    auto ends = connectedSockets();
    EventChannel channel(std::move(ends.second));
    FrameHeader header;
    header.kind = FrameKind::wakeUp;
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(sendRaw(ends.first.get(), headerBytes(header)));
    FrameBuffer buffer;
    ReceivedFrame frame;
    EXPECT_EQ(channel.receive(buffer, frame), Received::nothing);
    EXPECT_FALSE(receiveRaw(channel.descriptor()).empty()) << "most of them are still there";
}

TEST(EventChannel, ForgedMailbox_IsMalformedAndNeverRead) {
    FrameHeader offer;
    offer.kind = FrameKind::mailbox;
    offer.bringsFile = 1;
    // The numbers that the sender's side writes: how many frames, and the size of the last.
    for (const uint32_t size :
         {1u, 39u, static_cast<uint32_t>(kLargestFrame) + 1, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        auto ends = connectedSockets();
        EventChannel channel(std::move(ends.second));
        FileDescriptor file;
        const auto mailbox = Mailbox::create(file);
        const uint32_t numbers[2] = {1, size};
        ASSERT_EQ(pwrite(file.get(), numbers, sizeof numbers, 0), static_cast<ssize_t>(sizeof numbers));
        ASSERT_TRUE(sendRaw(ends.first.get(), headerBytes(offer), {file.get()}));
        FrameBuffer buffer;
        ReceivedFrame frame;
        EXPECT_EQ(channel.receive(buffer, frame), Received::malformed) << size;
    }
}

TEST(EventChannel, WellFormedPackets_AreFrames) {
    const Bytes image = itemBytes('aaaa', "text");
    FrameHeader header = requestHeader(1);
    header.imageSize = static_cast<uint32_t>(image.size());
    EXPECT_EQ(receivedOf(headerBytes(header) + image), Received::frame);
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK, image);
    EXPECT_EQ(receivedOf(headerBytes(inSlot(0, header.imageSize)), {file.get()}), Received::frame);
}

TEST(EventChannel, CutHeaders_AreMalformed) {
    const Bytes whole = headerBytes(requestHeader(1));
    for (size_t size = 1; size < whole.size(); ++size) {
        EXPECT_EQ(receivedOf(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))),
                  Received::malformed)
            << size;
    }
}

TEST(EventChannel, Garbage_IsMalformed) {
    EXPECT_EQ(receivedOf(Bytes(200, 0xA5)), Received::malformed);
    EXPECT_EQ(receivedOf(Bytes(kLargestFrame + 1000, 0)), Received::malformed);
}

TEST(EventChannel, DamagedImage_IsMalformed) {
    const Bytes image = itemBytes('aaaa', "text", 2, 5000);
    FrameHeader header = requestHeader(1);
    header.imageSize = static_cast<uint32_t>(image.size());
    EXPECT_EQ(receivedOf(headerBytes(header) + image), Received::malformed);
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK, image);
    EXPECT_EQ(receivedOf(headerBytes(inSlot(0, header.imageSize)), {file.get()}), Received::malformed);
}

TEST(EventChannel, SlotThatWasNeverFilled_IsMalformed) {
    FrameHeader header = inSlot(2, 1000);
    header.bringsFile = 0;
    EXPECT_EQ(receivedOf(headerBytes(header)), Received::malformed);
}

TEST(EventChannel, SlotThatIsSmallerThanTheImage_IsMalformed) {
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK);
    EXPECT_EQ(receivedOf(headerBytes(inSlot(0, 4097)), {file.get()}), Received::malformed);
}

TEST(EventChannel, UnsuitableFiles_AreMalformed) {
    const FileDescriptor unsealed = memoryFile(4096, 0);
    EXPECT_EQ(receivedOf(headerBytes(inSlot(0, 16)), {unsealed.get()}), Received::malformed);
    const FileDescriptor tooLarge = memoryFile(kLargestKeptBlock + 4096, F_SEAL_SHRINK);
    EXPECT_EQ(receivedOf(headerBytes(inSlot(0, 16)), {tooLarge.get()}), Received::malformed);
    FrameHeader passing = inSlot(kPassingImage, 16);
    const FileDescriptor enormous = memoryFile(kLargestImage + 4096, F_SEAL_SHRINK);
    EXPECT_EQ(receivedOf(headerBytes(passing), {enormous.get()}), Received::malformed);
    const FileDescriptor folder(open("/", O_RDONLY));
    EXPECT_EQ(receivedOf(headerBytes(inSlot(0, 16)), {folder.get()}), Received::malformed);
}

TEST(EventChannel, FilesThatWereNotAnnounced_AreMalformedAndClosed) {
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK);
    const Bytes plain = headerBytes(requestHeader(1));
    const int before = openDescriptors();
    EXPECT_EQ(receivedOf(plain, {file.get()}), Received::malformed);
    EXPECT_EQ(receivedOf(headerBytes(inSlot(0, 16)), {file.get(), file.get()}), Received::malformed);
    EXPECT_EQ(receivedOf(headerBytes(inSlot(0, 16)), std::vector<int>(20, file.get())), Received::malformed);
    EXPECT_EQ(openDescriptors(), before);
}
