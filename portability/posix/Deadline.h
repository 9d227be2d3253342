// How long a send may take. Private to the layer.
#pragma once

#include <time.h>

#include <chrono>

namespace portability {

/// A moment on the monotonic clock, or none at all.
class Deadline {
  public:
    using Clock = std::chrono::steady_clock;

    /// `ticks` sixtieths of a second from now, or what kAEDefaultTimeout and kNoTimeOut stand for.
    static Deadline afterTicks(long ticks);
    static Deadline never() { return Deadline(); }

    bool passed() const { return limited_ && Clock::now() >= moment_; }

    /// The time that is left (never negative) in `left`; null when there is no limit. In the form ppoll
    /// takes.
    const timespec* remaining(timespec& left) const;

    /// Whichever comes first.
    Deadline orAfter(std::chrono::nanoseconds delay) const;

  private:
    bool limited_ = false;
    Clock::time_point moment_{};
};

/// Waits until `descriptor` has one of the poll(2) `events` or an error, or the deadline has passed. Signals
/// do not end the wait. The result says nothing about which it was: the caller tries its call again and looks
/// at the clock.
void waitForDescriptor(int descriptor, short events, const Deadline& deadline);

}  // namespace portability
