// Frames over a connected socket, the same for both ends. Private to the layer.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

#include "events/EventFrame.h"
#include "events/FileDescriptor.h"
#include "events/ImageMemory.h"
#include "events/ReceivedBlock.h"

namespace portability {

/// Room for one frame as it comes in. Can serve many channels of one thread.
struct FrameBuffer {
    alignas(8) std::array<uint8_t, kLargestFrame> bytes;
};

/// A frame that came in. The image is whole.
struct ReceivedFrame {
    FrameHeader header;
    const uint8_t* image = nullptr;     // in the buffer, or in the block
    std::shared_ptr<const void> block;  // holds an image in shared memory in place; else null
};

/// One end of a connection. Never blocks, never raises SIGPIPE. One thread at a time.
class EventChannel {
  public:
    enum class Sent {
        done,
        full,    ///< nothing was sent; to be tried again when the socket can be written to
        closed,  ///< nothing was sent; the other end is gone
        failed   ///< nothing was sent; no memory or no descriptors
    };
    enum class Received {
        frame,
        nothing,   ///< nothing is there
        closed,    ///< the other end is gone
        malformed  ///< the other end does not keep to the rules; the channel is of no further use
    };

    explicit EventChannel(FileDescriptor socket);
    EventChannel(const EventChannel&) = delete;
    EventChannel& operator=(const EventChannel&) = delete;
    ~EventChannel();

    int descriptor() const { return socket_.get(); }

    /// Sends one frame; place, size and the released slots are filled in here. `confirmed` tells whether the
    /// receiver will confirm the frame, so that its shared memory can be used again.
    Sent send(FrameHeader header, const ImageMemory& image, bool confirmed);

    /// Takes one frame from the socket. A frame whose image is in the buffer is valid until the buffer's next
    /// use.
    Received receive(FrameBuffer& buffer, ReceivedFrame& frame);

    /// To be called with the id of each reply that came in: the receiver of our requests is done with all up
    /// to this one.
    void confirmUpTo(uint64_t id);

    /// Holds the image of a reply, and tells the sender with the next request when it is let go.
    std::shared_ptr<const void> holdReply(const ReceivedFrame& frame);

  private:
    struct OutSlot {
        uint64_t known = 0;                  // id of the block that the receiver has in this slot
        std::shared_ptr<SharedBlock> inUse;  // set while the receiver may be reading it
        uint64_t frame = 0;                  // id of the last frame that used it
    };

    uint16_t findPlace(const SharedBlock& block) const;
    void noteSent(const FrameHeader& header, const std::shared_ptr<SharedBlock>& block);
    void release(uint32_t mask);
    bool findImage(ReceivedFrame& frame, FrameBuffer& buffer, FileDescriptor file);

    FileDescriptor socket_;
    std::array<OutSlot, kSlots> out_;
    std::array<std::shared_ptr<const ReceivedBlock>, kSlots> in_;
    // Outlives the channel: a reply may be let go after it, on another thread.
    std::shared_ptr<std::atomic<uint32_t>> released_;
};

}  // namespace portability
