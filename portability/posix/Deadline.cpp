#include "portability/posix/Deadline.h"

#include <CoreServices/AEDataModel.h>
#include <poll.h>

#include <algorithm>
#include <cstdint>

namespace portability {

namespace {

constexpr long kTicksPerSecond = 60;
constexpr long kDefaultTicks = 60 * kTicksPerSecond;
// The upper limit, one hundred years. Longer times would overflow the clock's type.
constexpr int64_t kMostTicks = int64_t{100} * 365 * 24 * 3600 * kTicksPerSecond;

std::chrono::nanoseconds fromTicks(int64_t ticks) {
    constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
    const int64_t bounded = std::clamp<int64_t>(ticks, 0, kMostTicks);
    // Whole seconds and the remainder are converted separately because their product would overflow. The
    // result is rounded up, so that no wait is too short.
    const int64_t rest =
        (bounded % kTicksPerSecond * kNanosecondsPerSecond + kTicksPerSecond - 1) / kTicksPerSecond;
    return std::chrono::seconds(bounded / kTicksPerSecond) + std::chrono::nanoseconds(rest);
}

}  // namespace

Deadline Deadline::afterTicks(long ticks) {
    if (ticks == kNoTimeOut) return never();
    Deadline deadline;
    deadline.limited_ = true;
    deadline.moment_ = Clock::now() + fromTicks(ticks == kAEDefaultTimeout ? kDefaultTicks : ticks);
    return deadline;
}

const timespec* Deadline::remaining(timespec& left) const {
    if (!limited_) return nullptr;
    const auto duration = std::max(moment_ - Clock::now(), Clock::duration::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    left.tv_sec = static_cast<time_t>(seconds.count());
    left.tv_nsec = static_cast<long>(std::chrono::nanoseconds(duration - seconds).count());
    return &left;
}

Deadline Deadline::orAfter(std::chrono::nanoseconds delay) const {
    Deadline nearer = *this;
    const Clock::time_point moment = Clock::now() + delay;
    if (!limited_ || moment < moment_) nearer.moment_ = moment;
    nearer.limited_ = true;
    return nearer;
}

void waitForDescriptor(int descriptor, short events, const Deadline& deadline) {
    pollfd waited{descriptor, events, 0};
    timespec left;
    ppoll(&waited, 1, deadline.remaining(left), nullptr);
}

}  // namespace portability
