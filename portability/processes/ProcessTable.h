// Reads the processes of this system from /proc. Private to the layer.
//
// The results are snapshots: a process can end at any time, and its ID can then be used for another process.
#pragma once

#include <CoreServices/MacTypes.h>
#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace portability {

/// A live process.
struct Process {
    pid_t id;
    pid_t parent;
    pid_t group;
    uid_t user;        ///< the effective user
    char state;        ///< the system's letter: R running, S sleeping, T stopped …
    UInt64 startTime;  ///< clock ticks since the system started; unique together with the ID
    std::string file;  ///< path of the program; if it is not known, what the process states
    std::string name;  ///< the last component of `file`, not shortened
};

/// Returns the process with this ID. Returns nothing if there is none, if it has ended or is exiting, or if it is a
/// task of the kernel.
std::optional<Process> findProcess(pid_t id);

/// Returns this user's live processes that concern the current system root:
///
/// - A process with the name of an application that is installed in a fixed place of the root is listed only
///   if it runs that application's executable. If several installed applications have that name and all have
///   the same signature, it may run the executable of any of them. If the application has a signature, the
///   process must have its endpoint: a process that is ending is not listed.
/// - If their signatures differ or are missing, or if the process cannot be inspected, it is not listed.
///   Launch Services finds a running application by its endpoint anyway. But a process that is mistaken for
///   the application prevents its launch.
/// - Other programs inside an application bundle are listed if the bundle is in a fixed place of the root.
/// - Programs outside bundles are always listed.
std::vector<Process> listProcesses();

/// Returns at least the number of all processes, including ended ones and those of other users and roots.
std::size_t countProcesses();

}  // namespace portability
