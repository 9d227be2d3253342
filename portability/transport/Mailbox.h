// A faster way than the socket, for two processes that are both awake. Private to the layer.
//
// The mailbox is a small shared memory with room for one request and one reply. A side that polls the mailbox
// instead of sleeping sets a flag in the memory. The other side puts its frame into the mailbox only while
// that flag is set. Otherwise it uses the socket. A frame in the mailbox needs no system call.
//
// No frame is missed. After a side has cleared its flag, it checks the mailbox once more. After a side has
// posted a frame, it checks the other side's flag again. If that flag is now cleared, it sends a wake-up
// packet through the socket.
//
// A sender posts a request only after all its earlier requests have been replied to. Therefore frames never
// overtake each other, and the place in the mailbox is always free when it is needed. The receiver marks a
// request as taken before it handles it. If the receiver dies before that, the sender knows that the request
// was not handled.
//
// The other process can write anything into the memory at any time. Sizes are read once and checked; nothing
// else in the memory is trusted.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "portability/posix/FileDescriptor.h"
#include "portability/transport/Frame.h"

namespace portability {

/// A frame in the mailbox. Its bytes stay valid until the side that took it replies or takes the next frame.
struct Mail {
    const uint8_t* bytes = nullptr;
    size_t size = 0;  // 0: a notice that the next frame arrives through the socket
};

/// One side's access to a mailbox. Not thread-safe: one thread at a time.
class Mailbox {
  public:
    enum class Side { sender, receiver };

    /// Creates a mailbox for the sending side and sets `file` to the descriptor that the receiving side must
    /// open. Returns null if memory or file descriptors run out.
    static std::unique_ptr<Mailbox> create(FileDescriptor& file);

    /// Opens the mailbox on the receiving side. Returns null unless the file is a sealed shared-memory file
    /// of the right size.
    static std::unique_ptr<Mailbox> open(FileDescriptor file);

    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;
    ~Mailbox();

    /// Sets or clears the flag that says that this side polls the mailbox. After clearing it, the caller must
    /// call take() once more.
    void setLooking(bool looking);

    bool isOtherLooking() const;

    /// Tells the other side on which processor this side runs. Must be called before each frame that goes through
    /// the socket; the functions for frames in the mailbox do it themselves.
    void noteProcessor();

    /// Returns whether the other side ran on another processor when it last said so. It can report anything.
    bool isOtherElsewhere() const;

    /// Puts a frame into the mailbox: header and image, together at most kLargestFrame bytes. A null header
    /// posts the notice that the next frame arrives through the socket.
    void post(const FrameHeader* header, const uint8_t* image, size_t imageSize);

    /// Takes the frame that the other side has posted since the last call. Returns false if there is none;
    /// `mail` is then unchanged.
    bool take(Mail& mail);

    /// For the sender: returns whether the receiver has taken the last posted frame.
    bool wasTaken() const;

  private:
    // Written by one side and read by the other. The two halves are on different cache lines.
    struct alignas(64) Half {
        std::atomic<uint32_t> posted;    // number of frames that this side has posted
        std::atomic<uint32_t> size;      // size of the last posted frame in bytes
        std::atomic<uint32_t> taken;     // the other side's `posted` at the last take()
        std::atomic<uint32_t> looking;   // 1 while this side polls
        std::atomic<int32_t> processor;  // on which this side ran when it last polled or posted
        alignas(64) uint8_t frame[kLargestFrame];
    };
    struct Memory {
        Half halves[2];
    };
    static_assert(offsetof(Half, posted) == 0 && offsetof(Half, size) == 4 && offsetof(Half, taken) == 8 &&
                      offsetof(Half, looking) == 12 && offsetof(Half, processor) == 16 &&
                      offsetof(Half, frame) == 64 && sizeof(Memory) == 2 * (64 + kLargestFrame + 24),
                  "the same with 32 and with 64 bits");

    Mailbox(Memory* memory, Side side);
    static Memory* map(const FileDescriptor& file);

    Memory* memory_;
    Half& own_;
    Half& other_;
    uint32_t posted_ = 0;
    uint32_t taken_ = 0;
    bool isLooking_ = false;
};

}  // namespace portability
