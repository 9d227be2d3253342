// The processes of this system, from /proc. Private to the layer.
//
// Nothing here is kept: a process may end, and its number be given again, at any time.
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
    uid_t user;        ///< whose rights it has
    char state;        ///< the system's letter: R runs, S sleeps, T is stopped …
    UInt64 startTime;  ///< in clock ticks since the system's start; with the id it tells processes apart
    std::string file;  ///< path of the program if it may be known, else what the process says of itself
    std::string name;  ///< the file's name, whole
};

/// The process with that id; nothing when there is none, or only what is left of one that has ended.
std::optional<Process> findProcess(pid_t id);

/// The live processes of this user that concern the current system root.
///
/// The name of an application that is installed in a fixed place of the root belongs to that application: a
/// process of that name is listed only if its program is the application's executable. If several applications
/// have that name and all have the same signature, it may be the executable of any of them. In doubt (different
/// signatures or none, a process that may not be looked at) it is not listed: Launch Services finds a running
/// application by its endpoint anyway, but a process that is taken for the application keeps it from being
/// launched. Other programs inside an application bundle are listed if the bundle lies in a fixed place of the
/// root, programs outside bundles always.
std::vector<Process> listProcesses();

/// How many processes there are, including ended ones and those of other users and roots.
std::size_t countProcesses();

}  // namespace portability
