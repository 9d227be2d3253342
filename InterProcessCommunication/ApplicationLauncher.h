// ApplicationLauncher: runs an auxiliary tool as a child task and waits for its exit.
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

    /// Runs `command`, an absolute path in UTF-8, and blocks until it has exited. `arguments` may be null for
    /// none. Returns the exit status, or the number of the signal that ended the tool. Returns -1, and writes a
    /// line to the system log, if the tool cannot be run; -1 without anything else for an empty command. The
    /// tool's output is not read: as on any full pipe, a tool that writes more than 64 KiB to one of its
    /// outputs waits forever. Throws nothing.
    int RunTask(const std::string& command, const std::vector<std::string>* arguments) const;
};

}  // namespace dovrel
