// ChildProcess: starts a program and reports when and how it ended. For the host, this process is not the
// program's parent. Private to the layer.
//
// The parent is a third process, the go-between. It shares the host's memory, makes only system calls, and
// waits until the program ends. The end of the go-between causes no signal. So the program and the go-between
// do not affect how the host treats its children: no SIGCHLD arrives, no zombie remains, and the exit status
// is not lost if the host ignores SIGCHLD or waits for every child.
//
// While the program runs, one thread of this process waits for the go-between. All its signals are blocked.
#pragma once

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "portability/posix/Deadline.h"

namespace portability {

/// The program to start. Everything else, such as resource limits and user, is that of this process.
struct ChildProgram {
    std::string program;                   ///< path of its file
    std::vector<std::string> arguments;    ///< the first is the program's name
    std::vector<std::string> environment;  ///< entries "NAME=value"
    std::vector<int> descriptors;  ///< become 0, 1, 2 … in this order, all others are closed; see kNullDevice
    bool leavesFolderAndMask = false;  ///< true: runs in "/" with umask 022; false: as this process
};

/// Must not be used by two threads at once.
class ChildProcess {
  public:
    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// If the program still runs, it goes on running.
    ~ChildProcess();

    /// Starts the program in a new session, with all signals unblocked and at their default actions.
    /// Waits until it runs or its start has failed. Returns 0 on success, otherwise an errno value.
    /// Call it only once.
    int start(const ChildProgram& program);

    /// Returns whether the program was started and has not ended. If the go-between was killed, the program
    /// counts as ended. If this process ends first, the program goes on running.
    bool isRunning() const;

    /// Waits until the program has ended. Returns false if it still runs at the deadline.
    bool waitForEnd(const Deadline& deadline) const;

    /// Returns the program's status as wait(2) does. Returns the status for SIGKILL if the go-between was
    /// killed, and 0 if the program has not ended yet.
    int waitStatus() const;

  private:
    struct Watch;

    std::shared_ptr<Watch> watch_;
    std::thread thread_;
};

}  // namespace portability
