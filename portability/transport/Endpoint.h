// The endpoint at which an application receives requests. Private to the layer.
//
// An endpoint is a listening SOCK_SEQPACKET socket in a folder that belongs to the user
// (EndpointFolder.h). Its name is made from the application's creator signature and the system root. A
// lock file is in the same folder.
//
// The process that holds the lock owns the endpoint. The lock belongs to the open file description. So it
// passes from the launcher to the launched process together with the descriptors, and it ends with that
// process, even if the process crashes.
#pragma once

#include <CoreServices/MacTypes.h>
#include <sys/types.h>

#include <string>

#include "portability/posix/Deadline.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/posix/UnsharedDescriptor.h"

namespace portability {

/// A claimed endpoint: the listening socket and the lock. Both descriptors are close-on-exec, and the
/// destructor closes them. A forked process does not get them: the endpoint stays with the process that
/// claimed it. Movable.
class EndpointClaim {
  public:
    enum class Outcome {
        claimed,  ///< this process owns the endpoint; its socket listens and queues requests from now on
        inUse,    ///< another live process owns the endpoint
        failed    ///< the folder, the lock file or the socket could not be created; errno has the reason
    };

    EndpointClaim() = default;
    EndpointClaim(EndpointClaim&& other) = default;
    EndpointClaim& operator=(EndpointClaim&& other) noexcept;
    ~EndpointClaim() = default;

    /// Tries to become the owner of the endpoint of `signature` under the current system root. `result` is
    /// set only if it is claimed. Never blocks.
    ///
    /// All processes of a user claim it at the same place (see makeEndpointFolder), so only one of them
    /// becomes the owner.
    static Outcome claim(OSType signature, EndpointClaim& result);

    /// Takes the ownership of the descriptors that a launcher passed to this process for `signature`, and
    /// removes the environment variable that announces them. Returns false, and leaves `result` unchanged, if
    /// there are none. Also returns false if they are not a listening socket and the endpoint's lock file in
    /// a folder of this user.
    static bool adoptInherited(OSType signature, EndpointClaim& result);

    /// Removes the endpoint's files, so that an application that ends normally leaves none. The owner calls
    /// it right before it destroys the claim. A launcher must not call it. The files of a killed process stay
    /// until another process claims the endpoint.
    void withdraw() noexcept;

    int listenDescriptor() const { return listen_.get(); }
    int lockDescriptor() const { return lock_.get(); }

    /// Returns the environment entry ("NAME=value") by which a launched process finds its descriptors, if
    /// they have these numbers in that process.
    static std::string inheritanceEntry(OSType signature, int listenDescriptor, int lockDescriptor);

  private:
    Outcome openFiles(const FileDescriptor& folder);
    bool findFiles(OSType signature);

    std::string name_;       // name of the socket and the lock file, without the extension
    FileDescriptor folder_;  // folder of both files; locked, so that systemd-tmpfiles does not delete them
    UnsharedDescriptor lock_;
    UnsharedDescriptor listen_;  // closed before the lock, so that it never listens under the next owner
};

enum class Connecting {
    connected,
    timedOut,  ///< the owner is alive, but its queue of connections that it has not accepted is full
    failed     ///< no running process of this user owns the endpoint
};

/// Connects to the endpoint of `signature` under the current system root, and checks that the peer is the
/// same user. `connection` is close-on-exec; it is set only if the result is `connected`. Signals do not
/// interrupt the wait.
Connecting connectToEndpoint(OSType signature, const Deadline& deadline, FileDescriptor& connection);

/// The same with the platform's default time-out. Returns a descriptor that the caller must close, or -1.
int connectToEndpoint(OSType signature);

/// Returns whether the peer of a connected socket runs under our effective user id. Writes the peer's process
/// id to `peer`.
bool isOwnUser(int connected, pid_t& peer);

}  // namespace portability
