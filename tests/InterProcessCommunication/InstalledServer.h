// InstalledServer: a separate installation with the small server of these tests. It ends
// everything that was started from there.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

/// Moves the system root, the sockets and the home folder of this process to a temporary folder. The
/// destructor ends every process that was started from there and removes the folder.
class InstalledServer {
  public:
    /// At first nothing is installed.
    InstalledServer();
    InstalledServer(const InstalledServer&) = delete;
    InstalledServer& operator=(const InstalledServer&) = delete;
    ~InstalledServer();

    /// Installs the server; SmallServer.cpp describes the lines of `behaviour`.
    void install(const std::string& behaviour = "");

    /// Also concerns a server that runs already.
    void setBehaviour(const std::string& behaviour) const;

    /// Installs another program with the server's code next to the server; returns its path.
    std::string installProgram(const std::string& name);

    /// Returns the lines of the server's log.
    std::vector<std::string> log() const;
    int countInLog(const std::string& beginning) const;

    /// Returns the processes in which the server has run, from its log.
    std::vector<pid_t> processes() const;
    /// Kills the newest of these processes and waits until it is gone.
    void killServer() const;
    /// Returns true if the newest of these processes ends within a minute.
    bool serverEnds() const;

  private:
    TemporaryFolder root_;
};

}  // namespace dovrel::test
