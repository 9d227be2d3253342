#include "events/EventChannel.h"

#include <sys/socket.h>
#include <sys/uio.h>

#include <cstring>
#include <utility>

#include "events/EventImage.h"

namespace portability {

namespace {

// One descriptor needs this much; the padding has room for a second, which nobody may send.
constexpr size_t kControlSize = CMSG_SPACE(sizeof(int));

struct Packet {
    alignas(cmsghdr) std::array<char, kControlSize> control;
    std::array<iovec, 2> parts;
    msghdr message{};
};

void attachFile(Packet& packet, int descriptor) {
    packet.control = {};
    packet.message.msg_control = packet.control.data();
    packet.message.msg_controllen = kControlSize;
    cmsghdr* control = CMSG_FIRSTHDR(&packet.message);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(control), &descriptor, sizeof descriptor);
}

EventChannel::Sent sendPacket(int socket, const msghdr& message) {
    for (;;) {
        if (sendmsg(socket, &message, MSG_DONTWAIT | MSG_NOSIGNAL) >= 0) return EventChannel::Sent::done;
        switch (errno) {
            case EINTR:
                continue;
            case EAGAIN:
                return EventChannel::Sent::full;
            case EPIPE:
            case ECONNRESET:
            case ECONNREFUSED:
            case ENOTCONN:
                return EventChannel::Sent::closed;
            default:
                return EventChannel::Sent::failed;
        }
    }
}

// Takes over every descriptor that came along; false when there is more than one.
bool takeFile(msghdr& message, FileDescriptor& file) {
    bool single = true;
    for (cmsghdr* control = CMSG_FIRSTHDR(&message); control != nullptr;
         control = CMSG_NXTHDR(&message, control)) {
        if (control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS) continue;
        const size_t count = (control->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t i = 0; i < count; ++i) {
            int descriptor;
            std::memcpy(&descriptor, CMSG_DATA(control) + i * sizeof descriptor, sizeof descriptor);
            single = single && !file;
            file.reset(descriptor);
        }
    }
    return single;
}

// A reply in one of the peer's slots, until it is let go.
class HeldReply {
  public:
    HeldReply(std::shared_ptr<const void> block, std::shared_ptr<std::atomic<uint32_t>> released,
              uint32_t bit)
        : block_(std::move(block)), released_(std::move(released)), bit_(bit) {}
    HeldReply(const HeldReply&) = delete;
    HeldReply& operator=(const HeldReply&) = delete;
    ~HeldReply() { released_->fetch_or(bit_, std::memory_order_release); }

  private:
    std::shared_ptr<const void> block_;
    std::shared_ptr<std::atomic<uint32_t>> released_;
    uint32_t bit_;
};

}  // namespace

EventChannel::EventChannel(FileDescriptor socket)
    : socket_(std::move(socket)), released_(std::make_shared<std::atomic<uint32_t>>(0)) {}

EventChannel::~EventChannel() {
    for (const OutSlot& slot : out_) {
        if (slot.inUse != nullptr) slot.inUse->forbidReuse();
    }
}

EventChannel::Sent EventChannel::send(FrameHeader header, const ImageMemory& image, bool confirmed) {
    std::shared_ptr<SharedBlock> copy;
    const std::shared_ptr<SharedBlock>* block = &image.block();
    if (*block == nullptr && image.size() > kLargestInlineImage) {
        copy = copyToBlock(image.data(), image.size());
        if (copy == nullptr) return Sent::failed;
        block = &copy;
    }
    Packet packet;
    header.imageSize = static_cast<uint32_t>(image.size());
    packet.parts[0] = {&header, sizeof header};
    packet.message.msg_iov = packet.parts.data();
    packet.message.msg_iovlen = 1;
    if (*block == nullptr) {
        header.place = kInlineImage;
        packet.parts[1] = {const_cast<uint8_t*>(image.data()), image.size()};
        packet.message.msg_iovlen = 2;
    } else {
        header.place = confirmed ? findPlace(**block) : kPassingImage;
        header.bringsFile = header.place == kPassingImage || out_[header.place].known != (*block)->id();
        if (header.bringsFile != 0) attachFile(packet, (*block)->descriptor());
    }
    if (header.kind == FrameKind::request)
        header.released = released_->exchange(0, std::memory_order_acquire);

    const Sent sent = sendPacket(socket_.get(), packet.message);
    if (sent != Sent::done) {
        released_->fetch_or(header.released, std::memory_order_release);
    } else if (*block != nullptr) {
        noteSent(header, *block);
    }
    return sent;
}

uint16_t EventChannel::findPlace(const SharedBlock& block) const {
    if (block.capacity() > kLargestKeptBlock) return kPassingImage;
    uint16_t oldest = kPassingImage;
    for (uint16_t i = 0; i < kSlots; ++i) {
        const OutSlot& slot = out_[i];
        if (slot.inUse != nullptr && slot.inUse.get() != &block) continue;
        if (slot.known == block.id()) return i;
        if (oldest == kPassingImage || slot.frame < out_[oldest].frame) oldest = i;
    }
    return oldest;
}

void EventChannel::noteSent(const FrameHeader& header, const std::shared_ptr<SharedBlock>& block) {
    // Nobody will say when a passing file has been read.
    if (header.place == kPassingImage) {
        block->forbidReuse();
        return;
    }
    OutSlot& slot = out_[header.place];
    slot.known = block->id();
    slot.inUse = block;
    slot.frame = header.id;
}

void EventChannel::confirmUpTo(uint64_t id) {
    for (OutSlot& slot : out_) {
        if (slot.frame <= id) slot.inUse.reset();
    }
}

void EventChannel::release(uint32_t mask) {
    for (uint32_t i = 0; i < kSlots; ++i) {
        if ((mask >> i & 1) != 0) out_[i].inUse.reset();
    }
}

EventChannel::Received EventChannel::receive(FrameBuffer& buffer, ReceivedFrame& frame) {
    Packet packet;
    packet.parts[0] = {buffer.bytes.data(), buffer.bytes.size()};
    packet.message.msg_iov = packet.parts.data();
    packet.message.msg_iovlen = 1;
    packet.message.msg_control = packet.control.data();
    packet.message.msg_controllen = kControlSize;
    ssize_t size;
    do
        size = recvmsg(socket_.get(), &packet.message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    while (size < 0 && errno == EINTR);
    if (size < 0) return errno == EAGAIN ? Received::nothing : Received::closed;
    if (size == 0) return Received::closed;

    FileDescriptor file;
    const bool single = takeFile(packet.message, file);
    const bool cut = (packet.message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0;
    if (!single || cut || static_cast<size_t>(size) < sizeof frame.header) return Received::malformed;
    std::memcpy(&frame.header, buffer.bytes.data(), sizeof frame.header);
    if (!isPlausible(frame.header, static_cast<size_t>(size), static_cast<bool>(file)))
        return Received::malformed;
    if (!findImage(frame, buffer, std::move(file))) return Received::malformed;
    release(frame.header.released);
    return Received::frame;
}

bool EventChannel::findImage(ReceivedFrame& frame, FrameBuffer& buffer, FileDescriptor file) {
    const FrameHeader& header = frame.header;
    if (header.place == kInlineImage) {
        frame.image = buffer.bytes.data() + sizeof header;
        frame.block.reset();
        return isWholeImage(frame.image, header.imageSize);
    }
    std::shared_ptr<const ReceivedBlock> passing;
    std::shared_ptr<const ReceivedBlock>& block = header.place == kPassingImage ? passing : in_[header.place];
    const size_t largest = header.place == kPassingImage ? kLargestImage : kLargestKeptBlock;
    if (file) block = ReceivedBlock::map(std::move(file), header.imageSize, largest);
    if (block == nullptr || block->size() < header.imageSize) return false;
    frame.image = block->data();
    frame.block = block;
    return isWholeImage(frame.image, header.imageSize);
}

std::shared_ptr<const void> EventChannel::holdReply(const ReceivedFrame& frame) {
    if (frame.block == nullptr || frame.header.place == kPassingImage) return frame.block;
    return std::make_shared<HeldReply>(frame.block, released_, uint32_t{1} << frame.header.place);
}

}  // namespace portability
