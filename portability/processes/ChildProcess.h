// A program that runs beside this process and whose end this process learns, without being its parent as far
// as the host can see. Private to the layer.
//
// The program's parent is a go-between: a process that shares the host's memory, runs nothing but system
// calls, and waits for the program's end. The go-between announces its own end by no signal. So the host's
// handling of children sees neither of the two: no SIGCHLD arrives, a host that ignores SIGCHLD or waits for
// every child takes nothing away, and no zombie stays.
//
// While the program runs, one thread of this process waits for the go-between. It takes no signal.
#pragma once

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "portability/posix/Deadline.h"

namespace portability {

/// A program, with all that it gets besides this process's limits and rights.
struct ChildProgram {
    std::string program;                   ///< path of the file
    std::vector<std::string> arguments;    ///< from the program's name on
    std::vector<std::string> environment;  ///< entries "NAME=value"
    std::vector<int>
        descriptors;  ///< appear as 0, 1, 2 … in this order, all others are closed; see kNullDevice
    bool leavesFolderAndMask = false;  ///< runs in "/" with umask 022, instead of this process's
};

/// Not to be used by two threads at once.
class ChildProcess {
  public:
    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Leaves a program that still runs alone.
    ~ChildProcess();

    /// Starts the program in a session of its own, with no signal blocked or ignored, and waits until it runs
    /// or its start has failed. Returns an errno value, 0 on success. To be called once.
    int start(const ChildProgram& program);

    /// Whether the program was started and has not ended. It also counts as ended if its go-between was
    /// killed. If this process ends first, the program runs on.
    bool isRunning() const;

    /// Waits until the program does not run any more. False if it still does at the deadline.
    bool waitForEnd(const Deadline& deadline) const;

    /// How the program ended, as wait(2) tells it; that of SIGKILL if its go-between was killed. 0 before.
    int waitStatus() const;

  private:
    struct Watch;

    std::shared_ptr<Watch> watch_;
    std::thread thread_;
};

}  // namespace portability
