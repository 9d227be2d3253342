// The objects that the platform hands out by identifier, such that a stale identifier is recognised instead
// of followed. Private to the layer.
//
// An identifier holds the number of a slot and of the slot's use, so it never names the next object of the
// same slot. Slots stay where they are until the process ends. A thread that waited inside an object can
// therefore still use the slot's mutex after the object was deleted, and no call needs a lock for the whole
// pool.
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
        uintptr_t use = 0;  // how often the slot was given to an object, as far as an identifier can hold it
        uintptr_t id = 0;   // 0 while there is no object
        Object object;
        uintptr_t number = 0;
        Slot* nextFree = nullptr;
    };

  public:
    /// An object that exists, or none. Whoever holds it has the slot's mutex.
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

    /// Nobody may use the pool any more.
    ~HandlePool() {
        for (size_t i = 0; i < chunkCount_; ++i)
            delete[] chunks_[i].load();
    }

    /// The identifier of a new object, 0 when there is no room for one.
    uintptr_t create(const Object& object) noexcept {
        Slot* slot = takeFreeSlot();
        if (slot == nullptr) return 0;
        std::lock_guard<std::mutex> lock(slot->mutex);
        slot->use = slot->use % kMostUses + 1;
        slot->id = slot->use << kNumberBits | slot->number;
        slot->object = object;
        return slot->id;
    }

    /// The object of that identifier; none when it never existed or does not exist any more.
    Locked find(uintptr_t id) noexcept {
        const uintptr_t number = id & kLargestNumber;
        Slot* chunk = chunks_[number / kSlotsOfChunk].load(std::memory_order_acquire);
        if (id == 0 || chunk == nullptr) return {};
        Slot& slot = chunk[number % kSlotsOfChunk];
        std::unique_lock<std::mutex> lock(slot.mutex);
        if (slot.id != id) return {};
        return {slot, std::move(lock)};
    }

    /// Ends the object. Nobody may wait inside it any more.
    void remove(Locked locked) noexcept {
        Slot& slot = *locked.slot_;
        slot.id = 0;
        slot.object = Object();
        locked.lock_.unlock();
        std::lock_guard<std::mutex> lock(freeMutex_);
        giveBack(slot);
    }

  private:
    static constexpr size_t kSlotsOfChunk = 256;
    static constexpr size_t kMostChunks = 4096;
    static constexpr unsigned kNumberBits = 20;
    static constexpr uintptr_t kLargestNumber = (uintptr_t{1} << kNumberBits) - 1;
    static constexpr uintptr_t kMostUses = UINTPTR_MAX >> kNumberBits;
    static_assert(kSlotsOfChunk * kMostChunks == kLargestNumber + 1,
                  "every number names a place in the chunks");

    // The slot that was given back longest ago comes first, so that a slot's uses repeat as late as possible.
    Slot* takeFreeSlot() noexcept {
        std::lock_guard<std::mutex> lock(freeMutex_);
        if (firstFree_ == nullptr) addChunk();
        Slot* slot = firstFree_;
        if (slot != nullptr) firstFree_ = std::exchange(slot->nextFree, nullptr);
        return slot;
    }

    void giveBack(Slot& slot) noexcept {
        (firstFree_ == nullptr ? firstFree_ : lastFree_->nextFree) = &slot;
        lastFree_ = &slot;
    }

    void addChunk() noexcept {
        if (chunkCount_ == kMostChunks) return;
        Slot* chunk = new (std::nothrow) Slot[kSlotsOfChunk];
        if (chunk == nullptr) return;
        for (size_t i = 0; i < kSlotsOfChunk; ++i) {
            chunk[i].number = chunkCount_ * kSlotsOfChunk + i;
            giveBack(chunk[i]);
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
