// The programs that run for one system root.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace dovrel::test {

/// The processes of that name (at most 15 characters) whose environment names the root, without this process
/// and without those that have ended. With an empty name all of them.
std::vector<pid_t> processesOf(const std::string& root, const std::string& name = "");

}  // namespace dovrel::test
