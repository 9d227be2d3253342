#include "events/EventEndpoint.h"

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

#include "SystemRoot.h"
#include "events/EndpointFolder.h"
#include "events/FileDescriptor.h"

namespace portability {

namespace {

constexpr char kAnnouncement[] = "POS_EVENT_ENDPOINT";
constexpr char kSocketEnding[] = ".socket";
constexpr char kLockEnding[] = ".lock";

FileDescriptor openSocket() {
    return FileDescriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
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

// A lock on a file that somebody has removed meanwhile is no lock.
bool isStillThere(const FileDescriptor& folder, const std::string& name, int file) {
    struct stat opened;
    struct stat named;
    return fstat(file, &opened) == 0 &&
           fstatat(folder.get(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

EndpointClaim::Outcome lockEndpoint(const FileDescriptor& folder, const std::string& name,
                                    FileDescriptor& lock) {
    for (;;) {
        lock.reset(openat(folder.get(), name.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!lock) return EndpointClaim::Outcome::failed;
        if (flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
            return errno == EWOULDBLOCK ? EndpointClaim::Outcome::inUse : EndpointClaim::Outcome::failed;
        }
        if (isStillThere(folder, name, lock.get())) return EndpointClaim::Outcome::claimed;
    }
}

// Only the owner of the lock comes here, so a socket that lies there belongs to nobody any more.
FileDescriptor listenAt(const FileDescriptor& folder, const std::string& name) {
    if (unlinkat(folder.get(), name.c_str(), 0) != 0 && errno != ENOENT) return FileDescriptor();
    FileDescriptor socket = openSocket();
    sockaddr_un address;
    if (!socket || !fillAddress(address, socketPath(folder, name))) return FileDescriptor();
    if (bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return FileDescriptor();
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

bool isLockFile(int descriptor) {
    struct stat status;
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

bool setCloseOnExec(int descriptor) {
    return fcntl(descriptor, F_SETFD, FD_CLOEXEC) == 0;
}

bool limitConnectTime(const FileDescriptor& socket, const Deadline& deadline) {
    timespec left;
    if (deadline.remaining(left) == nullptr) return true;
    // Zero would mean no limit.
    const timeval limit{left.tv_sec, left.tv_nsec / 1000 + 1};
    return setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit) == 0;
}

Connecting connectTo(const FileDescriptor& socket, const sockaddr_un& address, const Deadline& deadline) {
    for (;;) {
        if (!limitConnectTime(socket, deadline)) return Connecting::failed;
        if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
            return Connecting::connected;
        }
        // The owner lives, but has not accepted for long; or a signal came.
        if (errno != EINTR && errno != EAGAIN) return Connecting::failed;
        if (deadline.passed()) return Connecting::timedOut;
    }
}

}  // namespace

EndpointClaim::EndpointClaim(EndpointClaim&& other) noexcept
    : signature_(other.signature_),
      listen_(std::exchange(other.listen_, -1)),
      lock_(std::exchange(other.lock_, -1)) {}

EndpointClaim& EndpointClaim::operator=(EndpointClaim&& other) noexcept {
    std::swap(signature_, other.signature_);
    std::swap(listen_, other.listen_);
    std::swap(lock_, other.lock_);
    return *this;
}

EndpointClaim::~EndpointClaim() {
    // The socket goes first: whoever gets the lock must not find ours listening.
    FileDescriptor lock(lock_);
    FileDescriptor listen(listen_);
}

EndpointClaim::Outcome EndpointClaim::claim(OSType signature, EndpointClaim& result) {
    const FileDescriptor folder = makeEndpointFolder();
    if (!folder) return Outcome::failed;
    const std::string name = endpointName(systemRoot(), signature);
    FileDescriptor lock;
    const Outcome outcome = lockEndpoint(folder, name + kLockEnding, lock);
    if (outcome != Outcome::claimed) return outcome;
    FileDescriptor socket = listenAt(folder, name + kSocketEnding);
    if (!socket) return Outcome::failed;
    EndpointClaim claimed;
    claimed.signature_ = signature;
    claimed.listen_ = socket.release();
    claimed.lock_ = lock.release();
    result = std::move(claimed);
    return Outcome::claimed;
}

void EndpointClaim::withdraw() noexcept {
    try {
        const FileDescriptor folder = openEndpointFolder();
        const std::string name = endpointName(systemRoot(), signature_);
        // The environment may lead elsewhere by now, to files that are not ours.
        if (!folder || !isStillThere(folder, name + kLockEnding, lock_)) return;
        unlinkat(folder.get(), (name + kSocketEnding).c_str(), 0);
        // The lock goes last: without it another owner may come and have files of the same names.
        unlinkat(folder.get(), (name + kLockEnding).c_str(), 0);
    } catch (const std::bad_alloc&) {
        // Then they stay, as after a crash.
    }
}

bool EndpointClaim::adoptInherited(OSType signature, EndpointClaim& result) {
    const char* announced = secure_getenv(kAnnouncement);
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
    adopted.signature_ = signature;
    adopted.listen_ = listenDescriptor;
    adopted.lock_ = lockDescriptor;
    result = std::move(adopted);
    return true;
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
    const FileDescriptor folder = openEndpointFolder();
    FileDescriptor socket = openSocket();
    sockaddr_un address;
    const std::string name = endpointName(systemRoot(), signature) + kSocketEnding;
    if (!folder || !socket || !fillAddress(address, socketPath(folder, name))) return Connecting::failed;
    const Connecting outcome = connectTo(socket, address, deadline);
    pid_t listener;
    if (outcome == Connecting::connected && !isOwnUser(socket.get(), listener)) return Connecting::failed;
    if (outcome == Connecting::connected) connection = std::move(socket);
    return outcome;
}

int connectToEndpoint(OSType signature) {
    FileDescriptor connection;
    connectToEndpoint(signature, Deadline::afterTicks(kAEDefaultTimeout), connection);
    return connection.release();
}

}  // namespace portability
