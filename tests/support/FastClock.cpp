#include "tests/support/FastClock.h"

#include <poll.h>
#include <time.h>

#include <atomic>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;

std::atomic<int> pace{1};
std::atomic<int64_t> beginOfPace{0};   // in real time
std::atomic<int64_t> gainedBefore{0};  // how far the clock was ahead of real time when the pace began

int64_t realNanoseconds() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * kNanosecondsPerSecond + now.tv_nsec;
}

int64_t gainedAt(int64_t real) {
    return gainedBefore + (pace - 1) * (real - beginOfPace);
}

void setPace(int factor) {
    const int64_t real = realNanoseconds();
    gainedBefore = gainedAt(real);
    beginOfPace = real;
    pace = factor;
}

}  // namespace

// These two are found before those of the C++ and the C library, in the bundle as well if they are exported.
__attribute__((visibility("default"))) std::chrono::steady_clock::time_point
std::chrono::steady_clock::now() noexcept {
    const int64_t real = realNanoseconds();
    return time_point(std::chrono::nanoseconds(real + gainedAt(real)));
}

__attribute__((visibility("default"))) int ppoll(pollfd* descriptors, nfds_t count, const timespec* timeOut,
                                                 const sigset_t* signals) {
    if (signals != nullptr) std::abort();  // no caller passes any
    if (timeOut == nullptr) return poll(descriptors, count, -1);
    constexpr int64_t kNanosecondsPerMillisecond = 1'000'000;
    const int64_t unit = kNanosecondsPerMillisecond * pace;
    // No time in these tests is so long that it would not fit. The result is rounded up, as in ppoll.
    const int64_t wait = timeOut->tv_sec * kNanosecondsPerSecond + timeOut->tv_nsec;
    const int64_t milliseconds = (wait + unit - 1) / unit;
    return poll(descriptors, count, static_cast<int>(milliseconds < INT_MAX ? milliseconds : INT_MAX));
}

namespace dovrel::test {

FastClock::FastClock(int factor) {
    setPace(factor);
}

FastClock::~FastClock() {
    setPace(1);
}

}  // namespace dovrel::test
