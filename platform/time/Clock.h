// The calendar clock. Tests can replace it.
#pragma once

#include <ctime>

namespace dovrel {

using TimeSource = std::time_t (*)();

/// Returns the calendar time in seconds since the epoch. Any thread.
std::time_t currentTime();

/// For tests: currentTime() calls `source` from now on. Null restores the system's clock.
void setTimeSource(TimeSource source);

}  // namespace dovrel
