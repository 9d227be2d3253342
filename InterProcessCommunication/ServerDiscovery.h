// Finds the server application, tells whether it runs, and launches it. Thread-safe; no state is kept.
//
// Client_to_POS_Communicator::ConnectToServer starts the server in three steps:
//  1. It looks for the application in its one place, the local domain's application support folder.
//  2. It looks for a process with the server's name in the kernel's list.
//  3. If there is none, it asks the platform to launch the application in the background.
// A process that runs or has been launched may not accept events yet. The handshake after these steps waits
// until it does.
#pragma once

#include <Carbon/Carbon.h>

#include <cstdint>

namespace dovrel {

/// The short name of the server's process. The whole name must match, including upper and lower case.
inline constexpr char kServerProcessName[] = "Merrowd";

/// The server application is not installed.
constexpr int32_t kServerNotFound = 42;
/// The server application could not be launched or never answered.
constexpr int32_t kServerNotLaunched = 43;

/// Finds the installed server application. Returns 0 and stores its URL in `*application`, which the caller
/// releases. Otherwise stores null, and returns the error of the folder lookup, or kServerNotFound if the
/// bundle does not exist.
OSErr FindServerApplication(CFURLRef* application);

/// Returns whether a process with the server's name runs. Also false if the process list cannot be read. On
/// Linux the list itself omits other programs of that name (portability/processes/ProcessTable.h).
bool IsServerRunning();

/// Asks the platform to launch the application in the background. The application does not become the front
/// application or a recent item. Returns the platform's status. It is success also if the application
/// already runs.
OSStatus LaunchServer(CFURLRef application);

}  // namespace dovrel
