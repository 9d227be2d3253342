// An installation of its own for one test: a system root in a fresh folder with the server application and
// the library's bundle, and the environment that makes the process use it. No other test sees its servers.
#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

class TestRoot {
  public:
    /// Everything is installed, with the server application that DOVREL_TEST_SERVER names if it is set; there
    /// is no settings file, no display and no server.
    TestRoot();
    TestRoot(const TestRoot&) = delete;
    TestRoot& operator=(const TestRoot&) = delete;

    /// Ends the root's servers, waits until they are gone, removes all files and restores the environment.
    /// Fails the test where a server had to be killed because it did not end when told to, or where a
    /// sanitizer had complaints about one.
    ~TestRoot();

    const std::string& path() const { return folder_.path(); }

    /// The staged bundles.
    std::string library() const;
    std::string server() const;
    std::string serverExecutable() const;

    /// Writes the server's settings file, for servers that start from now on.
    void configure(const std::string& settings) const;

    // Faults of the installation.
    void removeServer() const;
    void makeServerUnexecutable() const;

    /// The running servers of this root, from the system's list of processes.
    std::vector<pid_t> servers() const;

    /// Waits until so many servers run and answers them; fails the test when that takes longer than half a
    /// minute.
    std::vector<pid_t> waitForServers(size_t count) const;

    /// Sends the signal to all servers and waits until they are gone.
    void endServers(int signal) const;

    /// The server's log, "" where there is none.
    std::string serverLog() const;

    /// Waits until the text is in the log; fails the test when that takes longer than half a minute.
    void waitForServerLog(const std::string& text) const;

  private:
    void stage() const;
    void setVariable(const std::string& name, const std::optional<std::string>& value);
    void setEnvironment();
    void expectNoSanitizerReports() const;
    std::string installFolder() const;

    TemporaryFolder folder_;
    std::map<std::string, std::optional<std::string>> oldVariables_;
};

/// The content of a file, "" where it cannot be read.
std::string contentOf(const std::string& path);

}  // namespace dovrel::test
