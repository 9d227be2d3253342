// A pool of objects that callers know by identifier. A stale identifier is recognised and never dereferenced.
// Private to the layer.
//
// An identifier contains the slot's number and the number of times that the slot was used. So it does not
// refer to the next object in the same slot; identifiers repeat only after a great many uses. Slots stay at
// their addresses until the process exits. A thread that waited in an object can therefore still use the
// slot's mutex after the object was deleted. Only creating and removing objects lock the whole pool.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <new>
#include <utility>

namespace portability {

template <class Object>
class HandlePool {
    struct Slot {
        std::mutex mutex;
        uintptr_t use = 0;  // number of uses, modulo the largest number that fits into an identifier
        uintptr_t id = 0;   // 0 while the slot is free
        Object object;
        uintptr_t number = 0;
        Slot* nextFree = nullptr;
    };

  public:
    /// An object whose slot's mutex is locked, or no object.
    class Locked {
      public:
        Locked() = default;
        Locked(Slot& slot, std::unique_lock<std::mutex> lock) : slot_(&slot), lock_(std::move(lock)) {}

        explicit operator bool() const { return slot_ != nullptr; }
        Object* operator->() const { return &slot_->object; }
        std::unique_lock<std::mutex>& lock() { return lock_; }

      private:
        friend class HandlePool;
        Slot* slot_ = nullptr;
        std::unique_lock<std::mutex> lock_;
    };

    HandlePool() = default;
    HandlePool(const HandlePool&) = delete;
    HandlePool& operator=(const HandlePool&) = delete;

    /// No thread may use the pool any more.
    ~HandlePool() {
        for (size_t i = 0; i < chunkCount_; ++i)
            delete[] chunks_[i].load();
    }

    /// Creates an object and returns its identifier. Returns 0 if memory runs out or the pool is full.
    uintptr_t create(const Object& object) noexcept {
        Slot* slot = takeFreeSlot();
        if (slot == nullptr) return 0;
        std::lock_guard<std::mutex> lock(slot->mutex);
        slot->use = slot->use % kMostUses + 1;
        slot->id = slot->use << kNumberBits | slot->number;
        slot->object = object;
        return slot->id;
    }

    /// Finds and locks the object with this identifier. Returns no object if it never existed or was removed.
    Locked find(uintptr_t id) noexcept {
        const uintptr_t number = id & kLargestNumber;
        Slot* chunk = chunks_[number / kSlotsOfChunk].load(std::memory_order_acquire);
        if (id == 0 || chunk == nullptr) return {};
        Slot& slot = chunk[number % kSlotsOfChunk];
        std::unique_lock<std::mutex> lock(slot.mutex);
        if (slot.id != id) return {};
        return {slot, std::move(lock)};
    }

    /// Removes the object. No thread may be waiting in it any more.
    void remove(Locked locked) noexcept {
        Slot& slot = *locked.slot_;
        slot.id = 0;
        slot.object = Object();
        locked.lock_.unlock();
        std::lock_guard<std::mutex> lock(freeMutex_);
        returnToPool(slot);
    }

  private:
    static constexpr size_t kSlotsOfChunk = 256;
    static constexpr size_t kMostChunks = 4096;
    static constexpr unsigned kNumberBits = 20;
    static constexpr uintptr_t kLargestNumber = (uintptr_t{1} << kNumberBits) - 1;
    static constexpr uintptr_t kMostUses = UINTPTR_MAX >> kNumberBits;
    static_assert(kSlotsOfChunk * kMostChunks == kLargestNumber + 1,
                  "every number names a place in the chunks");

    // Takes the slot that has been free for the longest time, so that identifiers repeat as late as possible.
    Slot* takeFreeSlot() noexcept {
        std::lock_guard<std::mutex> lock(freeMutex_);
        if (firstFree_ == nullptr) addChunk();
        Slot* slot = firstFree_;
        if (slot != nullptr) firstFree_ = std::exchange(slot->nextFree, nullptr);
        return slot;
    }

    void returnToPool(Slot& slot) noexcept {
        (firstFree_ == nullptr ? firstFree_ : lastFree_->nextFree) = &slot;
        lastFree_ = &slot;
    }

    void addChunk() noexcept {
        if (chunkCount_ == kMostChunks) return;
        Slot* chunk = new (std::nothrow) Slot[kSlotsOfChunk];
        if (chunk == nullptr) return;
        for (size_t i = 0; i < kSlotsOfChunk; ++i) {
            chunk[i].number = chunkCount_ * kSlotsOfChunk + i;
            returnToPool(chunk[i]);
        }
        chunks_[chunkCount_++].store(chunk, std::memory_order_release);
    }

    std::array<std::atomic<Slot*>, kMostChunks> chunks_{};
    std::mutex freeMutex_;
    Slot* firstFree_ = nullptr;
    Slot* lastFree_ = nullptr;
    size_t chunkCount_ = 0;
};

}  // namespace portability
