#include "tests/client/WatchedMutex.h"

#include "platform/synchronization/SynchronizationFactory.h"

namespace dovrel::test {

void LockUse::noteWait(int32_t timeoutMilliseconds) {
    const std::lock_guard<std::mutex> guard(guard_);
    waits_.push_back(timeoutMilliseconds);
    if (onWait) onWait();
}

void LockUse::forget() {
    const std::lock_guard<std::mutex> guard(guard_);
    waits_.clear();
    unlocks_ = 0;
}

std::vector<int32_t> LockUse::waits() const {
    const std::lock_guard<std::mutex> guard(guard_);
    return waits_;
}

WatchedMutex::WatchedMutex(LockUse& use) : use_(use), real_(createMutex()) {}

bool WatchedMutex::lock(int32_t timeoutMilliseconds) {
    use_.noteWait(timeoutMilliseconds);
    return real_->lock(timeoutMilliseconds);
}

bool WatchedMutex::unlock() {
    use_.noteUnlock();
    return real_->unlock();
}

bool BrokenMutex::lock(int32_t timeoutMilliseconds) {
    use_.noteWait(timeoutMilliseconds);
    return false;
}

bool BrokenMutex::unlock() {
    use_.noteUnlock();
    return false;
}

}  // namespace dovrel::test
