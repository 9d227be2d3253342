// Reads the server's settings file.
#pragma once

#include <string>

#include "server/ControlCalls.h"

namespace merrowd {

/// Applies the settings in the file at `path` (for `fopen` and other C library functions), if the file
/// exists. Problems with the settings and with reading the file are start problems (ControlCalls.h).
void readSettingsFile(const std::string& path, ControlCalls& control);

}  // namespace merrowd
