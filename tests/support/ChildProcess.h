// A program that a test runs as a child process and talks to line by line.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace dovrel::test {

class ChildProcess {
  public:
    /// Starts the program. The first argument names it and is looked up in the search path. Standard error
    /// goes to `errorFile`, unless that is empty.
    explicit ChildProcess(const std::vector<std::string>& arguments, const std::string& errorFile = "");
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Kills the child if it still runs. If the test's process dies, the child dies as well.
    ~ChildProcess();

    /// Returns the next line that the child writes, without the line feed. Also returns "" if the child has ended
    /// or no line came within a minute.
    std::string readLine();

    /// Returns true if a line, or the end of the output, arrives within the time.
    bool hasLine(int milliseconds) const;

    /// Writes a line to the child's input. Throws std::runtime_error if the child does not read it any more.
    void writeLine(const std::string& line);

    /// Lets the child read the end of its input.
    void closeInput();

    pid_t process() const { return process_; }

    /// signal() sends the child a signal. wait() waits for its end and returns the exit
    /// code, or -1 if a signal ended it.
    void signal(int number) const;
    int wait();

  private:
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
};

/// Runs the command to its end and returns its standard output; "" if it failed.
std::string readOutput(const std::vector<std::string>& arguments);

}  // namespace dovrel::test
