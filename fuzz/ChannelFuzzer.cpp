// Fuzz target for one end of a connection whose peer does anything in any order: packets with and without files,
// mailboxes whose memory it writes at any time, slots, confirmations. The input is a list of steps of the peer
// and of the end under test. FrameFuzzer sends one frame and checks what is read from it; this target checks what
// remains from one frame to the next.
//
// Every received image can be read completely, has the size that its header says, and an image that the end under
// test holds stays readable until it is released. No descriptor is lost.

#include <dirent.h>
#include <sys/socket.h>

#include <iterator>
#include <memory>
#include <vector>

#include "ChannelPeer.h"
#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "portability/transport/Channel.h"

namespace {

using namespace portability;

size_t countDescriptors() {
    DIR* folder = opendir("/proc/self/fd");
    size_t count = 0;
    while (readdir(folder) != nullptr)
        ++count;
    closedir(folder);
    return count;
}

// The peer and the end under test.
class Conversation {
  public:
    Conversation() {
        int ends[2];
        FUZZ_CHECK(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) == 0);
        peer_ = std::make_unique<ChannelPeer>(FileDescriptor(ends[0]));
        channel_ = std::make_unique<Channel>(FileDescriptor(ends[1]));
    }
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    // Returns false after a packet that ends the connection.
    bool step(FuzzInput& input) {
        switch (input.takeByte() % 9) {
            case 0:
                peer_->sendPacket(input);
                return true;
            case 1:
                peer_->offerMailbox(input);
                return true;
            case 2:
                peer_->writeToMailbox(input);
                return true;
            case 3:
                peer_->postToMailbox(input);
                return true;
            case 4:
                return receive();
            case 5:
                reply(input);
                return true;
            case 6:
                request(input);
                return true;
            case 7:
                peer_->drain();
                held_.clear();
                channel_->sendReleased();
                return true;
            default:
                channel_->confirmUpTo(input.takeByte());
                return true;
        }
    }

  private:
    void readAll(const uint8_t* bytes, size_t size) {
        constexpr size_t kStep = 512;
        for (size_t at = 0; at < size; at += kStep)
            sum_ = static_cast<uint8_t>(sum_ + bytes[at]);
        if (size > 0) sum_ = static_cast<uint8_t>(sum_ + bytes[size - 1]);
    }

    bool receive() {
        ReceivedFrame frame;
        const Channel::Received received = channel_->receive(buffer_, frame);
        for (const auto& [image, size, block] : held_)
            readAll(image, size);
        if (received != Channel::Received::frame) return received == Channel::Received::nothing;
        // A mailbox can contain a frame of any kind. The users of the channel then close the connection.
        if (frame.header.kind != FrameKind::request && frame.header.kind != FrameKind::reply) return false;
        FUZZ_CHECK(frame.header.imageSize <= kLargestMessage);
        readAll(frame.image, frame.header.imageSize);
        if (frame.block != nullptr)
            held_.push_back({frame.image, frame.header.imageSize, channel_->holdReply(frame)});
        return true;
    }

    void reply(FuzzInput& input) {
        FrameHeader header;
        header.kind = FrameKind::reply;
        header.id = input.takeByte();
        const std::vector<uint8_t> image(kSizes[input.takeByte() % std::size(kSizes)]);
        channel_->sendReply(header, MessageMemory(image.data(), image.size()));
    }

    void request(FuzzInput& input) {
        FrameHeader header;
        header.id = input.takeByte();
        const std::vector<uint8_t> image(kSizes[input.takeByte() % std::size(kSizes)]);
        bool posted = false;
        channel_->offerMailbox();
        channel_->sendQuick(header, MessageMemory(image.data(), image.size()), posted);
        channel_->setLooking(input.takeByte() % 2 == 0);
    }

    struct Held {
        const uint8_t* image;
        size_t size;
        std::shared_ptr<const void> block;
    };

    std::unique_ptr<ChannelPeer> peer_;
    std::unique_ptr<Channel> channel_;
    FrameBuffer buffer_;
    std::vector<Held> held_;
    uint8_t sum_ = 0;  // so that the reads are not removed
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kMostKept = 8;  // blocks and a thread that stay for the next input
    static const size_t before = countDescriptors();
    {
        Conversation conversation;
        FuzzInput input(data, size);
        while (!input.atEnd() && conversation.step(input)) {
        }
    }
    FUZZ_CHECK(countDescriptors() <= before + kMostKept);
    return 0;
}
