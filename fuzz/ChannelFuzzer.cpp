// Fuzz target for one end of a connection whose peer does anything in any order: packets with and without files,
// mailboxes whose memory it writes at any time, slots, confirmations. The input is a list of steps of the peer
// and of the end under test. FrameFuzzer sends one frame and checks what is read from it; this target checks what
// remains from one frame to the next.
//
// Every received image can be read completely, has the size that its header says, and an image that the end under
// test holds stays readable until it is released. No descriptor is lost.

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "FuzzTarget.h"
#include "portability/transport/Channel.h"
#include "portability/transport/Mailbox.h"
#include "portability/transport/Packet.h"

namespace {

using namespace portability;

// The sizes around which images go another way: inline, in a block, in a block that is not kept.
constexpr uint32_t kSizes[] = {0, 1, 100, kLargestInlineImage, kLargestInlineImage + 1, 100000, 5u << 20};

class Input {
  public:
    Input(const uint8_t* data, size_t size) : data_(data), size_(size) {}
    bool atEnd() const { return size_ == 0; }
    uint8_t takeByte() {
        if (size_ == 0) return 0;
        --size_;
        return *data_++;
    }
    uint32_t takeNumber() {
        uint32_t number = 0;
        for (int i = 0; i < 4; ++i)
            number = number << 8 | takeByte();
        return number;
    }

  private:
    const uint8_t* data_;
    size_t size_;
};

size_t countDescriptors() {
    DIR* folder = opendir("/proc/self/fd");
    size_t count = 0;
    while (readdir(folder) != nullptr)
        ++count;
    closedir(folder);
    return count;
}

// The peer's files and mailbox, and the end under test.
class Conversation {
  public:
    Conversation() {
        int ends[2];
        FUZZ_CHECK(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) == 0);
        peer_.reset(ends[0]);
        channel_ = std::make_unique<Channel>(FileDescriptor(ends[1]));
    }
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;
    ~Conversation() {
        if (mailbox_ != nullptr) munmap(mailbox_, mailboxSize_);
    }

    // Returns false after a packet that ends the connection.
    bool step(Input& input) {
        switch (input.takeByte() % 9) {
            case 0:
                sendPacket(input);
                return true;
            case 1:
                offerMailbox(input);
                return true;
            case 2:
                writeToMailbox(input);
                return true;
            case 3:
                postToMailbox(input);
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
                drain();
                held_.clear();
                channel_->sendReleased();
                return true;
            default:
                channel_->confirmUpTo(input.takeByte());
                return true;
        }
    }

  private:
    static FrameHeader takeHeader(Input& input) {
        FrameHeader header;
        header.kind = static_cast<FrameKind>(input.takeByte() % 7);
        const uint8_t place = input.takeByte();
        header.place = place < kSlots + 1 ? place : place % 2 == 0 ? kInlineImage : kPassingImage;
        header.id = input.takeByte();
        header.imageSize = kSizes[input.takeByte() % std::size(kSizes)];
        header.released = input.takeByte() % 32;
        header.bringsFile = input.takeByte() % 3 == 1;
        return header;
    }

    void sendPacket(Input& input) {
        FrameHeader header = takeHeader(input);
        const bool isInline = header.place == kInlineImage && header.kind <= FrameKind::reply;
        const std::vector<uint8_t> image(isInline ? std::min(header.imageSize, kSizes[3]) : 0,
                                         input.takeByte());
        Packet packet(&header, sizeof header);
        packet.append(image.data(), image.size());
        FileDescriptor file;
        if (header.bringsFile != 0) {
            file.reset(memfd_create("fuzz", MFD_CLOEXEC | MFD_ALLOW_SEALING));
            FUZZ_CHECK(ftruncate(file.get(), kSizes[input.takeByte() % std::size(kSizes)]) == 0);
            FUZZ_CHECK(fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK) == 0);
            packet.attach(file.get());
        }
        packet.send(peer_.get());
    }

    void offerMailbox(Input& input) {
        if (mailbox_ != nullptr) return;
        FileDescriptor file;
        FUZZ_CHECK(Mailbox::create(file) != nullptr);
        keepMailbox(file);
        FrameHeader offer;
        offer.kind = FrameKind::mailbox;
        offer.bringsFile = 1;
        offer.id = input.takeByte();
        Packet packet(&offer, sizeof offer);
        packet.attach(file.get());
        packet.send(peer_.get());
    }

    // The peer writes to a mailbox of either side.
    void keepMailbox(const FileDescriptor& file) {
        if (mailbox_ != nullptr) return;
        mailboxSize_ = static_cast<size_t>(lseek(file.get(), 0, SEEK_END));
        void* const mapped = mmap(nullptr, mailboxSize_, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
        FUZZ_CHECK(mapped != MAP_FAILED);
        mailbox_ = static_cast<uint8_t*>(mapped);
    }

    // Anywhere in both halves, but mostly into the numbers at their beginning.
    void writeToMailbox(Input& input) {
        if (mailbox_ == nullptr) return;
        const size_t half = input.takeByte() % 2 * (mailboxSize_ / 2);
        const size_t offset = half + input.takeByte() % 32 * sizeof(uint32_t);
        const uint32_t number = input.takeNumber();
        std::memcpy(mailbox_ + offset, &number, sizeof number);
    }

    void postToMailbox(Input& input) {
        if (mailbox_ == nullptr) return;
        constexpr size_t kFrame = 64;
        const FrameHeader header = takeHeader(input);
        const uint32_t size =
            input.takeByte() % 4 == 0 ? input.takeNumber() : sizeof header + header.imageSize;
        std::memcpy(mailbox_ + kFrame, &header, sizeof header);
        std::memcpy(mailbox_ + sizeof size, &size, sizeof size);
        ++*reinterpret_cast<uint32_t*>(mailbox_);
    }

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

    void reply(Input& input) {
        FrameHeader header;
        header.kind = FrameKind::reply;
        header.id = input.takeByte();
        const std::vector<uint8_t> image(kSizes[input.takeByte() % std::size(kSizes)]);
        channel_->sendReply(header, MessageMemory(image.data(), image.size()));
    }

    void request(Input& input) {
        FrameHeader header;
        header.id = input.takeByte();
        const std::vector<uint8_t> image(kSizes[input.takeByte() % std::size(kSizes)]);
        bool posted = false;
        channel_->offerMailbox();
        channel_->sendQuick(header, MessageMemory(image.data(), image.size()), posted);
        channel_->setLooking(input.takeByte() % 2 == 0);
    }

    void drain() {
        std::vector<uint8_t> bytes(kLargestFrame);
        size_t size = 0;
        FileDescriptor file;
        std::vector<FileDescriptor> refused;
        for (int i = 0; i < 8; ++i) {
            Packet next(bytes.data(), bytes.size());
            if (next.receive(peer_.get(), size, file, refused) != Packet::Received::packet) return;
            FrameHeader header;
            std::memcpy(&header, bytes.data(), sizeof header);
            if (file && header.kind == FrameKind::mailbox) keepMailbox(file);
        }
    }

    struct Held {
        const uint8_t* image;
        size_t size;
        std::shared_ptr<const void> block;
    };

    FileDescriptor peer_;
    std::unique_ptr<Channel> channel_;
    FrameBuffer buffer_;
    std::vector<Held> held_;
    uint8_t* mailbox_ = nullptr;
    size_t mailboxSize_ = 0;
    uint8_t sum_ = 0;  // so that the reads are not removed
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kMostKept = 8;  // blocks and a thread that stay for the next input
    static const size_t before = countDescriptors();
    {
        Conversation conversation;
        Input input(data, size);
        while (!input.atEnd() && conversation.step(input)) {
        }
    }
    FUZZ_CHECK(countDescriptors() <= before + kMostKept);
    return 0;
}
