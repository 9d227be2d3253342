// Child processes, open descriptors and threads, for tests.
#pragma once

#include <dirent.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

/// Runs `body` in a forked process. Returns its exit status, or -1 if a signal ended it.
template <class Body>
int inForkedProcess(Body body) {
    const pid_t child = fork();
    if (child == 0) _exit(body());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline int countEntries(const char* path) {
    DIR* folder = opendir(path);
    int count = 0;
    while (readdir(folder) != nullptr)
        ++count;
    closedir(folder);
    return count;
}

/// Returns how many descriptors this process has open.
inline int openDescriptors() {
    return countEntries("/proc/self/fd");
}

/// Returns how many threads this process has, plus a constant.
inline int countThreads() {
    return countEntries("/proc/self/task");
}
