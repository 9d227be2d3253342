#include "portability/transport/Endpoint.h"

#include <CoreServices/AEDataModel.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include "portability/posix/FileDescriptor.h"
#include "portability/posix/SystemRoot.h"
#include "portability/transport/EndpointFolder.h"
#include "portability/transport/EndpointLock.h"

namespace portability {

namespace {

constexpr char kAnnouncement[] = "POS_ENDPOINT";
constexpr char kSocketExtension[] = ".socket";
constexpr mode_t kSocketMode = 0600;

FileDescriptor openSocket() {
    return aboveStandardStreams(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
}

bool fillAddress(sockaddr_un& address, const std::string& path) {
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return true;
}

// Opens the folder and locks it, because systemd-tmpfiles does not delete files in a locked folder of /tmp.
FileDescriptor openLocked(const FileDescriptor& folder) {
    FileDescriptor locked =
        aboveStandardStreams(openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (locked) flock(locked.get(), LOCK_SH | LOCK_NB);
    return locked;
}

// Creates the listening socket. The caller owns the lock, so a socket that already exists there has no owner
// and is deleted.
FileDescriptor listenAt(const FileDescriptor& folder, const std::string& name) {
    if (unlinkat(folder.get(), name.c_str(), 0) != 0 && errno != ENOENT) return FileDescriptor();
    FileDescriptor socket = openSocket();
    sockaddr_un address;
    if (!socket || !fillAddress(address, socketPath(folder, name))) return FileDescriptor();
    if (bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return FileDescriptor();
    // Corrects a mode that the umask restricted. No client can connect before listen().
    if (fchmodat(folder.get(), name.c_str(), kSocketMode, 0) != 0) return FileDescriptor();
    if (listen(socket.get(), SOMAXCONN) != 0) return FileDescriptor();
    return socket;
}

bool isListeningSocket(int descriptor) {
    int listening = 0;
    int type = 0;
    socklen_t size = sizeof listening;
    if (getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listening, &size) != 0 || listening == 0)
        return false;
    size = sizeof type;
    return getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_SEQPACKET;
}

bool setCloseOnExec(int descriptor) {
    return fcntl(descriptor, F_SETFD, FD_CLOEXEC) == 0;
}

bool limitConnectTime(const FileDescriptor& socket, const Deadline& deadline) {
    timespec left;
    if (deadline.remaining(left) == nullptr) return true;
    // Rounded up, because zero would mean no limit.
    const timeval limit{left.tv_sec, left.tv_nsec / 1000 + 1};
    return setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit) == 0;
}

Connecting connectTo(const FileDescriptor& socket, const sockaddr_un& address, const Deadline& deadline) {
    for (;;) {
        if (!limitConnectTime(socket, deadline)) return Connecting::failed;
        if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
            return Connecting::connected;
        }
        // EAGAIN: the owner is alive, but its queue of connections is full. EINTR: a signal arrived.
        if (errno != EINTR && errno != EAGAIN) return Connecting::failed;
        if (deadline.passed()) return Connecting::timedOut;
    }
}

// Connects to the socket `name` in the folder. Sets `connection` only if the result is `connected`.
Connecting connectIn(const FileDescriptor& folder, const std::string& name, const Deadline& deadline,
                     FileDescriptor& connection) {
    FileDescriptor socket = openSocket();
    sockaddr_un address;
    if (!socket || !fillAddress(address, socketPath(folder, name))) return Connecting::failed;
    const Connecting outcome = connectTo(socket, address, deadline);
    pid_t listener;
    if (outcome == Connecting::connected && !isOwnUser(socket.get(), listener)) return Connecting::failed;
    if (outcome == Connecting::connected) connection = std::move(socket);
    return outcome;
}

}  // namespace

EndpointClaim& EndpointClaim::operator=(EndpointClaim&& other) noexcept {
    std::swap(name_, other.name_);
    std::swap(folder_, other.folder_);
    std::swap(lock_, other.lock_);
    std::swap(listen_, other.listen_);
    return *this;
}

EndpointClaim::Outcome EndpointClaim::claim(OSType signature, EndpointClaim& result) {
    const std::string root = systemRoot();
    EndpointClaim claimed;
    claimed.name_ = endpointName(root, signature);
    const FileDescriptor folder = makeEndpointFolder(endpointPlaces(root));
    if (folder) claimed.folder_ = openLocked(folder);
    if (!claimed.folder_) return Outcome::failed;
    const Outcome outcome = claimed.openFiles(folder);
    if (outcome == Outcome::claimed) result = std::move(claimed);
    return outcome;
}

EndpointClaim::Outcome EndpointClaim::openFiles(const FileDescriptor& folder) {
    const ForkPause pause;
    FileDescriptor lock;
    switch (lockFile(folder, name_ + kLockExtension, lock)) {
        case LockOutcome::inUse:
            return Outcome::inUse;
        case LockOutcome::failed:
            return Outcome::failed;
        case LockOutcome::locked:
            break;
    }
    if (!lock_.take(std::move(lock))) return Outcome::failed;
    FileDescriptor socket = listenAt(folder, name_ + kSocketExtension);
    return socket && listen_.take(std::move(socket)) ? Outcome::claimed : Outcome::failed;
}

void EndpointClaim::withdraw() noexcept {
    try {
        // The files may already belong to the next owner.
        if (!folder_ || !isLockOf(folder_, name_ + kLockExtension, lock_.get())) return;
        unlinkat(folder_.get(), (name_ + kSocketExtension).c_str(), 0);
        // The lock file is deleted last: without it another owner may create files with the same names.
        unlinkat(folder_.get(), (name_ + kLockExtension).c_str(), 0);
    } catch (const std::bad_alloc&) {
        // The files stay, as after a crash.
    }
}

bool EndpointClaim::adoptInherited(OSType signature, EndpointClaim& result) {
    // getenv, not secure_getenv: the variable is also read in a set-user-ID program, because set-user-ID
    // hosts launch such programs. The entry need not be trusted, because only a process of this user can have
    // opened the lock file.
    const char* announced = getenv(kAnnouncement);
    if (announced == nullptr) return false;
    const std::string entry = std::string(kAnnouncement) + "=" + announced;
    int listenDescriptor = -1;
    int lockDescriptor = -1;
    const bool whole = std::sscanf(announced, "%*8[0-9A-F]:%d:%d", &listenDescriptor, &lockDescriptor) == 2;
    if (!whole || entry != inheritanceEntry(signature, listenDescriptor, lockDescriptor)) return false;
    unsetenv(kAnnouncement);
    if (!isListeningSocket(listenDescriptor) || !isLockFile(lockDescriptor)) return false;
    if (!setCloseOnExec(listenDescriptor) || !setCloseOnExec(lockDescriptor)) return false;
    EndpointClaim adopted;
    {
        const ForkPause pause;
        const bool isListenTaken = adopted.listen_.take(FileDescriptor(listenDescriptor));
        if (!adopted.lock_.take(FileDescriptor(lockDescriptor)) || !isListenTaken) return false;
    }
    if (!adopted.findFiles(signature)) return false;
    result = std::move(adopted);
    return true;
}

bool EndpointClaim::findFiles(OSType signature) {
    const std::string root = systemRoot();
    name_ = endpointName(root, signature);
    for (const EndpointPlace& place : endpointPlaces(root)) {
        FileDescriptor folder;
        if (openEndpointFolder(place, folder) != FolderState::open) continue;
        if (!isLockOf(folder, name_ + kLockExtension, lock_.get())) continue;
        folder_ = openLocked(folder);
        return true;
    }
    return false;
}

std::string EndpointClaim::inheritanceEntry(OSType signature, int listenDescriptor, int lockDescriptor) {
    char entry[64];
    std::snprintf(entry, sizeof entry, "%s=%08" PRIX32 ":%d:%d", kAnnouncement,
                  static_cast<uint32_t>(signature), listenDescriptor, lockDescriptor);
    return entry;
}

bool isOwnUser(int connected, pid_t& peer) {
    ucred credentials{};
    socklen_t size = sizeof credentials;
    if (getsockopt(connected, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) return false;
    peer = credentials.pid;
    return credentials.uid == geteuid();
}

Connecting connectToEndpoint(OSType signature, const Deadline& deadline, FileDescriptor& connection) {
    const std::string root = systemRoot();
    const std::string name = endpointName(root, signature) + kSocketExtension;
    for (const EndpointPlace& place : endpointPlaces(root)) {
        FileDescriptor folder;
        if (openEndpointFolder(place, folder) != FolderState::open) continue;
        const Connecting outcome = connectIn(folder, name, deadline, connection);
        if (outcome != Connecting::failed) return outcome;
    }
    return Connecting::failed;
}

int connectToEndpoint(OSType signature) {
    FileDescriptor connection;
    connectToEndpoint(signature, Deadline::afterTicks(kAEDefaultTimeout), connection);
    return connection.release();
}

}  // namespace portability
