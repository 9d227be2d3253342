// InstalledServer: an installation of its own with the small server of these tests in it, and whatever has to
// be ended of it afterwards.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

/// Puts the system root, the sockets and the home folder of this process into a temporary folder for its
/// lifetime, ends every process that was started from there, and removes the folder.
class InstalledServer {
  public:
    /// Nothing is installed at first.
    InstalledServer();
    InstalledServer(const InstalledServer&) = delete;
    InstalledServer& operator=(const InstalledServer&) = delete;
    ~InstalledServer();

    /// Installs the server; `behaviour` as SmallServer.cpp has it.
    void install(const std::string& behaviour = "");

    /// Another program with the server's code beside the server; its path.
    std::string installProgram(const std::string& name);

    /// The lines of the server's log.
    std::vector<std::string> log() const;
    int countOfLog(const std::string& beginning) const;

    /// The processes that the server has been, from its log.
    std::vector<pid_t> processes() const;
    /// Ends the newest and waits until it is gone.
    void killServer() const;
    /// Whether the newest ends within ten seconds.
    bool serverEnds() const;

    const TemporaryFolder& root() const { return root_; }

  private:
    TemporaryFolder root_;
};

}  // namespace dovrel::test
