// Checks of the server and of the exchange with it.
#pragma once

#include "tools/doctor/CheckResult.h"

namespace dovrel::tools {

/// Whether a server is installed, and where. Returns false if there is none that can be launched.
bool checkInstalledServer(CheckResults& results);

/// Which servers of this installation run, and whose they are. With `launches`, launches a server if none runs.
/// Returns whether a server of this user runs.
bool checkRunningServers(bool launches, CheckResults& results);

/// The handshake, and whether library and server have the same interface version. A server must run. If it does not
/// answer, this takes up to three minutes, as a call does.
void checkExchange(CheckResults& results);

}  // namespace dovrel::tools
