// Mounts that nobody else sees, for tests of fixed places. For forked processes; takes root's rights.
#pragma once

#include <sched.h>
#include <sys/mount.h>

#include <cerrno>
#include <string>

/// From now on this process and its children have mounts of their own. False where that is not allowed.
inline bool enterMountNamespace() {
    if (unshare(CLONE_NEWNS) != 0) return false;
    // EINVAL: inside a chroot. Whoever made that has unshared its mounts already.
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 || errno == EINVAL;
}

/// Puts an empty folder with this mode ("1777") in the place of `path`.
inline bool mountEmptyFolder(const std::string& path, const std::string& mode) {
    return mount("tmpfs", path.c_str(), "tmpfs", 0, ("mode=" + mode).c_str()) == 0;
}
