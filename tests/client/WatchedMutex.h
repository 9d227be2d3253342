// WatchedMutex: the platform's lock, with a look at how it is used; or one that cannot be had.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/synchronization/Mutex.h"

namespace dovrel::test {

/// What a WatchedMutex saw. Any thread.
class LockUse {
  public:
    void noteWait(int32_t timeoutMilliseconds);
    void noteUnlock() { ++unlocks_; }
    void forget();

    /// The time-outs of all calls of lock, in their order; noted before the lock is waited for.
    std::vector<int32_t> waits() const;
    int unlocks() const { return unlocks_; }

    std::function<void()> onWait;  ///< called before the lock is waited for

  private:
    mutable std::mutex guard_;
    std::vector<int32_t> waits_;
    std::atomic<int> unlocks_{0};
};

class WatchedMutex : public Mutex {
  public:
    /// `use` must outlive the lock.
    explicit WatchedMutex(LockUse& use);

    bool wait(int32_t timeoutMilliseconds) override { return lock(timeoutMilliseconds); }
    bool lock(int32_t timeoutMilliseconds) override;
    bool unlock() override;

  private:
    LockUse& use_;
    std::unique_ptr<Mutex> real_;
};

/// A lock that the platform cannot give.
class BrokenMutex : public Mutex {
  public:
    explicit BrokenMutex(LockUse& use) : use_(use) {}

    bool wait(int32_t timeoutMilliseconds) override { return lock(timeoutMilliseconds); }
    bool lock(int32_t timeoutMilliseconds) override;
    bool unlock() override;

  private:
    LockUse& use_;
};

}  // namespace dovrel::test
