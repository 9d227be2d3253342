// The moment until which a call may wait. Private to the layer.
#pragma once

#include <time.h>

#include <chrono>

namespace portability {

/// A moment on the monotonic clock, or no limit.
class Deadline {
  public:
    using Clock = std::chrono::steady_clock;

    /// Returns the deadline `ticks` sixtieths of a second from now. kAEDefaultTimeout means 60 seconds,
    /// kNoTimeOut means no limit; other negative values mean now.
    static Deadline afterTicks(long ticks);
    static Deadline never() { return Deadline(); }

    bool passed() const { return limited_ && Clock::now() >= moment_; }

    /// Returns whether at least that time is left.
    bool hasAtLeast(Clock::duration time) const { return !limited_ || moment_ - Clock::now() >= time; }

    /// Writes the remaining time, which is never negative, to `left` and returns its address, as ppoll takes
    /// it. Returns null if there is no limit; `left` is then unchanged.
    const timespec* remaining(timespec& left) const;

    /// Returns the earlier of this deadline and the moment `delay` from now.
    Deadline orAfter(std::chrono::nanoseconds delay) const;

  private:
    bool limited_ = false;
    Clock::time_point moment_{};
};

/// Waits until `descriptor` has one of the poll(2) `events` or an error, or until the deadline has passed.
/// Signals do not interrupt the wait. The function does not report why it returned: the caller repeats its
/// own call and checks the deadline.
void waitForDescriptor(int descriptor, short events, const Deadline& deadline);

}  // namespace portability
