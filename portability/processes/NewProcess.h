// Creates a process that shares this process's memory until it starts a new program. Private to the layer.
//
// As with vfork, no memory is copied, however large the host is, and no lock can be found locked. A failure
// to start the program is reported through the shared memory. A pipe that closes when the program starts
// would not be reliable: if another thread forks at that moment, the copy keeps the pipe open.
//
// Code in such a process must not change anything that belongs to the host. So it makes plain
// system calls, which neither a sanitizer nor a wrapper of the host sees, and it runs no signal
// handler and no exit function.
#pragma once

#include <sys/types.h>

#include <array>
#include <csignal>
#include <memory>

/// Marks a function that runs in such a process.
#define DOVREL_IN_NEW_PROCESS __attribute__((no_sanitize("address", "thread", "undefined"), noinline))

namespace portability {

/// The kernel's signals have the numbers 1 to kLastSignal. Its signal sets have one bit for each.
constexpr int kLastSignal = 64;
constexpr long kSignalSetSize = kLastSignal / 8;

/// Makes a system call. Returns -1 and sets errno on failure. errno is the variable of the thread
/// that created the process.
DOVREL_IN_NEW_PROCESS long systemCall(long number, long first = 0, long second = 0, long third = 0,
                                      long fourth = 0);

template <typename Pointer>
DOVREL_IN_NEW_PROCESS long address(Pointer* pointer) {
    return reinterpret_cast<long>(pointer);
}

/// Sets the signal to its default action, only in the calling process.
DOVREL_IN_NEW_PROCESS void resetAction(int signal);

/// Closes all descriptors from `first` upwards.
DOVREL_IN_NEW_PROCESS void closeFrom(int first);

/// Blocks all signals on the calling thread while the object exists, including those that the C library
/// reserves for itself. So no handler of the host runs in a process that the thread creates meanwhile.
class SignalPause {
  public:
    SignalPause();
    ~SignalPause();
    SignalPause(const SignalPause&) = delete;
    SignalPause& operator=(const SignalPause&) = delete;

  private:
    std::array<unsigned char, kSignalSetSize> before_;
};

/// The stack of a new process. It must exist as long as that process shares this process's memory.
class ProcessStack {
  public:
    ProcessStack();
    void* top() const;

  private:
    std::unique_ptr<char[]> memory_;
};

/// Creates a process that runs `function(argument)` on the stack that ends at `stackTop`. The process has
/// copies of this process's descriptors and signal actions, and shares its memory. `flags` are those of
/// clone(2). Their lowest byte is the signal that reports the end of the process, 0 for none. Returns the
/// process ID, or -1 with errno set on failure.
///
/// A process without that signal causes no SIGCHLD. Until it has started a program, only a wait with __WCLONE
/// or __WALL finds it; a wait for every child does not.
DOVREL_IN_NEW_PROCESS pid_t makeProcess(int (*function)(void*), void* stackTop, int flags, void* argument);

/// Waits until a process without such a signal has ended, and reaps it.
void awaitProcess(pid_t process);

}  // namespace portability
