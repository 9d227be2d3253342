#include "portability/transport/MessageMemory.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace portability {

MessageMemory::MessageMemory(const uint8_t* bytes, size_t size, std::shared_ptr<const void> keeper)
    : data_(bytes), size_(size), capacity_(0), keeper_(std::move(keeper)) {}

// Returns whether the image may be changed in place. If a connection still refers to the block, a receiver
// may be reading it.
bool MessageMemory::isOwn() const {
    return capacity_ != 0 && (block_ == nullptr || block_.use_count() == 1);
}

uint8_t* MessageMemory::writable() {
    if (!isOwn() && !own(size_)) return nullptr;
    return const_cast<uint8_t*>(data_);
}

uint8_t* MessageMemory::append(size_t count) {
    if (count > kLargestMessage - size_) return nullptr;
    if ((!isOwn() || capacity_ - size_ < count) && !own(size_ + count)) return nullptr;
    uint8_t* place = const_cast<uint8_t*>(data_) + size_;
    size_ += count;
    return place;
}

void MessageMemory::store(uint8_t* place, const uint8_t* bytes, size_t count) {
    if (block_ != nullptr) {
        block_->store(static_cast<size_t>(place - data_), bytes, count);
    } else if (count != 0) {
        std::memcpy(place, bytes, count);
    }
}

void MessageMemory::erase(size_t offset, size_t count) {
    uint8_t* place = const_cast<uint8_t*>(data_) + offset;
    std::memmove(place, place + count, size_ - offset - count);
    size_ -= count;
}

// Moves the image to memory that this object owns, with room for at least `needed` bytes. Returns false if
// memory runs out.
bool MessageMemory::own(size_t needed) {
    std::unique_ptr<uint8_t[]> heap;
    std::shared_ptr<SharedBlock> block;
    uint8_t* place = small_.data();
    size_t capacity = kSmall;
    if (needed > kLargestInlineImage) {
        // An image that has outgrown its block is likely to grow in many small steps. The spare room keeps
        // the number of copies low.
        block =
            SharedBlock::take(block_ == nullptr ? needed : std::min(needed + needed / 2, kLargestMessage));
        if (block == nullptr) return false;
        place = block->data();
        capacity = block->capacity();
    } else if (needed > kSmall || data_ == small_.data()) {
        capacity = std::min(kLargestInlineImage, std::max(needed, 2 * kSmall) * 2);
        heap.reset(new (std::nothrow) uint8_t[capacity]);
        if (heap == nullptr) return false;
        place = heap.get();
    }
    if (size_ != 0) std::memcpy(place, data_, size_);
    data_ = place;
    capacity_ = capacity;
    heap_ = std::move(heap);
    block_ = std::move(block);
    keeper_.reset();
    return true;
}

std::shared_ptr<SharedBlock> copyToBlock(const uint8_t* bytes, size_t size) {
    std::shared_ptr<SharedBlock> block = SharedBlock::take(size);
    if (block != nullptr) block->store(0, bytes, size);
    return block;
}

}  // namespace portability
