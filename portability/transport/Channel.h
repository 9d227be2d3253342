// Sends and receives frames over a connection. Both ends use this class. Private to the layer.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <utility>

#include "portability/posix/FileDescriptor.h"
#include "portability/transport/DescriptorCloser.h"
#include "portability/transport/Frame.h"
#include "portability/transport/Mailbox.h"
#include "portability/transport/MessageMemory.h"
#include "portability/transport/Packet.h"
#include "portability/transport/ReceivedBlock.h"
#include "portability/transport/Spin.h"

namespace portability {

/// A buffer for one received frame. The channels of one thread can share it.
struct FrameBuffer {
    alignas(8) std::array<uint8_t, kLargestFrame> bytes;
};

/// A received request or reply. Only the size of the image has been checked, not its content.
struct ReceivedFrame {
    FrameHeader header;
    const uint8_t* image = nullptr;     // in the FrameBuffer, the mailbox or the block
    std::shared_ptr<const void> block;  // keeps an image in shared memory mapped; otherwise null
};

/// One end of a connection: a socket, the slots for large images in both directions, and optionally a
/// mailbox. It never raises SIGPIPE, and blocks only in receiveWaiting(). Not thread-safe: one thread at a time.
class Channel {
  public:
    enum class Sent {
        done,
        full,    ///< nothing was sent; try again when the socket is writable
        closed,  ///< nothing was sent; the peer has closed the connection
        failed   ///< nothing was sent; memory or file descriptors have run out
    };
    enum class Received {
        frame,
        nothing,    ///< no frame has arrived
        closed,     ///< the peer has closed the connection
        malformed,  ///< the peer violated the protocol; the channel cannot be used any more
        elsewhere   ///< from look() only: the frame arrives through the socket
    };

    /// `closer` closes the descriptors that the peer sends without need. It must outlive the channel. If it is
    /// null, the channel closes them itself.
    explicit Channel(FileDescriptor socket, DescriptorCloser* closer = nullptr);
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;
    ~Channel();

    int descriptor() const { return socket_.get(); }

    /// Gives up the socket. Only the destructor may follow.
    FileDescriptor releaseSocket() { return std::move(socket_); }

    /// Sends one frame through the socket. Fills in the header's fields for the place, the image size and the
    /// released slots. `confirmed` says whether the receiver will confirm the frame. If it will, the frame's
    /// shared memory can be reused after the confirmation.
    Sent send(const FrameHeader& header, const MessageMemory& image, bool confirmed);

    /// Sends a request that the receiver will reply to. All earlier requests must have been replied to. If
    /// the receiver is polling the mailbox, the request goes through the mailbox, `posted` becomes true, and
    /// this side also polls the mailbox from then on. Otherwise the request goes through the socket and
    /// `posted` becomes false.
    Sent sendQuick(const FrameHeader& header, const MessageMemory& image, bool& posted);

    /// Sends the reply to the frame that was received last. It uses the mailbox if the request came through
    /// it and the peer is still polling it, and the socket otherwise.
    Sent sendReply(const FrameHeader& header, const MessageMemory& image);

    /// Creates a mailbox and sends it to the peer. Only the first call has an effect. Failures are ignored;
    /// the connection then continues without a mailbox.
    void offerMailbox();

    bool hasMailbox() const { return mailbox_ != nullptr; }

    /// Returns where the peer runs, as far as the mailbox shows it.
    Spin::Peer peerPlace() const {
        const bool isElsewhere = mailbox_ != nullptr && mailbox_->isOtherElsewhere();
        return isElsewhere ? Spin::Peer::elsewhere : Spin::Peer::here;
    }

    /// Checks only the mailbox, which needs no system call.
    Received look(ReceivedFrame& frame);

    /// Tells the peer whether this side is polling the mailbox, so that the peer need not wake it. After
    /// `setLooking(false)` the caller must call receive() once, because the peer may have posted a frame
    /// before it saw the change.
    void setLooking(bool looking);

    /// Returns whether the receiver has taken the request that was posted to the mailbox last. Also true if
    /// there is no mailbox.
    bool wasTaken() const;

    /// Receives one frame from the mailbox or the socket. A frame in the buffer is valid until the buffer is
    /// used again. A frame in the mailbox is valid until this side sends its next frame.
    Received receive(FrameBuffer& buffer, ReceivedFrame& frame);

    /// Does the same, but if nothing has arrived, waits at most for the time of limitWaiting() and then returns
    /// Received::nothing. Also returns that after a signal. Needs only one system call if a packet arrives.
    Received receiveWaiting(FrameBuffer& buffer, ReceivedFrame& frame);

    /// Must be called before receiveWaiting(). Returns false if the system cannot limit the time; receiveWaiting()
    /// must not be called then.
    bool limitWaiting();
    static constexpr std::chrono::seconds kLongestWait{1};

    /// Releases the shared memory of all requests up to this id. The caller calls it with the id of each
    /// reply that it receives: a reply shows that the receiver has finished with its request and all
    /// earlier ones.
    void confirmUpTo(uint64_t id);

    /// Returns an owner that keeps the reply's image mapped. When the last copy of the owner is released, the
    /// next request tells the sender of the reply that its slot is free. Returns null if the image is not in
    /// a block.
    std::shared_ptr<const void> holdReply(const ReceivedFrame& frame);

    /// Tells the sender of the replies which of its slots are free, if there is no request that could do so.
    /// If the socket's buffer is full, the next request does.
    void sendReleased();

  private:
    struct OutSlot {
        uint64_t known = 0;                  // id of the block that the receiver keeps in this slot
        std::shared_ptr<SharedBlock> inUse;  // the slot's block, while the receiver may be reading it
        uint64_t frame = 0;                  // id of the last frame that used the slot
    };

    // A frame that is ready to be sent.
    struct Outgoing {
        FrameHeader header;
        const MessageMemory& image;
        std::shared_ptr<SharedBlock> block;  // null: the image is in the packet
    };

    bool prepare(Outgoing& frame, bool confirmed);
    Sent sendPrepared(Outgoing& frame);
    void post(Outgoing& frame);
    uint16_t findPlace(const SharedBlock& block) const;
    void noteSent(const Outgoing& frame);
    void release(uint32_t mask);
    void refuse(FileDescriptor descriptor);
    Received receiveFrame(FrameBuffer& buffer, ReceivedFrame& frame, Packet::Wait wait);
    Received receivePacket(FrameBuffer& buffer, ReceivedFrame& frame, Packet::Wait wait);
    Received interpret(const uint8_t* bytes, size_t size, FileDescriptor file, ReceivedFrame& frame);
    bool findImage(ReceivedFrame& frame, const uint8_t* behindHeader, FileDescriptor file);
    bool openMailbox(FileDescriptor file);

    FileDescriptor socket_;
    DescriptorCloser* const closer_;
    std::array<OutSlot, kSlots> out_;
    std::array<std::shared_ptr<const ReceivedBlock>, kSlots> in_;
    std::unique_ptr<Mailbox> mailbox_;
    bool mailboxOffered_ = false;
    bool cameByMailbox_ = false;  // whether the last frame came through the mailbox
    bool receivesRequests_ = false;
    bool limitsWaiting_ = false;
    // Shared, because a reply may be released after the channel is destroyed, and on another thread.
    std::shared_ptr<std::atomic<uint32_t>> released_;
};

}  // namespace portability
