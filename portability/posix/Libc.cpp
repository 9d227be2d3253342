#include <libc.h>
#include <sys/auxv.h>
#include <sys/syscall.h>

#include <atomic>

#include "portability/posix/ProcessMark.h"

// AT_SECURE is set by the kernel when the program starts. It also covers capabilities of the program's file.
int issetugid(void) {
    return getauxval(AT_SECURE) != 0 ? 1 : 0;
}

// Replaces the C library's function, which makes a system call each time. The library calls it in every exported
// function, and as on macOS that must cost next to nothing.
pid_t getpid(void) noexcept {
    static std::atomic<pid_t> process{0};
    static std::atomic<uint32_t> owner{0};  // processMark() of the process whose id is kept
    const uint32_t mark = portability::processMark();
    if (owner.load(std::memory_order_acquire) == mark) return process.load(std::memory_order_relaxed);
    const auto current = static_cast<pid_t>(syscall(SYS_getpid));
    process.store(current, std::memory_order_relaxed);
    owner.store(mark, std::memory_order_release);
    return current;
}
