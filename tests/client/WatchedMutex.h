// WatchedMutex: the platform's lock, with a record of its use. BrokenMutex: a lock that is never acquired.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/synchronization/Mutex.h"

namespace dovrel::test {

/// The record of a WatchedMutex. Thread-safe.
class LockUse {
  public:
    void noteWait(int32_t timeoutMilliseconds);
    void noteUnlock() { ++unlocks_; }
    void forget();

    /// Returns the time-outs of all calls of lock, in order. Each is recorded before the lock is waited for.
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

/// A lock that the platform fails to acquire.
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
