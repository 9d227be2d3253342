// Writes lines of the platform's system log.
#pragma once

#include <string>

namespace dovrel {

/// Writes a line to the system log, as NSLog does. `line` is in UTF-8 and contains no NUL character. Failures,
/// including a lack of memory, are ignored. Any thread.
void writeToSystemLog(const std::string& line) noexcept;

}  // namespace dovrel
