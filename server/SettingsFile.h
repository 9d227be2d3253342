// The settings file of the server.
#pragma once

#include <string>

#include "server/ExchangeLog.h"
#include "server/Exchanges.h"

namespace merrowd {

/// Takes over the settings in the file at `path` (for `fopen` and friends), if there is one. Problems with
/// the settings and with reading the file go to the log.
void readSettingsFile(const std::string& path, Exchanges& exchanges, ExchangeLog& log);

}  // namespace merrowd
