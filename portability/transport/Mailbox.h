// A shortcut beside a connection's socket, for two processes that both happen to be awake. Private to the
// layer.
//
// The mailbox is a small piece of shared memory with room for one request and one reply. A side that is
// waiting without having gone to sleep says so in the memory; then, and only then, the other side puts its
// frame there instead of sending it, and no system call is needed. Each side looks into the mailbox once more
// after it has said that it no longer looks, and whoever has put something there looks at that word
// afterwards and sends a wake-up through the socket if need be; so nothing is overlooked.
//
// A sender posts a request only when all its earlier ones were answered. Hence frames never overtake each
// other, and a place in the mailbox is always free when it is needed. The receiver marks a request as taken
// before it handles it. If it dies before that, the sender knows that the request was never seen.
//
// The other process can write anything at any moment. Sizes are read once and checked; nothing else in the
// memory is trusted.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "portability/posix/FileDescriptor.h"
#include "portability/transport/Frame.h"

namespace portability {

/// A frame that lies in the mailbox. Its bytes stay until the side that took it has answered, or asked for
/// more.
struct Mail {
    const uint8_t* bytes = nullptr;
    size_t size = 0;  // 0: only a hint that the frame comes through the socket
};

/// One side's view of a mailbox. One thread at a time.
class Mailbox {
  public:
    enum class Side { sender, receiver };

    /// Makes a mailbox for the sending side; null when the system has no memory or no descriptors left.
    /// `file` gets the descriptor that the receiving side is to open.
    static std::unique_ptr<Mailbox> create(FileDescriptor& file);

    /// Opens the mailbox at the receiving side. Null unless the file is a sealed shared-memory file of the
    /// right size.
    static std::unique_ptr<Mailbox> open(FileDescriptor file);

    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;
    ~Mailbox();

    /// Says whether this side looks from now on without being woken. After saying no, take() is to be called
    /// once more.
    void setLooking(bool looking);

    bool isOtherLooking() const;

    /// Puts a frame there, header and image (together at most kLargestFrame bytes). No header: the hint
    /// alone.
    void post(const FrameHeader* header, const uint8_t* image, size_t imageSize);

    /// What the other side has put there since the last call; false when there is nothing.
    bool take(Mail& mail);

    /// Sender: whether the receiver has taken what was posted last.
    bool wasTaken() const;

  private:
    // What one side writes and the other one reads, apart from the other side's because of the processor's
    // caches.
    struct alignas(64) Half {
        std::atomic<uint32_t> posted;   // how many frames this side has put there
        std::atomic<uint32_t> size;     // of the last one
        std::atomic<uint32_t> taken;    // the last number of the other side's that was taken
        std::atomic<uint32_t> looking;  // 1 while this side looks
        alignas(64) uint8_t frame[kLargestFrame];
    };
    struct Memory {
        Half halves[2];
    };
    static_assert(offsetof(Half, posted) == 0 && offsetof(Half, size) == 4 && offsetof(Half, taken) == 8 &&
                      offsetof(Half, looking) == 12 && offsetof(Half, frame) == 64 &&
                      sizeof(Memory) == 2 * (64 + kLargestFrame + 24),
                  "the same with 32 and with 64 bits");

    Mailbox(Memory* memory, Side side);
    static Memory* map(const FileDescriptor& file);

    Memory* memory_;
    Half& own_;
    Half& other_;
    uint32_t posted_ = 0;
    uint32_t taken_ = 0;
};

}  // namespace portability
