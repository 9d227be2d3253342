// Memory that can be shown to another process. Private to the layer.
//
// A block is a shared-memory file of fixed size, mapped here for writing. The file is sealed: it can neither
// shrink nor grow, so a receiver that has mapped it never faults. To make a block and to touch its pages for
// the first time costs far more than to copy the data; blocks are therefore used again.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// Blocks up to this size, in bytes, are kept for further use, by the process and by the peers that have
/// mapped them.
constexpr size_t kLargestKeptBlock = size_t{4} << 20;

class SharedBlock {
  public:
    /// A block of at least `size` bytes with any content, used before or new; null when the system has no
    /// more memory or descriptors. Whoever holds the last reference gives the block back. Any thread.
    static std::shared_ptr<SharedBlock> take(size_t size);

    SharedBlock(const SharedBlock&) = delete;
    SharedBlock& operator=(const SharedBlock&) = delete;
    ~SharedBlock();

    uint8_t* data() { return data_; }
    size_t capacity() const { return capacity_; }
    int descriptor() const { return file_.get(); }

    /// A number that no other block of this process has or had. Never 0.
    uint64_t id() const { return id_; }

    /// To be called when somebody may go on reading the content, nobody knows how long: the block is then
    /// freed instead of being used again.
    void forbidReuse() { reusable_.store(false, std::memory_order_relaxed); }

  private:
    friend class SharedBlockPool;

    SharedBlock(FileDescriptor file, uint8_t* data, size_t capacity);
    static SharedBlock* create(size_t size);
    static void giveBack(SharedBlock* block);

    FileDescriptor file_;
    uint8_t* data_;
    size_t capacity_;
    uint64_t id_;
    uint32_t owner_;  // the process's mark: a forked process sees the same memory, and must not write there
    std::atomic<bool> reusable_{true};
};

}  // namespace portability
