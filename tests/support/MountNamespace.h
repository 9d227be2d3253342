// Mounts that nobody else sees, for tests of fixed places. For forked processes; takes root's rights.
#pragma once

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
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

/// What `check` returns in a copy of this process with mounts of its own; nothing if it may not have any.
template <typename Check>
std::optional<bool> holdsWithOwnMounts(Check check) {
    enum Result { kHolds, kDoesNotHold, kRefused };
    const pid_t child = fork();
    if (child == 0) _exit(!enterMountNamespace() ? kRefused : check() ? kHolds : kDoesNotHold);
    int status = -1;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) return false;
    if (WEXITSTATUS(status) == kRefused) return std::nullopt;
    return WEXITSTATUS(status) == kHolds;
}

/// Leaves the test if mounts of one's own are refused, and says so.
#define EXPECT_WITH_OWN_MOUNTS(check)                                                 \
    do {                                                                              \
        const auto holds = holdsWithOwnMounts(check);                                 \
        if (!holds) GTEST_SKIP() << "root's right is missing to mount a file system"; \
        EXPECT_TRUE(*holds);                                                          \
    } while (false)
