// Finds the processes of the server.
#pragma once

#include <sys/types.h>

#include <vector>

namespace dovrel::tools {

/// Returns the processes that the library takes for the server of this user and this system root: normally one or
/// none. Throws a ToolFailure if the list of processes cannot be read.
std::vector<pid_t> findServers();

}  // namespace dovrel::tools
