// The place at which an application receives its Apple events. Private to the layer.
//
// An endpoint is a listening SOCK_SEQPACKET socket, named after the application's creator signature, in a
// folder of the user's own (EndpointFolder.h) and keyed by the system root. Beside it lies a lock file.
// The holder of the lock owns the endpoint. The lock belongs to the open file description, so it goes along
// with the descriptors from the launcher to the launched process and ends with that process, however it ends.
#pragma once

#include <CoreServices/MacTypes.h>
#include <sys/types.h>

#include <string>

#include "portability/posix/Deadline.h"
#include "portability/posix/FileDescriptor.h"

namespace portability {

/// A claimed endpoint: the listening socket and the lock that makes it ours. The descriptors are
/// close-on-exec and closed by the destructor. Movable.
class EndpointClaim {
  public:
    enum class Outcome {
        claimed,  ///< the endpoint is ours, its socket listens, and events queue from now on
        inUse,    ///< another live process owns the endpoint
        failed    ///< the folder, the lock or the socket could not be made; errno tells why
    };

    EndpointClaim() = default;
    EndpointClaim(EndpointClaim&& other) = default;
    EndpointClaim& operator=(EndpointClaim&& other) noexcept;
    ~EndpointClaim() = default;

    /// Tries to become the owner of the endpoint of `signature` under the current system root. Never waits.
    /// All processes of this user claim it at the same place (makeEndpointFolder), so that only one of them
    /// gets it.
    static Outcome claim(OSType signature, EndpointClaim& result);

    /// Takes over the descriptors that a launcher handed to this process for that signature, and removes
    /// their announcement from the environment. False when there are none, or when they are not a listening
    /// socket and the endpoint's lock file in a folder of this user.
    static bool adoptInherited(OSType signature, EndpointClaim& result);

    /// Removes the endpoint's files, so that an application that ends in order leaves nothing behind. For the
    /// owner, right before it lets the claim go; a launcher lets go without. The files of a process that was
    /// killed stay until somebody claims the endpoint anew.
    void withdraw() noexcept;

    int listenDescriptor() const { return listen_.get(); }
    int lockDescriptor() const { return lock_.get(); }

    /// The environment entry ("NAME=value") by which a launched process finds its descriptors when they have
    /// these numbers.
    static std::string inheritanceEntry(OSType signature, int listenDescriptor, int lockDescriptor);

  private:
    bool findFiles(OSType signature);

    std::string name_;       // of the files, without their endings
    FileDescriptor folder_;  // of the files; locked, so that they are not cleaned up
    FileDescriptor lock_;
    FileDescriptor listen_;  // closed before the lock, so that the next owner does not find it listening
};

enum class Connecting {
    connected,
    timedOut,  ///< the owner lives but has accepted nobody for so long that no more clients fit in its queue
    failed     ///< no live process of this user owns the endpoint
};

/// Connects to the endpoint of `signature` under the current system root and checks that the peer is the same
/// user. The connection is close-on-exec. Signals do not end the wait.
Connecting connectToEndpoint(OSType signature, const Deadline& deadline, FileDescriptor& connection);

/// The same with the platform's default time-out. Answers a descriptor that the caller closes, or -1.
int connectToEndpoint(OSType signature);

/// Whether the process at the other end of a connected socket runs under our user id; `peer` is its process
/// id.
bool isOwnUser(int connected, pid_t& peer);

}  // namespace portability
