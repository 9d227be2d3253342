// The connections that a process keeps between its sends. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

#include <memory>
#include <string>

#include "portability/transport/Connection.h"

namespace portability {

/// What decides where an endpoint is found: the signature, and the environment as far as it matters.
struct EndpointKey {
    OSType signature;
    std::string systemRoot;     // as in the environment, "" when unset
    std::string runtimeFolder;  // likewise
};

struct KeptConnection {
    EndpointKey key;
    Connection connection;

    /// For the environment as it is now.
    KeptConnection(OSType signature, FileDescriptor socket);
};

/// Takes out a connection to the endpoint that the signature has now and that nobody uses; null when there is
/// none. It may have broken meanwhile. Any thread; a forked process does not get those of its parent.
std::unique_ptr<KeptConnection> takeKeptConnection(OSType signature);

/// Keeps a connection for later. The number of those kept is bounded; the one unused for longest is closed.
/// Any thread.
void keepConnection(std::unique_ptr<KeptConnection> connection);

}  // namespace portability
