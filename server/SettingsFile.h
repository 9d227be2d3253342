// Reads the server's settings file.
#pragma once

#include <string>

#include "server/ExchangeLog.h"
#include "server/Exchanges.h"

namespace merrowd {

/// Applies the settings in the file at `path` (for `fopen` and other C library functions), if the file
/// exists. Errors in the settings and in reading the file go to the log.
void readSettingsFile(const std::string& path, Exchanges& exchanges, ExchangeLog& log);

}  // namespace merrowd
