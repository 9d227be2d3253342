#include "portability/transport/EndpointLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "portability/transport/EndpointFolder.h"

namespace portability {

namespace {

constexpr mode_t kMode = 0600;

FileDescriptor openExisting(const FileDescriptor& folder, const std::string& name, int flags) {
    return aboveStandardStreams(
        openat(folder.get(), name.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | flags, kMode));
}

FileDescriptor openOrMake(const FileDescriptor& folder, const std::string& name) {
    FileDescriptor file = openExisting(folder, name, O_CREAT);
    if (file || errno != EACCES) return file;
    const FileDescriptor denied(openat(folder.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (denied && isLockFile(denied.get()) && setMode(denied, kMode)) return openExisting(folder, name, 0);
    errno = EACCES;
    return file;
}

}  // namespace

LockOutcome lockFile(const FileDescriptor& folder, const std::string& name, FileDescriptor& lock) {
    for (;;) {
        FileDescriptor file = openOrMake(folder, name);
        if (!file) return LockOutcome::failed;
        if (!isLockFile(file.get())) {
            errno = EPERM;
            return LockOutcome::failed;
        }
        if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
            return errno == EWOULDBLOCK ? LockOutcome::inUse : LockOutcome::failed;
        }
        // The previous owner may have deleted the file before we locked it.
        if (!isLockOf(folder, name, file.get())) continue;
        lock = std::move(file);
        return LockOutcome::locked;
    }
}

bool isLockOf(const FileDescriptor& folder, const std::string& name, int lock) {
    struct stat opened;
    struct stat named;
    return fstat(lock, &opened) == 0 &&
           fstatat(folder.get(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

bool isLockFile(int descriptor) {
    struct stat status;
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

}  // namespace portability
