// Finds the programs that run for one system root.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace dovrel::test {

/// Returns the processes of that name (at most 15 characters) whose environment names the root. Leaves out
/// this process and processes that have ended. With an empty name it returns processes of any name.
std::vector<pid_t> processesOf(const std::string& root, const std::string& name = "");

}  // namespace dovrel::test
