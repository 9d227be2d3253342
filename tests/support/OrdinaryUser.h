// For tests of denied permissions, because root is denied none.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

/// Returns the result of `check` in a forked process without special rights. If the test runs as root, the
/// forked process first becomes the user "nobody".
template <typename Check>
bool holdsForOrdinaryUser(Check check) {
    constexpr uid_t kNobody = 65534;
    const pid_t child = fork();
    if (child == 0) {
        const bool isOrdinary = geteuid() != 0 || (setgid(kNobody) == 0 && setuid(kNobody) == 0);
        _exit(isOrdinary && check() ? 0 : 1);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
