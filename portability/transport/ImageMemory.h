// Where the bytes of a message lie. Private to the layer.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "portability/transport/SharedBlock.h"

namespace portability {

/// The largest image, in bytes. Sender and receiver refuse larger ones.
constexpr size_t kLargestImage = size_t{1} << 30;

/// Images up to this size travel inside their frame; larger ones are kept in shared memory from the start, so
/// that sending does not copy them.
constexpr size_t kLargestInlineImage = size_t{16} << 10;

/// The bytes of one message, its image: a few in the object itself, more on the heap, many in a shared block;
/// or a view of bytes that belong to somebody else, which are copied before the first change. One thread at a
/// time.
class ImageMemory {
  public:
    ImageMemory() = default;

    /// A view of `size` bytes that stay in place while `keeper` is held; without a keeper, while this object
    /// is used.
    ImageMemory(const uint8_t* bytes, size_t size, std::shared_ptr<const void> keeper = nullptr);

    ImageMemory(const ImageMemory&) = delete;
    ImageMemory& operator=(const ImageMemory&) = delete;

    const uint8_t* data() const { return data_; }
    size_t size() const { return size_; }

    /// The block in which the image begins at the first byte; null when it lies elsewhere.
    const std::shared_ptr<SharedBlock>& block() const { return block_; }

    /// Adds `count` bytes at the end, to be filled by the caller; null, and nothing changed, when there is no
    /// memory or the image would become larger than kLargestImage.
    uint8_t* append(size_t count);

    /// Bytes that may be changed. Null, and nothing changed, when a copy is needed and there is no memory for
    /// one.
    uint8_t* writable();

    /// Takes `count` bytes out at `offset`. After writable() only.
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

/// A copy of `size` bytes (at most kLargestImage) in shared memory; null when there is none left.
std::shared_ptr<SharedBlock> copyToBlock(const uint8_t* bytes, size_t size);

}  // namespace portability
