#include "platform/time/Clock.h"

#include <atomic>

namespace dovrel {

namespace {

std::time_t systemTime() {
    return std::time(nullptr);
}

std::atomic<TimeSource> timeSource{systemTime};

}  // namespace

std::time_t currentTime() {
    return timeSource.load()();
}

void setTimeSource(TimeSource source) {
    timeSource = source != nullptr ? source : systemTime;
}

}  // namespace dovrel
