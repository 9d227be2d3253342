// Starting a program that is nobody's child. Private to the layer.
#pragma once

#include <string>
#include <vector>

namespace portability {

/// What to start, and all that it gets.
struct DetachedProcess {
    std::string program;                   ///< path of the file
    std::vector<std::string> arguments;    ///< from the program's name on
    std::vector<std::string> environment;  ///< entries "NAME=value"
    std::vector<int> descriptors;  ///< at most 4; appear as 3, 4 … in this order, 0, 1 and 2 are /dev/null
};

/// Starts the program in a session of its own, in the folder "/", with umask 022, no signal blocked and none
/// ignored. It inherits nothing else from this process and becomes the child of the system's first process,
/// so that it outlives this one and is never its zombie. Waits until the program runs or its start has
/// failed.
///
/// Answers an errno value, 0 on success. Any thread, whatever the other threads do; the calling process gets
/// no SIGCHLD, and its own handling of children neither sees nor disturbs this one.
///
/// One kind of process is different: the first of a container, and one that has made itself a child subreaper
/// (prctl). The system gives it all of its descendants that have lost their parents, and so this program as
/// well: SIGCHLD tells of its end, a wait for every child finds it, and it stays a zombie until then. Whoever
/// takes on that part reaps children that it does not know anyway; no program that outlives it can be kept from
/// it.
int startDetached(const DetachedProcess& process);

/// This process's environment, without the entry of `variable` if that is not empty.
std::vector<std::string> environmentWithout(const std::string& variable);

}  // namespace portability
