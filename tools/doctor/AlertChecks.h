// Checks of the way of a message to the user.
#pragma once

#include "tools/doctor/CheckResult.h"

namespace dovrel::tools {

/// Whether there is a display, whether alerts are turned off, and whether the programs that show alerts can be run.
void checkAlerts(CheckResults& results);

}  // namespace dovrel::tools
