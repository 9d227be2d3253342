// A pool of the process's unused connections. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

#include <memory>
#include <string>

#include "portability/transport/Connection.h"

namespace portability {

/// Identifies an endpoint: the signature, and the environment variables that determine its location.
struct EndpointKey {
    OSType signature;
    std::string systemRoot;     // POS_SYSTEM_ROOT, "" if unset
    std::string runtimeFolder;  // XDG_RUNTIME_DIR, "" if unset
};

struct KeptConnection {
    EndpointKey key;
    Connection connection;

    /// Takes the rest of the key from the current environment.
    KeptConnection(OSType signature, FileDescriptor socket);
};

/// Removes an unused connection to the signature's endpoint from the pool and returns it. Returns null if
/// there is none for the current environment. The peer may have closed the connection meanwhile. Thread-safe.
/// A forked process does not get the connections of its parent.
std::unique_ptr<KeptConnection> takeKeptConnection(OSType signature);

/// Adds a connection to the pool for later use. If the pool is full, the connection that has been unused for
/// the longest time is closed. Thread-safe.
void keepConnection(std::unique_ptr<KeptConnection> connection);

/// Calls sendReleased() of each connection in the pool. Thread-safe.
void releaseRepliesOfKeptConnections();

}  // namespace portability
