// ApplicationLauncher: runs an auxiliary tool as a child process and waits for its exit.
#pragma once

#include <string>
#include <vector>

namespace dovrel {

class ApplicationLauncher {
  public:
    ApplicationLauncher() = default;
    ApplicationLauncher(const ApplicationLauncher&) = delete;
    ApplicationLauncher& operator=(const ApplicationLauncher&) = delete;
    virtual ~ApplicationLauncher();

    /// Runs `command`, an absolute path in UTF-8, and blocks until the tool has exited. A null `arguments`
    /// means no arguments. Returns the exit status, or the number of the signal that ended the tool. If the
    /// tool cannot be run, writes a line to the system log and returns -1. If the command is empty, returns -1
    /// without such a line. Throws nothing.
    ///
    /// The tool's output is not read. A tool that writes more than 64 KiB to standard output or to standard
    /// error therefore blocks forever, because the pipe is full.
    int RunTask(const std::string& command, const std::vector<std::string>* arguments) const;
};

}  // namespace dovrel
