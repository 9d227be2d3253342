// Packets with arbitrary content from a peer. A packet that is not a frame is
// malformed, and nothing of it is kept.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <vector>

#include "portability/transport/Channel.h"
#include "tests/portability/support/Images.h"
#include "tests/portability/support/MemoryFile.h"
#include "tests/portability/support/RawSocket.h"
#include "tests/support/Processes.h"

using namespace portability;

namespace {

using Received = Channel::Received;

// Returns how a channel classifies a packet from its peer.
Received makeReceived(const Bytes& packet, const std::vector<int>& descriptors = {}) {
    auto ends = connectedSockets();
    Channel channel(std::move(ends.second));
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

TEST(Channel, WakeUpsWithoutEnd_DoNotHoldTheReceiver) {
    auto ends = connectedSockets();
    Channel channel(std::move(ends.second));
    FrameHeader header;
    header.kind = FrameKind::wakeUp;
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(sendRaw(ends.first.get(), headerBytes(header)));
    FrameBuffer buffer;
    ReceivedFrame frame;
    EXPECT_EQ(channel.receive(buffer, frame), Received::nothing);
    EXPECT_FALSE(receiveRaw(channel.descriptor()).empty()) << "most of them are still there";
}

TEST(Channel, ForgedMailbox_IsMalformedAndNeverRead) {
    FrameHeader offer;
    offer.kind = FrameKind::mailbox;
    offer.bringsFile = 1;
    // The two numbers that the sender writes: the number of frames, and the size of the last frame.
    for (const uint32_t size :
         {1u, 39u, static_cast<uint32_t>(kLargestFrame) + 1, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        auto ends = connectedSockets();
        Channel channel(std::move(ends.second));
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

TEST(Channel, WellFormedPackets_AreFrames) {
    const Bytes image = itemBytes('aaaa', "text");
    FrameHeader header = requestHeader(1);
    header.imageSize = static_cast<uint32_t>(image.size());
    EXPECT_EQ(makeReceived(headerBytes(header) + image), Received::frame);
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK, image);
    EXPECT_EQ(makeReceived(headerBytes(inSlot(0, header.imageSize)), {file.get()}), Received::frame);
}

TEST(Channel, CutHeaders_AreMalformed) {
    const Bytes whole = headerBytes(requestHeader(1));
    for (size_t size = 1; size < whole.size(); ++size) {
        EXPECT_EQ(makeReceived(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))),
                  Received::malformed)
            << size;
    }
}

TEST(Channel, Garbage_IsMalformed) {
    EXPECT_EQ(makeReceived(Bytes(200, 0xA5)), Received::malformed);
    EXPECT_EQ(makeReceived(Bytes(kLargestFrame + 1000, 0)), Received::malformed);
}

TEST(Channel, ReleasedRepliesFromAPeerThatSendsNoRequests_AreMalformed) {
    FrameHeader header;
    header.kind = FrameKind::released;
    header.released = 1;
    EXPECT_EQ(makeReceived(headerBytes(header)), Received::malformed);
}

TEST(Channel, SlotThatWasNeverFilled_IsMalformed) {
    FrameHeader header = inSlot(2, 1000);
    header.bringsFile = 0;
    EXPECT_EQ(makeReceived(headerBytes(header)), Received::malformed);
}

TEST(Channel, SlotThatIsSmallerThanTheImage_IsMalformed) {
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK);
    EXPECT_EQ(makeReceived(headerBytes(inSlot(0, 4097)), {file.get()}), Received::malformed);
}

TEST(Channel, UnsuitableFiles_AreMalformed) {
    const FileDescriptor unsealed = memoryFile(4096, 0);
    EXPECT_EQ(makeReceived(headerBytes(inSlot(0, 16)), {unsealed.get()}), Received::malformed);
    const FileDescriptor tooLarge = memoryFile(kLargestKeptBlock + 4096, F_SEAL_SHRINK);
    EXPECT_EQ(makeReceived(headerBytes(inSlot(0, 16)), {tooLarge.get()}), Received::malformed);
    FrameHeader passing = inSlot(kPassingImage, 16);
    const FileDescriptor enormous = memoryFile(kLargestMessage + 4096, F_SEAL_SHRINK);
    EXPECT_EQ(makeReceived(headerBytes(passing), {enormous.get()}), Received::malformed);
    const FileDescriptor folder(open("/", O_RDONLY));
    EXPECT_EQ(makeReceived(headerBytes(inSlot(0, 16)), {folder.get()}), Received::malformed);
}

TEST(Channel, FilesThatWereNotAnnounced_AreMalformedAndClosed) {
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK);
    const Bytes plain = headerBytes(requestHeader(1));
    const int before = openDescriptors();
    EXPECT_EQ(makeReceived(plain, {file.get()}), Received::malformed);
    EXPECT_EQ(makeReceived(headerBytes(inSlot(0, 16)), {file.get(), file.get()}), Received::malformed);
    EXPECT_EQ(makeReceived(headerBytes(inSlot(0, 16)), std::vector<int>(20, file.get())),
              Received::malformed);
    EXPECT_EQ(openDescriptors(), before);
}
