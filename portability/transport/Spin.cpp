#include "portability/transport/Spin.h"

#include <sched.h>
#include <stdlib.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace portability {

namespace {

constexpr std::chrono::microseconds kDefaultSpin{50};
constexpr long kLongestSpin = 1'000'000;
constexpr size_t kImageStep = size_t{128} << 10;
constexpr size_t kMostTimes = 16;
constexpr int kLooksPerClock = 16;
constexpr int kBusyTimes = 4;

std::chrono::microseconds setTime() {
    static const std::chrono::microseconds time = spinTime(secure_getenv("POS_SPIN_US"));
    return time;
}

// Lets the other thread of a processor core run, and saves power.
void pauseBriefly() {
#if defined(__i386__) || defined(__x86_64__)
    __builtin_ia32_pause();
#endif
}

}  // namespace

std::chrono::microseconds spinTime(const char* setting) {
    if (setting == nullptr) return kDefaultSpin;
    long value = 0;
    const char* end = setting + std::strlen(setting);
    const auto parsed = std::from_chars(setting, end, value);
    if (parsed.ec != std::errc() || parsed.ptr != end || value < 0 || value > kLongestSpin)
        return kDefaultSpin;
    return std::chrono::microseconds(value);
}

Spin::Spin(size_t imageSize)
    : time_(setTime() * static_cast<int>(std::min(1 + imageSize / kImageStep, kMostTimes))),
      over_(time_.count() == 0) {}

Spin::Spin(SpinHistory& history, size_t imageSize)
    : time_(setTime() * static_cast<int>(std::min(1 + imageSize / kImageStep, kMostTimes))),
      history_(&history),
      over_(time_.count() == 0 || !history.begin()) {}

Spin::~Spin() {
    if (history_ == nullptr) return;
    if (found_) {
        history_->noteSuccess();
    } else if (started_) {
        history_->noteFailure();
    }
}

bool Spin::isOn() {
    return setTime().count() != 0;
}

bool Spin::again(Peer peer) {
    isSystemCallDue_ = false;
    if (over_) return false;
    if (peer == Peer::elsewhere && looks_ != 0) {
        --looks_;
        pauseBriefly();
        return true;
    }
    const Clock::time_point before = Clock::now();
    if (!started_) end_ = before + time_;
    started_ = true;
    if (before >= end_) {
        over_ = true;
        return false;
    }
    isSystemCallDue_ = true;
    if (peer == Peer::elsewhere) {
        looks_ = kLooksPerClock - 1;
        pauseBriefly();
    } else {
        sched_yield();
        over_ = Clock::now() - before > time_ * kBusyTimes;
    }
    return true;
}

// If other threads kept the processor for long, the wait would have ended sooner asleep.
void Spin::found() {
    found_ = !over_;
}

}  // namespace portability
