// The program that shows alerts: where it is, and whether it has a screen. Private to the layer.
#pragma once

#include <string>

namespace portability {

/// Whether alerts may be shown at all: the environment names a display (DISPLAY or WAYLAND_DISPLAY, not
/// empty) and POS_ALERTS is not "log". False in a program that runs with another user's rights, because what
/// the helper loads is chosen by the environment. Read anew at each call.
bool canEnvironmentShowAlerts();

/// Returns the path of "dovrel-alert", which lies beside the executable or library that this code is part of
/// (Contents/MacOS in a bundle). Returns an empty text if there is no such file there, or if it may not be
/// executed. Any thread.
std::string alertHelper();

}  // namespace portability
