#include "platform/files/SuccessorFile.h"

#include <copyfile.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/files/FileWriting.h"

namespace dovrel {

namespace {

constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kUnfinished = 0200;
constexpr int kMostNames = 10;

std::string nameBeside(const std::string& path, int number) {
    return path + ".new" + std::to_string(number);
}

bool isNoSpaceError(int error) {
    return error == ENOSPC || error == EDQUOT;
}

bool isPlainFileAt(const std::string& path, struct stat& status) {
    return lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool namesFile(const std::string& path, int descriptor) {
    struct stat named;
    struct stat opened;
    return isPlainFileAt(path, named) && fstat(descriptor, &opened) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

bool isUnfinished(const std::string& path) {
    struct stat status;
    return isPlainFileAt(path, status) && (status.st_mode & kPermissionBits) == kUnfinished &&
           status.st_uid == geteuid() && status.st_nlink == 1;
}

bool lock(int descriptor) {
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

void removeLeftover(const std::string& path) {
    if (!isUnfinished(path)) return;
    const int descriptor = open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return;
    // The file is deleted while it is locked. A writer that has just created it then notices that it is gone.
    if (lock(descriptor) && namesFile(path, descriptor) && isUnfinished(path)) std::remove(path.c_str());
    close(descriptor);
}

}  // namespace

void SuccessorFile::removeLeftovers(const std::string& path) {
    for (int number = 0; number < kMostNames; ++number)
        removeLeftover(nameBeside(path, number));
}

SuccessorFile::SuccessorFile(const std::string& oldPath) {
    for (int number = 0; number < kMostNames && descriptor_ < 0; ++number) {
        if (!create(nameBeside(oldPath, number)) && errno != EEXIST) break;
    }
}

SuccessorFile::~SuccessorFile() {
    if (descriptor_ < 0) return;
    if (!hasTakenOver_) std::remove(path_.c_str());
    close(descriptor_);
}

// Returns false if the file could not be created. With errno EEXIST another name may be free.
bool SuccessorFile::create(const std::string& path) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kUnfinished);
    if (descriptor < 0) {
        hasNoRoom_ = isNoSpaceError(errno);
        return false;
    }
    // Another writer may have mistaken this file for a leftover. Then that writer holds the lock or has
    // deleted the file. On a file system without locks no writer deletes leftovers.
    const bool isTaken = !lock(descriptor) && errno == EWOULDBLOCK;
    if (isTaken || !namesFile(path, descriptor)) {
        close(descriptor);
        errno = EEXIST;
        return false;
    }
    // A host's umask may have narrowed the mode, by which later writers recognize a leftover.
    static_cast<void>(fchmod(descriptor, kUnfinished));
    path_ = path;
    descriptor_ = descriptor;
    return true;
}

bool SuccessorFile::hasSameOwners(const struct stat& old) const {
    struct stat status;
    return fstat(descriptor_, &status) == 0 && status.st_uid == old.st_uid && status.st_gid == old.st_gid;
}

bool SuccessorFile::copyMode(const struct stat& old) const {
    struct stat status;
    return fchmod(descriptor_, old.st_mode & kPermissionBits) == 0 && fstat(descriptor_, &status) == 0 &&
           status.st_mode == old.st_mode;
}

bool SuccessorFile::write(const std::string& text) const {
    if (!writeAt(descriptor_, text.data(), text.size(), 0)) return false;
    // Some file systems report only at close() that there is no room. So a copy of the descriptor is closed.
    // The file itself stays open, because closing it would release its lock.
    const int copy = dup(descriptor_);
    return copy >= 0 && close(copy) == 0;
}

SuccessorFile::Outcome SuccessorFile::replace(const std::string& path, const struct stat& old,
                                              const std::string& text) {
    SuccessorFile successor(path);
    if (successor.hasNoRoom_) return Outcome::kFailed;
    if (successor.descriptor_ < 0 || !successor.hasSameOwners(old) || hasExtendedAttributes(successor.path_))
        return Outcome::kRefused;
    if (!successor.write(text)) return Outcome::kFailed;
    if (!successor.copyMode(old)) return Outcome::kRefused;
    if (std::rename(successor.path_.c_str(), path.c_str()) != 0)
        return isNoSpaceError(errno) ? Outcome::kFailed : Outcome::kRefused;
    successor.hasTakenOver_ = true;
    return Outcome::kReplaced;
}

bool hasExtendedAttributes(const std::string& path) {
    return copyfile(path.c_str(), nullptr, nullptr, COPYFILE_CHECK | COPYFILE_ACL | COPYFILE_XATTR) != 0;
}

}  // namespace dovrel
