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
constexpr size_t kImageStep = size_t{256} << 10;
constexpr size_t kMostTimes = 16;

std::chrono::microseconds setTime() {
    static const std::chrono::microseconds time = spinTime(secure_getenv("POS_SPIN_US"));
    return time;
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
    : time_(setTime() * static_cast<int>(std::min(1 + imageSize / kImageStep, kMostTimes))) {}

bool Spin::isOn() {
    return setTime().count() != 0;
}

bool Spin::again() {
    if (time_.count() == 0) return false;
    const auto now = std::chrono::steady_clock::now();
    if (!started_) end_ = now + time_;
    started_ = true;
    if (now >= end_) return false;
    sched_yield();
    return true;
}

}  // namespace portability
