// Finding the server application, telling whether it runs, and starting it. Any thread; nothing is
// remembered.
//
// Starting one takes three steps, which Client_to_POS_Communicator::ConnectToServer puts together:
//  1. the application is looked for in its one place, the local domain's application support folder;
//  2. a process of its name is looked for in the kernel's list;
//  3. without one the platform is asked to launch the application in the background.
// Neither a process nor a launch means that the server listens already; the handshake afterwards does that
// waiting.
#pragma once

#include <Carbon/Carbon.h>

#include <cstdint>

namespace dovrel {

/// The short name of the server's process, all of it and in this spelling.
inline constexpr char kServerProcessName[] = "Merrowd";

/// The server application is not installed.
constexpr int32_t kServerNotFound = 42;
/// The server application could not be launched, or never answered.
constexpr int32_t kServerNotLaunched = 43;

/// The installed server application. 0 with its URL in `*application`, which the caller releases; else the
/// error of the folder lookup, or kServerNotFound when there is no such bundle, and null.
OSErr FindServerApplication(CFURLRef* application);

/// Whether any process bears the server's name. A process list that cannot be read counts as one without a
/// server.
bool IsServerRunning();

/// Has the platform launch the application in the background; it does not become the front application nor a
/// recent item. Success, too, when it runs already. The platform's status.
OSStatus LaunchServer(CFURLRef application);

}  // namespace dovrel
