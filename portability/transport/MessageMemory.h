// The memory of a message's bytes. Private to the layer.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "portability/transport/SharedBlock.h"

namespace portability {

/// The largest image, in bytes. Both sender and receiver reject larger ones.
constexpr size_t kLargestMessage = size_t{1} << 30;

/// Images up to this size, in bytes, are sent inside their frame. Larger images are in shared memory from the
/// start, so that sending does not copy them.
constexpr size_t kLargestInlineImage = size_t{16} << 10;

/// The bytes of one message (its image). Small images are stored in the object itself, larger ones on the
/// heap, and the largest in a shared block. The object can also be a view of memory that it does not own;
/// such bytes are copied before the first change. Not thread-safe: one thread at a time.
class MessageMemory {
  public:
    MessageMemory() = default;

    /// Makes a view of `size` bytes. They must stay valid while `keeper` is held, or, without a keeper, while
    /// this object is used.
    MessageMemory(const uint8_t* bytes, size_t size, std::shared_ptr<const void> keeper = nullptr);

    MessageMemory(const MessageMemory&) = delete;
    MessageMemory& operator=(const MessageMemory&) = delete;

    const uint8_t* data() const { return data_; }
    size_t size() const { return size_; }

    /// Returns the block that contains the image from its first byte on, or null if the image is not in
    /// a block.
    const std::shared_ptr<SharedBlock>& block() const { return block_; }

    /// Adds `count` bytes at the end and returns their address. The caller fills them. Returns null, and
    /// changes nothing, if memory runs out or the image would become larger than kLargestMessage.
    uint8_t* append(size_t count);

    /// Copies bytes to a place that append() has returned. Faster than to write there if the image is very large.
    void store(uint8_t* place, const uint8_t* bytes, size_t count);

    /// Returns the bytes, which the caller may change. Copies them first if this object does not own them.
    /// Returns null, and changes nothing, if there is no memory for the copy.
    uint8_t* writable();

    /// Removes `count` bytes at `offset`. The caller must have called writable() before.
    void erase(size_t offset, size_t count);

  private:
    bool own(size_t needed);
    bool isOwn() const;

    static constexpr size_t kSmall = 464;
    alignas(8) std::array<uint8_t, kSmall> small_;
    const uint8_t* data_ = small_.data();
    size_t size_ = 0;
    size_t capacity_ = kSmall;  // 0 for a view
    std::unique_ptr<uint8_t[]> heap_;
    std::shared_ptr<SharedBlock> block_;
    std::shared_ptr<const void> keeper_;
};

/// Copies `size` bytes (at most kLargestMessage) to shared memory. Returns null if shared memory runs out.
std::shared_ptr<SharedBlock> copyToBlock(const uint8_t* bytes, size_t size);

}  // namespace portability
