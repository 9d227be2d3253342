// A program that a test runs beside itself and talks to by lines.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace dovrel::test {

class ChildProcess {
  public:
    /// The first argument is the program, looked for in the search path. Standard error goes to the file, if
    /// one is named.
    explicit ChildProcess(const std::vector<std::string>& arguments, const std::string& errorFile = "");
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Kills what still runs. The child does not outlive the test's process either.
    ~ChildProcess();

    /// The next line that the child writes, without its end; "" when it has ended, or after a minute.
    std::string readLine();

    /// Whether a line, or the end, comes within the time.
    bool hasLine(int milliseconds) const;

    void writeLine(const std::string& line);

    pid_t process() const { return process_; }

    /// Ends it with the signal, or waits for its end; the exit code, -1 when a signal ended it.
    void signal(int number) const;
    int wait();

  private:
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
};

/// Runs the command to its end and returns what it wrote to standard output; "" when it failed.
std::string outputOf(const std::vector<std::string>& arguments);

}  // namespace dovrel::test
