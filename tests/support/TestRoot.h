// A separate installation for one test: a system root in a new folder with the server application and the
// library's bundle, and the environment that makes this process use it. Other tests do not see its servers.
#pragma once

#include <sys/types.h>

#include <deque>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace dovrel::test {

class TestRoot {
  public:
    /// Installs everything. If DOVREL_TEST_SERVER is set, it names the server application to install. The
    /// new root contains no settings file, no display is set, and no server runs.
    TestRoot();
    TestRoot(const TestRoot&) = delete;
    TestRoot& operator=(const TestRoot&) = delete;

    /// Ends the root's servers, waits until they are gone, removes all files and restores the
    /// environment. Fails the test if a server did not end when asked and had to be killed, or if a
    /// sanitizer reported an error in a server.
    ~TestRoot();

    const std::string& path() const { return folder_.path(); }

    /// Return the paths of the staged bundles and of the server's program.
    std::string library() const;
    std::string server() const;
    std::string serverExecutable() const;

    /// Writes the server's settings file, which servers read when they start.
    void configure(const std::string& settings) const;

    /// Both functions damage the installation.
    void removeServer() const;
    void makeServerUnexecutable() const;

    /// Returns the running servers of this root, from the system's list of processes.
    std::vector<pid_t> servers() const;

    /// Waits until exactly `count` servers run and returns them. Fails the test if that
    /// takes longer than a minute.
    std::vector<pid_t> waitForServers(size_t count) const;

    /// Sends the signal to all servers and waits until they are gone.
    void endServers(int signal) const;

    /// Returns the server's log; "" if there is none.
    std::string serverLog() const;

    /// Waits until the log contains the text. Fails the test if that takes longer than a minute.
    void waitForServerLog(const std::string& text) const;

  private:
    void stage() const;
    void setEnvironment();
    void expectNoSanitizerReports() const;
    std::string installFolder() const;

    TemporaryFolder folder_;
    std::deque<VariableChange> variables_;
};

/// Returns the content of a file; "" if the file cannot be read.
std::string readFile(const std::string& path);

}  // namespace dovrel::test
