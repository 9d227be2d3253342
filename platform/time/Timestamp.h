// The time of day for logs and traces whose lines are compared.
#pragma once

#include <string>

namespace dovrel {

/// Returns the local time with milliseconds, in the form 2026-11-15 18:19:00.123. Any thread. Throws
/// std::bad_alloc.
std::string timestampText();

}  // namespace dovrel
