// Starts a program that is not a child of this process. Private to the layer.
#pragma once

#include <string>
#include <vector>

namespace portability {

/// The program to start, and everything that it receives.
struct DetachedProcess {
    std::string program;                   ///< path of its file
    std::vector<std::string> arguments;    ///< the first is the program's name
    std::vector<std::string> environment;  ///< entries "NAME=value"
    std::vector<int> descriptors;  ///< at most 4; become 3, 4 … in this order; 0, 1, 2 are /dev/null
};

/// Starts the program in a new session, in the folder "/", with umask 022, all signals unblocked and at their
/// default actions. Limits of file sizes, processor time and memory are removed as far as the system permits.
/// It inherits nothing else from this process. The system's first process becomes its parent, so it can
/// outlive this process and is never a zombie of this process. Waits until the program runs or its start has
/// failed.
///
/// Returns 0 on success, otherwise an errno value. Any thread, regardless of what other threads do. This
/// process receives no SIGCHLD, and its handling of children is not affected.
///
/// There is an exception: a process that is the first of a container, or that has made itself a child
/// subreaper (prctl). The system makes it the parent of all descendants that have lost their parents, so also
/// of this program. It receives SIGCHLD when the program ends, a wait for every child returns the program,
/// and until then the program is a zombie. Such a process must reap unknown children anyway. No program that
/// outlives it can be hidden from it.
int startDetached(const DetachedProcess& process);

/// Returns the environment of this process without `variable`; if `variable` is empty, the whole environment.
std::vector<std::string> environmentWithout(const std::string& variable);

}  // namespace portability
