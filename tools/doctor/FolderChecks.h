// Checks of the folders that the library and the server use, and of the error log.
#pragma once

#include "tools/doctor/CheckResult.h"

namespace dovrel::tools {

/// The folders through which hosts reach servers.
void checkEndpoints(CheckResults& results);

/// Whether this user may write logs.
void checkLogFolder(CheckResults& results);

/// The last entries of the error log.
void checkErrorLog(CheckResults& results);

}  // namespace dovrel::tools
