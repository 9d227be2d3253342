// Facts about the system beneath the library. Each system has its own source.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace dovrel::tools {

/// Returns whether the process exists and has not ended. A process that has ended and whose parent has not noticed
/// it yet does not count.
bool isRunning(pid_t process);

/// Returns the folder that contains the platform's fixed places; "/" on macOS.
std::string systemRootPath();

/// A process of any user.
struct ProgramProcess {
    pid_t id;
    uid_t user;
    bool isStopped;  ///< by a signal or a debugger
};

/// Returns the processes that run the program. Only root can see of every process of another user which program it
/// runs. For other users, what the process itself states counts. Empty on macOS.
std::vector<ProgramProcess> findProcessesOf(const std::string& program);

/// A folder for the endpoints of servers.
struct EndpointFolder {
    enum class State {
        usable,
        creatable,  ///< does not exist; this user can create it
        missing,  ///< neither exists nor can be created, because its parent is missing or belongs to another user
        foreign,  ///< belongs to another user; the library uses another place
        unusable  ///< cannot be used for another reason; the library uses no other place then
    };

    std::string path;
    State state = State::missing;
    std::string reason;  ///< of a folder that is foreign or unusable
};

/// Returns the folders in which the library looks for running servers, in this order. It creates new endpoints in the
/// last one that is possible. Empty on macOS, where the system delivers events.
std::vector<EndpointFolder> findEndpointFolders();

/// Returns whether the file is a complete library for this kind of process. Loading an incomplete one, for example after
/// an installation on a full disk, can crash. On macOS always true: the system checks it itself.
bool isCompleteLibrary(const std::string& path);

/// Returns the system report (ui/information/SystemReport.h). Values of property lists are formatted by Foundation. So
/// on Linux the report is made by the second module of the installed bundle, and Foundation is not part of the tool.
/// Throws a ToolFailure if that module cannot be used.
std::string makeSystemReport();

}  // namespace dovrel::tools
