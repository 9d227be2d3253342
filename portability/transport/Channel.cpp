#include "portability/transport/Channel.h"

#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "portability/transport/LargeMemory.h"
#include "portability/transport/SharedFile.h"

namespace portability {

namespace {

constexpr int kMostPacketsAtOnce = 4;

Channel::Sent sendPacket(int socket, Packet& packet) {
    switch (packet.send(socket)) {
        case 0:
            return Channel::Sent::done;
        case EAGAIN:
            return Channel::Sent::full;
        case EPIPE:
        case ECONNRESET:
        case ECONNREFUSED:
        case ENOTCONN:
            return Channel::Sent::closed;
        default:
            return Channel::Sent::failed;
    }
}

// Keeps a reply in one of the peer's slots mapped. The destructor marks the slot as released.
class HeldReply {
  public:
    HeldReply(std::shared_ptr<const void> block, std::shared_ptr<std::atomic<uint32_t>> released,
              uint32_t bit, bool isLarge)
        : block_(std::move(block)), released_(std::move(released)), bit_(bit), isLarge_(isLarge) {}
    HeldReply(const HeldReply&) = delete;
    HeldReply& operator=(const HeldReply&) = delete;
    ~HeldReply() {
        released_->fetch_or(bit_, std::memory_order_release);
        if (isLarge_) freeLargeMemoryLater();
    }

  private:
    std::shared_ptr<const void> block_;
    std::shared_ptr<std::atomic<uint32_t>> released_;
    uint32_t bit_;
    bool isLarge_;
};

}  // namespace

Channel::Channel(FileDescriptor socket, DescriptorCloser* closer)
    : socket_(std::move(socket)), closer_(closer), released_(std::make_shared<std::atomic<uint32_t>>(0)) {}

Channel::~Channel() {
    for (const OutSlot& slot : out_) {
        if (slot.inUse != nullptr) slot.inUse->disableReuse();
    }
}

Channel::Sent Channel::send(const FrameHeader& header, const MessageMemory& image, bool confirmed) {
    Outgoing frame{header, image, nullptr};
    return prepare(frame, confirmed) ? sendPrepared(frame) : Sent::failed;
}

Channel::Sent Channel::sendQuick(const FrameHeader& header, const MessageMemory& image, bool& posted) {
    posted = false;
    Outgoing frame{header, image, nullptr};
    if (!prepare(frame, /*confirmed=*/true)) return Sent::failed;
    if (mailbox_ == nullptr || frame.header.bringsFile != 0 || !mailbox_->isOtherLooking())
        return sendPrepared(frame);
    mailbox_->setLooking(true);
    post(frame);
    posted = true;
    return Sent::done;
}

Channel::Sent Channel::sendReply(const FrameHeader& header, const MessageMemory& image) {
    Outgoing frame{header, image, nullptr};
    if (!prepare(frame, /*confirmed=*/true)) return Sent::failed;
    const bool isQuick = cameByMailbox_ && mailbox_->isOtherLooking();
    if (isQuick && frame.header.bringsFile == 0) {
        post(frame);
        return Sent::done;
    }
    const Sent sent = sendPrepared(frame);
    // The peer polls only the mailbox, so a notice there tells it to read the socket.
    if (isQuick && sent == Sent::done) mailbox_->post(nullptr, nullptr, 0);
    return sent;
}

// Fills in the header and the block. Returns false if there is no shared memory for a large image.
bool Channel::prepare(Outgoing& frame, bool confirmed) {
    FrameHeader& header = frame.header;
    header.imageSize = static_cast<uint32_t>(frame.image.size());
    frame.block = frame.image.block();
    if (frame.block == nullptr && frame.image.size() > kLargestInlineImage) {
        frame.block = copyToBlock(frame.image.data(), frame.image.size());
        if (frame.block == nullptr) return false;
    }
    if (frame.block == nullptr) {
        header.place = kInlineImage;
    } else {
        header.place = confirmed ? findPlace(*frame.block) : kPassingImage;
        header.bringsFile = header.place == kPassingImage || out_[header.place].known != frame.block->id();
    }
    if (header.kind == FrameKind::request)
        header.released = released_->exchange(0, std::memory_order_acquire);
    return true;
}

Channel::Sent Channel::sendPrepared(Outgoing& frame) {
    if (mailbox_ != nullptr) mailbox_->noteProcessor();
    Packet packet(&frame.header, sizeof frame.header);
    if (frame.block == nullptr) packet.append(frame.image.data(), frame.image.size());
    if (frame.header.bringsFile != 0) packet.attach(frame.block->descriptor());
    const Sent sent = sendPacket(socket_.get(), packet);
    if (sent == Sent::done) {
        noteSent(frame);
    } else {
        released_->fetch_or(frame.header.released, std::memory_order_release);
    }
    return sent;
}

void Channel::post(Outgoing& frame) {
    noteSent(frame);
    mailbox_->post(&frame.header, frame.image.data(), frame.block == nullptr ? frame.image.size() : 0);
    if (mailbox_->isOtherLooking()) return;
    // The peer may have stopped polling just before the frame was posted. If the socket's buffer is full, the
    // packets in it wake the peer.
    FrameHeader wakeUp;
    wakeUp.kind = FrameKind::wakeUp;
    Packet packet(&wakeUp, sizeof wakeUp);
    sendPacket(socket_.get(), packet);
}

void Channel::offerMailbox() {
    if (mailboxOffered_) return;
    mailboxOffered_ = true;
    FileDescriptor file;
    std::unique_ptr<Mailbox> mailbox = Mailbox::create(file);
    if (mailbox == nullptr) return;
    FrameHeader header;
    header.kind = FrameKind::mailbox;
    header.bringsFile = 1;
    Packet packet(&header, sizeof header);
    packet.attach(file.get());
    if (sendPacket(socket_.get(), packet) == Sent::done) mailbox_ = std::move(mailbox);
}

bool Channel::openMailbox(FileDescriptor file) {
    if (mailbox_ != nullptr) return false;
    mailbox_ = Mailbox::open(std::move(file));
    return mailbox_ != nullptr;
}

void Channel::setLooking(bool looking) {
    if (mailbox_ != nullptr) mailbox_->setLooking(looking);
}

bool Channel::wasTaken() const {
    return mailbox_ == nullptr || mailbox_->wasTaken();
}

uint16_t Channel::findPlace(const SharedBlock& block) const {
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

void Channel::noteSent(const Outgoing& frame) {
    if (frame.block == nullptr) return;
    // The peer does not confirm a file that is not kept in a slot.
    if (frame.header.place == kPassingImage) {
        frame.block->disableReuse();
        return;
    }
    OutSlot& slot = out_[frame.header.place];
    slot.known = frame.block->id();
    slot.inUse = frame.block;
    slot.frame = frame.header.id;
}

void Channel::confirmUpTo(uint64_t id) {
    for (OutSlot& slot : out_) {
        if (slot.frame <= id) slot.inUse.reset();
    }
}

void Channel::release(uint32_t mask) {
    for (uint32_t i = 0; i < kSlots; ++i) {
        if ((mask >> i & 1) != 0) out_[i].inUse.reset();
    }
}

Channel::Received Channel::look(ReceivedFrame& frame) {
    Mail mail;
    if (mailbox_ == nullptr || !mailbox_->take(mail)) return Received::nothing;
    if (mail.size == 0) return Received::elsewhere;
    cameByMailbox_ = true;
    return interpret(mail.bytes, mail.size, FileDescriptor(), frame);
}

Channel::Received Channel::receive(FrameBuffer& buffer, ReceivedFrame& frame) {
    return receiveFrame(buffer, frame, Packet::Wait::no);
}

Channel::Received Channel::receiveWaiting(FrameBuffer& buffer, ReceivedFrame& frame) {
    return receiveFrame(buffer, frame, Packet::Wait::yes);
}

bool Channel::limitWaiting() {
    if (limitsWaiting_) return true;
    timeval limit{};
    limit.tv_sec = kLongestWait.count();
    limitsWaiting_ = setsockopt(socket_.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit) == 0;
    return limitsWaiting_;
}

Channel::Received Channel::receiveFrame(FrameBuffer& buffer, ReceivedFrame& frame, Packet::Wait wait) {
    const Received looked = look(frame);
    if (looked != Received::nothing && looked != Received::elsewhere) return looked;
    cameByMailbox_ = false;
    // Limited, so that a peer that sends only packets of these kinds cannot keep us in this loop.
    for (int packet = 0; packet < kMostPacketsAtOnce; ++packet) {
        const Received received = receivePacket(buffer, frame, packet == 0 ? wait : Packet::Wait::no);
        if (received != Received::frame) return received;
        if (frame.header.kind == FrameKind::request || frame.header.kind == FrameKind::reply) return received;
        // The packet brought a mailbox, or says that the mailbox contains a frame or that replies are released.
        const Received found = look(frame);
        if (found != Received::nothing && found != Received::elsewhere) return found;
    }
    return Received::nothing;
}

void Channel::refuse(FileDescriptor descriptor) {
    if (closer_ != nullptr) {
        closer_->close(std::move(descriptor));
    } else {
        closeWithoutLinger(std::move(descriptor));
    }
}

Channel::Received Channel::receivePacket(FrameBuffer& buffer, ReceivedFrame& frame, Packet::Wait wait) {
    Packet packet(buffer.bytes.data(), buffer.bytes.size());
    size_t size = 0;
    FileDescriptor file;
    std::vector<FileDescriptor> refused;
    const Packet::Received received = packet.receive(socket_.get(), size, file, refused, wait);
    for (FileDescriptor& descriptor : refused)
        refuse(std::move(descriptor));
    // Shared memory of a possible size is closed at once. Anything else is nothing that a correct peer sends.
    uint64_t fileSize;
    const bool isForeign = file && (!isSealedSharedFile(file, fileSize) || fileSize > kLargestMessage);
    if (isForeign) refuse(std::move(file));
    switch (received) {
        case Packet::Received::packet:
            return isForeign ? Received::malformed
                             : interpret(buffer.bytes.data(), size, std::move(file), frame);
        case Packet::Received::nothing:
            return Received::nothing;
        case Packet::Received::closed:
            return Received::closed;
        case Packet::Received::cut:
            break;
    }
    return Received::malformed;
}

Channel::Received Channel::interpret(const uint8_t* bytes, size_t size, FileDescriptor file,
                                     ReceivedFrame& frame) {
    frame.block.reset();
    if (size < sizeof frame.header || size > kLargestFrame) return Received::malformed;
    std::memcpy(&frame.header, bytes, sizeof frame.header);
    if (!isPlausible(frame.header, size, static_cast<bool>(file))) return Received::malformed;
    switch (frame.header.kind) {
        case FrameKind::mailbox:
            return openMailbox(std::move(file)) ? Received::frame : Received::malformed;
        case FrameKind::wakeUp:
            return Received::frame;
        case FrameKind::released:
            if (!receivesRequests_) return Received::malformed;
            release(frame.header.released);
            return Received::frame;
        case FrameKind::request:
            receivesRequests_ = true;
            break;
        case FrameKind::reply:
            break;
    }
    if (!findImage(frame, bytes + sizeof frame.header, std::move(file))) return Received::malformed;
    release(frame.header.released);
    return Received::frame;
}

bool Channel::findImage(ReceivedFrame& frame, const uint8_t* behindHeader, FileDescriptor file) {
    const FrameHeader& header = frame.header;
    if (header.place == kInlineImage) {
        frame.image = behindHeader;
        return true;
    }
    std::shared_ptr<const ReceivedBlock> passing;
    std::shared_ptr<const ReceivedBlock>& block = header.place == kPassingImage ? passing : in_[header.place];
    const size_t largest = header.place == kPassingImage ? kLargestMessage : kLargestKeptBlock;
    if (file) block = ReceivedBlock::map(std::move(file), header.imageSize, largest);
    if (block == nullptr || block->size() < header.imageSize) return false;
    frame.image = block->data();
    frame.block = block;
    return true;
}

std::shared_ptr<const void> Channel::holdReply(const ReceivedFrame& frame) {
    if (frame.block == nullptr || frame.header.place == kPassingImage) return frame.block;
    return std::make_shared<HeldReply>(frame.block, released_, uint32_t{1} << frame.header.place,
                                       frame.header.imageSize > kLargestLastingBlock);
}

void Channel::sendReleased() {
    FrameHeader header;
    header.kind = FrameKind::released;
    header.released = released_->exchange(0, std::memory_order_acquire);
    if (header.released == 0) return;
    Packet packet(&header, sizeof header);
    if (sendPacket(socket_.get(), packet) != Sent::done)
        released_->fetch_or(header.released, std::memory_order_release);
}

}  // namespace portability
