// Memory that can be shared with another process. Private to the layer.
//
// A block is a shared-memory file of fixed size that is mapped for writing. The file is sealed: its size
// cannot change, so a receiver that has mapped it never faults. Creating a block and touching its pages for
// the first time costs far more than copying the data. Blocks are therefore reused.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// Blocks up to this size, in bytes, are kept for reuse, both by this process and by the peers that have
/// mapped them.
constexpr size_t kLargestKeptBlock = size_t{32} << 20;

/// Larger kept blocks are freed some time after the last of them was in use (LargeMemory.h).
constexpr size_t kLargestLastingBlock = size_t{4} << 20;

class SharedBlock {
  public:
    /// Returns a new or reused block of at least `size` bytes, with undefined content. Returns null if memory
    /// or file descriptors run out. Releasing the last reference returns the block to the pool. Thread-safe.
    static std::shared_ptr<SharedBlock> take(size_t size);

    /// Frees the unused blocks that are larger than kLargestLastingBlock, also in the memory of the peers that
    /// still have them mapped. Thread-safe.
    static void freeUnusedLargeBlocks();

    SharedBlock(const SharedBlock&) = delete;
    SharedBlock& operator=(const SharedBlock&) = delete;
    ~SharedBlock();

    uint8_t* data() { return data_; }

    /// Copies `count` bytes to the place at `offset`, all of which is inside the block. For the first content of a
    /// block that is too large to be kept this is faster than to write through data(): the system neither clears
    /// nor maps the pages.
    void store(size_t offset, const uint8_t* bytes, size_t count);
    size_t capacity() const { return capacity_; }
    int descriptor() const { return file_.get(); }

    /// Returns a number that is unique among all blocks that this process ever had. Never 0.
    uint64_t id() const { return id_; }

    /// Must be called if another process may continue to read the content for an unknown time. The block is
    /// then freed instead of being reused.
    void disableReuse() { reusable_.store(false, std::memory_order_relaxed); }

  private:
    friend class SharedBlockPool;

    SharedBlock(FileDescriptor file, uint8_t* data, size_t capacity);
    static SharedBlock* create(size_t size);
    static void returnToPool(SharedBlock* block);
    bool isKept() const { return capacity_ <= kLargestKeptBlock; }
    bool isLarge() const { return capacity_ > kLargestLastingBlock; }

    FileDescriptor file_;
    uint8_t* data_;
    size_t capacity_;
    uint64_t id_;
    uint32_t owner_;  // processMark() of the creator; a forked process must not write to its parent's block
    std::atomic<bool> reusable_{true};
};

}  // namespace portability
