// A lock for a few instructions. Private to the layer.
#pragma once

#include <sched.h>

#include <atomic>

namespace portability {

/// Guards data that are held for a few instructions only. Locking can fail: after a fork the thread that held
/// the lock may not exist any more. Whoever does not get the lock does without the data.
class BriefLock {
  public:
    bool tryLock() {
        for (int attempt = 0; attempt < kAttempts; ++attempt) {
            if (!taken_.test_and_set(std::memory_order_acquire)) return true;
            sched_yield();
        }
        return false;
    }
    void unlock() { taken_.clear(std::memory_order_release); }

  private:
    static constexpr int kAttempts = 1000;
    std::atomic_flag taken_ = ATOMIC_FLAG_INIT;
};

/// Tries to take the lock for a scope.
class BriefLockScope {
  public:
    explicit BriefLockScope(BriefLock& lock) : lock_(lock), held_(lock.tryLock()) {}
    BriefLockScope(const BriefLockScope&) = delete;
    BriefLockScope& operator=(const BriefLockScope&) = delete;
    ~BriefLockScope() {
        if (held_) lock_.unlock();
    }
    explicit operator bool() const { return held_; }

  private:
    BriefLock& lock_;
    const bool held_;
};

}  // namespace portability
