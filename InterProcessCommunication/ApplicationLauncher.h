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

    /// Runs `command`, an absolute path in UTF-8, and blocks until it has exited; returns its exit status.
    /// Arguments may be null for none. -1, and a line in the system log, when it cannot be run; -1 for an
    /// empty command, without anything else. What the tool writes is not read: one that writes more than a
    /// pipe holds never ends. Throws nothing.
    int RunTask(const std::string& command, const std::vector<std::string>* arguments) const;
};

}  // namespace dovrel
