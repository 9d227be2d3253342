// The program that shows alerts. Private to the layer.
#pragma once

#include <string>

namespace portability {

/// Returns the path of "dovrel-alert", which lies beside the executable or library that this code is part of
/// (Contents/MacOS in a bundle). Returns an empty text if no alert can be shown:
///   - the environment names no display (DISPLAY and WAYLAND_DISPLAY are unset or empty),
///   - POS_ALERTS is "log",
///   - the process runs with another user's rights: the environment chooses what the helper loads,
///   - there is no such file, or it may not be executed.
/// Looks anew at each call. Any thread.
std::string usableAlertHelper();

}  // namespace portability
