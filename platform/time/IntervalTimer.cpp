#include "platform/time/IntervalTimer.h"

#include <CoreServices/CoreServices.h>

#include <utility>

namespace dovrel {

namespace {

uint32_t nowInMilliseconds() {
    UnsignedWide now;
    Microseconds(&now);
    const uint64_t microseconds = uint64_t{now.hi} << 32 | now.lo;
    return static_cast<uint32_t>(microseconds / 1000);
}

}  // namespace

IntervalTimer::IntervalTimer(std::string label)
    : start_(nowInMilliseconds()), lastMark_(start_), label_(std::move(label)) {}

uint32_t IntervalTimer::elapsed() const {
    return nowInMilliseconds() - start_;
}

std::string IntervalTimer::mark(const std::string& label) {
    lastMark_ = nowInMilliseconds();
    return label + " Interval time: ";
}

}  // namespace dovrel
