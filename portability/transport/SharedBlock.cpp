#include "portability/transport/SharedBlock.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

#include "portability/posix/BriefLock.h"
#include "portability/posix/FileSizeSignalBlock.h"
#include "portability/posix/ProcessMark.h"
#include "portability/transport/LargeMemory.h"
#include "portability/transport/SharedFile.h"

namespace portability {

namespace {

constexpr size_t kSmallestGranule = size_t{64} << 10;

// Rounds up to steps of about an eighth, so that images that grow a little can reuse the same block. A block that
// is not kept gets no such spare room.
size_t roundedUp(size_t size) {
    size_t granule = kSmallestGranule;
    while (size <= kLargestKeptBlock && granule * 16 <= size)
        granule *= 2;
    return (size + granule - 1) / granule * granule;
}

}  // namespace

// The unused blocks, in the order in which they were returned.
class SharedBlockPool {
  public:
    ~SharedBlockPool() {
        BriefLockScope held(lock_);
        closed_ = true;
        if (held) clear();
    }

    SharedBlock* take(size_t size) {
        BriefLockScope held(lock_);
        if (!held) return nullptr;
        forgetParents();
        for (size_t i = count_; i-- > 0;) {
            if (!fits(*free_[i], size)) continue;
            SharedBlock* block = free_[i];
            std::copy(free_.begin() + i + 1, free_.begin() + count_, free_.begin() + i);
            --count_;
            return block;
        }
        return nullptr;
    }

    // Adds a block. Returns the block that the caller must delete because there is no room for it, or null.
    SharedBlock* put(SharedBlock* block) {
        BriefLockScope held(lock_);
        if (!held || closed_) return block;
        forgetParents();
        SharedBlock* oldest = nullptr;
        if (count_ == free_.size()) {
            oldest = free_[0];
            std::copy(free_.begin() + 1, free_.end(), free_.begin());
            --count_;
        }
        free_[count_++] = block;
        return oldest;
    }

    // Deletes the large blocks.
    void clearLarge() {
        for (SharedBlock* block = takeLarge(); block != nullptr; block = takeLarge())
            delete block;
    }

  private:
    // Removes a large block. Returns null if there is none.
    SharedBlock* takeLarge() {
        BriefLockScope held(lock_);
        if (!held || closed_) return nullptr;
        forgetParents();
        const auto end = free_.begin() + count_;
        const auto found =
            std::find_if(free_.begin(), end, [](const SharedBlock* block) { return block->isLarge(); });
        if (found == end) return nullptr;
        SharedBlock* const block = *found;
        std::copy(found + 1, end, found);
        --count_;
        return block;
    }

    static bool fits(const SharedBlock& block, size_t size) {
        return block.capacity() >= size && block.capacity() / 4 <= std::max(size, kSmallestGranule);
    }

    // Drops the blocks of the parent process after a fork, because the parent continues to write into them.
    void forgetParents() {
        if (owner_ == processMark()) return;
        clear();
        owner_ = processMark();
    }

    void clear() {
        while (count_ > 0)
            delete free_[--count_];
    }

    BriefLock lock_;
    std::array<SharedBlock*, 4> free_{};
    size_t count_ = 0;
    uint32_t owner_ = 0;
    bool closed_ = false;
};

namespace {

SharedBlockPool pool;

}  // namespace

SharedBlock::SharedBlock(FileDescriptor file, uint8_t* data, size_t capacity)
    : file_(std::move(file)), data_(data), capacity_(capacity), owner_(processMark()) {
    static std::atomic<uint64_t> lastId{0};
    id_ = ++lastId;
}

SharedBlock::~SharedBlock() {
    munmap(data_, capacity_);
    // The peers keep blocks that they have received mapped until they receive others.
    const bool isMine = owner_ == processMark() && reusable_.load(std::memory_order_relaxed);
    if (isMine && isLarge())
        fallocate(file_.get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(capacity_));
}

SharedBlock* SharedBlock::create(size_t size) {
    const size_t capacity = roundedUp(size);
    FileDescriptor file = makeSharedFile(capacity);
    if (!file) return nullptr;
    // The pages of a block that is not kept are written by store(), which does not need them mapped.
    const int populate = capacity <= kLargestKeptBlock ? MAP_POPULATE : 0;
    void* data = mmap(nullptr, capacity, PROT_READ | PROT_WRITE, MAP_SHARED | populate, file.get(), 0);
    if (data == MAP_FAILED) return nullptr;
    auto* block = new (std::nothrow) SharedBlock(std::move(file), static_cast<uint8_t*>(data), capacity);
    if (block == nullptr) munmap(data, capacity);
    return block;
}

std::shared_ptr<SharedBlock> SharedBlock::take(size_t size) {
    SharedBlock* block = pool.take(size);
    if (block == nullptr) {
        // So that messages of growing sizes do not add up.
        if (size > kLargestLastingBlock) pool.clearLarge();
        block = create(size);
    }
    if (block == nullptr) return nullptr;
    // The allocation of the reference count can fail. In that case the constructor has already
    // called returnToPool.
    try {
        return std::shared_ptr<SharedBlock>(block, &SharedBlock::returnToPool);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void SharedBlock::returnToPool(SharedBlock* block) {
    const bool keep =
        block->reusable_.load(std::memory_order_relaxed) && block->isKept() && block->owner_ == processMark();
    const bool isLarge = block->isLarge();
    delete (keep ? pool.put(block) : block);
    if (keep && isLarge) freeLargeMemoryLater();
}

void SharedBlock::store(size_t offset, const uint8_t* bytes, size_t count) {
    size_t stored = 0;
    if (!isKept()) {
        const FileSizeSignalBlock noSignal;
        while (stored < count) {
            const ssize_t written =
                pwrite(file_.get(), bytes + stored, count - stored, static_cast<off_t>(offset + stored));
            if (written <= 0) break;
            stored += static_cast<size_t>(written);
        }
    }
    if (stored < count) std::memcpy(data_ + offset + stored, bytes + stored, count - stored);
}

void SharedBlock::freeUnusedLargeBlocks() {
    pool.clearLarge();
}

}  // namespace portability
