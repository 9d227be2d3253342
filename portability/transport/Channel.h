// Frames over a connection, the same for both ends. Private to the layer.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

#include "portability/posix/FileDescriptor.h"
#include "portability/transport/Frame.h"
#include "portability/transport/ImageMemory.h"
#include "portability/transport/Mailbox.h"
#include "portability/transport/ReceivedBlock.h"

namespace portability {

/// Room for one frame as it comes in. Can serve many channels of one thread.
struct FrameBuffer {
    alignas(8) std::array<uint8_t, kLargestFrame> bytes;
};

/// A request or a reply that came in. Nothing is known of the image but its size.
struct ReceivedFrame {
    FrameHeader header;
    const uint8_t* image = nullptr;     // in the buffer, in the mailbox or in the block
    std::shared_ptr<const void> block;  // holds an image in a shared block in place; else null
};

/// One end of a connection: a socket, the slots for large images in both directions, and perhaps a mailbox.
/// Never blocks, never raises SIGPIPE. One thread at a time.
class Channel {
  public:
    enum class Sent {
        done,
        full,    ///< nothing was sent; to be tried again when the socket can be written to
        closed,  ///< nothing was sent; the other end is gone
        failed   ///< nothing was sent; no memory or no descriptors
    };
    enum class Received {
        frame,
        nothing,    ///< nothing is there
        closed,     ///< the other end is gone
        malformed,  ///< the other end does not keep to the rules; the channel is of no further use
        elsewhere   ///< of look() only: a frame comes through the socket
    };

    explicit Channel(FileDescriptor socket);
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;
    ~Channel();

    int descriptor() const { return socket_.get(); }

    /// Sends one frame through the socket; place, size and the released slots are filled in here. `confirmed`
    /// tells whether the receiver will confirm the frame, so that its shared memory can be used again.
    Sent send(const FrameHeader& header, const ImageMemory& image, bool confirmed);

    /// Sends a request that will be answered, while all earlier ones have been: through the mailbox if the
    /// receiver looks there, and `posted` tells whether it does. This side then looks, too.
    Sent sendQuick(const FrameHeader& header, const ImageMemory& image, bool& posted);

    /// Sends the reply to the frame that came in last, the way that one took if the other end still looks
    /// there.
    Sent sendReply(const FrameHeader& header, const ImageMemory& image);

    /// Gives the other end a mailbox, if there is none yet. Does nothing when that is not possible.
    void offerMailbox();

    bool hasMailbox() const { return mailbox_ != nullptr; }

    /// Looks into the mailbox only, which costs no system call.
    Received look(ReceivedFrame& frame);

    /// Says that this side looks from now on without being woken, or no longer; receive() is to be called
    /// then.
    void setLooking(bool looking);

    /// Whether the receiver has taken the request that was posted last.
    bool wasTaken() const;

    /// Takes one frame from the mailbox or from the socket. What is in the buffer is valid until the buffer's
    /// next use; what is in the mailbox, until the next frame is sent.
    Received receive(FrameBuffer& buffer, ReceivedFrame& frame);

    /// To be called with the id of each reply that came in: the receiver of our requests is done with all up
    /// to this one.
    void confirmUpTo(uint64_t id);

    /// Holds the image of a reply, and tells the sender with the next request when it is let go. Null for an
    /// image that is not in a block.
    std::shared_ptr<const void> holdReply(const ReceivedFrame& frame);

  private:
    struct OutSlot {
        uint64_t known = 0;                  // id of the block that the receiver has in this slot
        std::shared_ptr<SharedBlock> inUse;  // set while the receiver may be reading it
        uint64_t frame = 0;                  // id of the last frame that used it
    };

    // A frame that is ready to go.
    struct Outgoing {
        FrameHeader header;
        const ImageMemory& image;
        std::shared_ptr<SharedBlock> block;  // null: the image goes along
    };

    bool prepare(Outgoing& frame, bool confirmed);
    Sent sendPrepared(Outgoing& frame);
    void post(Outgoing& frame);
    uint16_t findPlace(const SharedBlock& block) const;
    void noteSent(const Outgoing& frame);
    void release(uint32_t mask);
    Received receivePacket(FrameBuffer& buffer, ReceivedFrame& frame);
    Received interpret(const uint8_t* bytes, size_t size, FileDescriptor file, ReceivedFrame& frame);
    bool findImage(ReceivedFrame& frame, const uint8_t* behindHeader, FileDescriptor file);
    bool openMailbox(FileDescriptor file);

    FileDescriptor socket_;
    std::array<OutSlot, kSlots> out_;
    std::array<std::shared_ptr<const ReceivedBlock>, kSlots> in_;
    std::unique_ptr<Mailbox> mailbox_;
    bool mailboxOffered_ = false;
    bool cameByMailbox_ = false;  // the last frame
    // Outlives the channel: a reply may be let go after it, on another thread.
    std::shared_ptr<std::atomic<uint32_t>> released_;
};

}  // namespace portability
