// Finds the program that shows alerts. Private to the layer.
#pragma once

#include <string>

namespace portability {

/// Returns the path of "dovrel-alert". The file is in the folder of the executable or library that contains
/// this code (Contents/MacOS in a bundle). Returns the empty string if no alert can be shown:
///   - the environment names no display (DISPLAY and WAYLAND_DISPLAY are unset or empty),
///   - POS_ALERTS is "log",
///   - the process runs with another user's rights (the environment decides which code the helper loads),
///   - the file does not exist or is not executable.
/// Checks this at each call. Thread-safe.
std::string usableAlertHelper();

}  // namespace portability
