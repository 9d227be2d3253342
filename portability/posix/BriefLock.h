// A lock that is held for a few instructions only. Private to the layer.
#pragma once

#include <sched.h>

#include <atomic>

namespace portability {

/// A spin lock for data that a thread uses for a few instructions only.
///
/// tryLock() can fail: after a fork, the thread that held the lock may not exist in the child process. A
/// caller that does not get the lock must do without the data.
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

/// Tries to take the lock. Releases it at the end of the scope if it was taken; `operator bool` says whether
/// it was.
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
