// A peer of a connection that sends packets with and without files, and writes the memory of its mailbox at any
// time.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>
#include <vector>

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "portability/transport/Channel.h"
#include "portability/transport/Mailbox.h"
#include "portability/transport/Packet.h"

// The sizes around which images go another way: inline, in a block, in a block that is not kept.
constexpr uint32_t kSizes[] = {
    0, 1, 100, portability::kLargestInlineImage, portability::kLargestInlineImage + 1, 100000, 5u << 20};

class ChannelPeer {
  public:
    explicit ChannelPeer(portability::FileDescriptor socket) : socket_(std::move(socket)) {}
    ChannelPeer(const ChannelPeer&) = delete;
    ChannelPeer& operator=(const ChannelPeer&) = delete;
    ~ChannelPeer() {
        if (mailbox_ != nullptr) munmap(mailbox_, mailboxSize_);
    }

    void sendPacket(FuzzInput& input) {
        portability::FrameHeader header = takeHeader(input);
        const bool isInline =
            header.place == portability::kInlineImage && header.kind <= portability::FrameKind::reply;
        const std::vector<uint8_t> image(isInline ? std::min(header.imageSize, kSizes[3]) : 0,
                                         input.takeByte());
        portability::Packet packet(&header, sizeof header);
        packet.append(image.data(), image.size());
        portability::FileDescriptor file;
        if (header.bringsFile != 0) {
            file.reset(memfd_create("fuzz", MFD_CLOEXEC | MFD_ALLOW_SEALING));
            FUZZ_CHECK(ftruncate(file.get(), kSizes[input.takeByte() % std::size(kSizes)]) == 0);
            FUZZ_CHECK(fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK) == 0);
            packet.attach(file.get());
        }
        packet.send(socket_.get());
    }

    void offerMailbox(FuzzInput& input) {
        if (mailbox_ != nullptr) return;
        portability::FileDescriptor file;
        FUZZ_CHECK(portability::Mailbox::create(file) != nullptr);
        keepMailbox(file);
        portability::FrameHeader offer;
        offer.kind = portability::FrameKind::mailbox;
        offer.bringsFile = 1;
        offer.id = input.takeByte();
        portability::Packet packet(&offer, sizeof offer);
        packet.attach(file.get());
        packet.send(socket_.get());
    }

    // Anywhere in both halves, but mostly into the numbers at their beginning.
    void writeToMailbox(FuzzInput& input) {
        if (mailbox_ == nullptr) return;
        const size_t half = input.takeByte() % 2 * (mailboxSize_ / 2);
        const size_t offset = half + input.takeByte() % 32 * sizeof(uint32_t);
        const uint32_t number = input.takeNumber();
        std::memcpy(mailbox_ + offset, &number, sizeof number);
    }

    void postToMailbox(FuzzInput& input) {
        if (mailbox_ == nullptr) return;
        constexpr size_t kFrame = 64;
        const portability::FrameHeader header = takeHeader(input);
        const uint32_t size =
            input.takeByte() % 4 == 0 ? input.takeNumber() : sizeof header + header.imageSize;
        std::memcpy(mailbox_ + kFrame, &header, sizeof header);
        std::memcpy(mailbox_ + sizeof size, &size, sizeof size);
        ++*reinterpret_cast<uint32_t*>(mailbox_);
    }

    // Reads up to eight packets, and keeps the mailbox if one of them brings it.
    void drain() {
        std::vector<uint8_t> bytes(portability::kLargestFrame);
        size_t size = 0;
        portability::FileDescriptor file;
        std::vector<portability::FileDescriptor> refused;
        for (int i = 0; i < 8; ++i) {
            portability::Packet next(bytes.data(), bytes.size());
            if (next.receive(socket_.get(), size, file, refused) != portability::Packet::Received::packet)
                return;
            portability::FrameHeader header;
            std::memcpy(&header, bytes.data(), sizeof header);
            if (file && header.kind == portability::FrameKind::mailbox) keepMailbox(file);
        }
    }

  private:
    static portability::FrameHeader takeHeader(FuzzInput& input) {
        portability::FrameHeader header;
        header.kind = static_cast<portability::FrameKind>(input.takeByte() % 7);
        const uint8_t place = input.takeByte();
        header.place = place < portability::kSlots + 1 ? place
                       : place % 2 == 0                ? portability::kInlineImage
                                                       : portability::kPassingImage;
        header.id = input.takeByte();
        header.imageSize = kSizes[input.takeByte() % std::size(kSizes)];
        header.released = input.takeByte() % 32;
        header.bringsFile = input.takeByte() % 3 == 1;
        return header;
    }

    // The peer writes to a mailbox of either side.
    void keepMailbox(const portability::FileDescriptor& file) {
        if (mailbox_ != nullptr) return;
        mailboxSize_ = static_cast<size_t>(lseek(file.get(), 0, SEEK_END));
        void* const mapped = mmap(nullptr, mailboxSize_, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
        FUZZ_CHECK(mapped != MAP_FAILED);
        mailbox_ = static_cast<uint8_t*>(mapped);
    }

    portability::FileDescriptor socket_;
    uint8_t* mailbox_ = nullptr;
    size_t mailboxSize_ = 0;
};
