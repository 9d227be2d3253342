// Private mounts for tests of fixed paths. Use only in forked processes that run as root.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>

#include "tests/support/Processes.h"

/// Returns whether the root folder of this process is a folder inside a file system, as `chroot` makes it.
inline bool isChroot() {
    struct statx root;
    return statx(AT_FDCWD, "/", 0, STATX_BASIC_STATS, &root) == 0 &&
           (root.stx_attributes & STATX_ATTR_MOUNT_ROOT) == 0;
}

/// Gives this process and its children their own mounts. Returns false with `errno` if that fails:
/// EPERM means that it is not permitted.
inline bool enterMountNamespace() {
    if (unshare(CLONE_NEWNS) != 0) return false;
    // EINVAL means that the process runs in a chroot. The tool that made the chroot has unshared its mounts.
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 || errno == EINVAL;
}

/// Mounts an empty folder with this mode (such as "1777") over `path`.
inline bool mountEmptyFolder(const std::string& path, const std::string& mode) {
    return mount("tmpfs", path.c_str(), "tmpfs", 0, ("mode=" + mode).c_str()) == 0;
}

/// Returns the result of `check` in a copy of this process with its own mounts, and false if it cannot
/// have them; nothing if the system does not permit them to this process.
template <typename Check>
std::optional<bool> holdsWithOwnMounts(Check check) {
    enum Result { kHolds, kDoesNotHold, kRefused };
    const int result = inForkedProcess([&check] {
        if (!enterMountNamespace()) return errno == EPERM ? kRefused : kDoesNotHold;
        return check() ? kHolds : kDoesNotHold;
    });
    if (result == kRefused) return std::nullopt;
    return result == kHolds;
}

/// Skips the test with a message if the process is not permitted to have its own mounts.
#define EXPECT_WITH_OWN_MOUNTS(check)                                                 \
    do {                                                                              \
        const auto holds = holdsWithOwnMounts(check);                                 \
        if (!holds) GTEST_SKIP() << "root's right is missing to mount a file system"; \
        EXPECT_TRUE(*holds);                                                          \
    } while (false)
