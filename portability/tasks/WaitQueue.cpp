#include "portability/tasks/WaitQueue.h"

#include <chrono>

namespace portability {

namespace {

using Clock = std::chrono::steady_clock;

Clock::time_point toDeadline(Duration timeout) {
    if (timeout > 0) return Clock::now() + std::chrono::milliseconds(timeout);
    return Clock::now() + std::chrono::microseconds(-static_cast<SInt64>(timeout));
}

}  // namespace

OSStatus WaitQueue::wait(std::unique_lock<std::mutex>& lock, Duration timeout, Waiter& waiter) {
    if (timeout == kDurationImmediate) return kMPTimeoutErr;
    append(waiter);
    const auto isReleased = [&waiter] { return waiter.released; };
    if (timeout == kDurationForever) {
        waiter.wakeUp.wait(lock, isReleased);
    } else if (!waiter.wakeUp.wait_until(lock, toDeadline(timeout), isReleased)) {
        remove(waiter);
    }
    return waiter.outcome;
}

void WaitQueue::releaseOldest(OSStatus outcome) {
    Waiter& waiter = *first_;
    first_ = waiter.next;
    waiter.outcome = outcome;
    waiter.released = true;
    // Called before the mutex is unlocked: after that the waiter may return and destroy the
    // condition variable.
    waiter.wakeUp.notify_one();
}

void WaitQueue::releaseAll(OSStatus outcome) {
    while (first_ != nullptr)
        releaseOldest(outcome);
}

void WaitQueue::append(Waiter& waiter) {
    Waiter** end = &first_;
    while (*end != nullptr)
        end = &(*end)->next;
    *end = &waiter;
}

void WaitQueue::remove(Waiter& waiter) {
    Waiter** place = &first_;
    while (*place != &waiter)
        place = &(*place)->next;
    *place = waiter.next;
}

}  // namespace portability
