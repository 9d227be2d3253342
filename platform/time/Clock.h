// The calendar clock, which tests can replace.
#pragma once

#include <ctime>

namespace dovrel {

using TimeSource = std::time_t (*)();

/// The calendar time in seconds since the epoch. Any thread.
std::time_t currentTime();

/// Takes the time from `source` from now on; null is the system's clock again. For tests.
void setTimeSource(TimeSource source);

}  // namespace dovrel
