#include "portability/processes/NewProcess.h"

#include <sched.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

// The C library's internal name of clone(). The thread sanitizer replaces clone() and treats the new process
// as a copy with its own memory, which is wrong here.
extern "C" int __clone(int (*function)(void*), void* stack, int flags, void* argument, ...);

namespace portability {
namespace {

constexpr std::size_t kStackSize = 64 * 1024;
constexpr std::size_t kStackAlignment = 16;
constexpr long kMostDescriptors = 1 << 20;

}  // namespace

long systemCall(long number, long first, long second, long third, long fourth) {
    return syscall(number, first, second, third, fourth);
}

void resetAction(int signal) {
    static const char kDefault[64] = {};  // the default action: every field is 0
    systemCall(SYS_rt_sigaction, signal, address(kDefault), 0, kSignalSetSize);
}

void closeFrom(int first) {
    if (systemCall(SYS_close_range, first, -1L, 0) == 0) {
        return;
    }
    for (long descriptor = first; descriptor < kMostDescriptors; ++descriptor) {
        systemCall(SYS_close, descriptor);
    }
}

// Does not use pthread_sigmask, because that leaves out the signals that the C library uses between threads.
SignalPause::SignalPause() {
    std::array<unsigned char, kSignalSetSize> all;
    all.fill(0xFF);
    syscall(SYS_rt_sigprocmask, SIG_SETMASK, all.data(), before_.data(), kSignalSetSize);
}

SignalPause::~SignalPause() {
    syscall(SYS_rt_sigprocmask, SIG_SETMASK, before_.data(), nullptr, kSignalSetSize);
}

ProcessStack::ProcessStack() : memory_(new char[kStackSize]) {}

void* ProcessStack::top() const {
    const auto end = reinterpret_cast<std::uintptr_t>(memory_.get() + kStackSize);
    return memory_.get() + kStackSize - end % kStackAlignment;
}

pid_t makeProcess(int (*function)(void*), void* stackTop, int flags, void* argument) {
    return __clone(function, stackTop, flags | CLONE_VM, argument);
}

void awaitProcess(pid_t process) {
    while (syscall(SYS_wait4, process, nullptr, __WCLONE, nullptr) < 0 && errno == EINTR) {
    }
}

}  // namespace portability
