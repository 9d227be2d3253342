// Cases that need a mounted file system.
#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string>

namespace dovrel::test {

/// Gives the calling process mounts that no other process sees, and that go with it. False if that is
/// refused: without root's rights it takes a system that lets users make namespaces.
inline bool takeOwnMounts() {
    const bool isRoot = geteuid() == 0;
    const std::string mapping = "0 " + std::to_string(geteuid()) + " 1";
    if (unshare(isRoot ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
    if (!isRoot) std::ofstream("/proc/self/uid_map") << mapping;
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// What `check` returns in a copy of this process with mounts of its own; nothing if these are refused.
template <typename Check>
std::optional<bool> holdsWithOwnMounts(Check check) {
    enum Result { kHolds, kDoesNotHold, kRefused };
    const pid_t child = fork();
    if (child == 0) _exit(!takeOwnMounts() ? kRefused : check() ? kHolds : kDoesNotHold);
    int status = -1;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) return false;
    if (WEXITSTATUS(status) == kRefused) return std::nullopt;
    return WEXITSTATUS(status) == kHolds;
}

}  // namespace dovrel::test

/// Fails unless `check` holds in a process with mounts of its own. Leaves the test, and says so, if these are
/// refused.
#define EXPECT_WITH_OWN_MOUNTS(check)                                                  \
    do {                                                                               \
        const auto holds = dovrel::test::holdsWithOwnMounts(check);                    \
        if (!holds) GTEST_SKIP() << "it is not permitted to mount a file system here"; \
        EXPECT_TRUE(*holds);                                                           \
    } while (false)
