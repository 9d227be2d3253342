// Cases that depend on not being the administrator, to whom no permission is denied.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

/// What `check` answers in a process without special rights: this one's copy, which becomes the user "nobody"
/// when it is the administrator's.
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
