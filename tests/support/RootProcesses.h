// Finds the programs that run for one system root.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace dovrel::test {

/// Returns the processes of that name (at most 15 characters) that have the root in their environment. An
/// empty name means processes of any name. Does not return this process and processes that have ended.
std::vector<pid_t> findProcesses(const std::string& root, const std::string& name = "");

}  // namespace dovrel::test
