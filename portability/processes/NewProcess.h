// Making a process that shares this one's memory until its new program runs. Private to the layer.
//
// As after vfork, nothing is copied, however large the host is, and no lock can be found taken. A failure is
// reported by writing it down. A pipe that closes at the start of the program would not do: another thread
// that forks at the wrong moment keeps its other end open.
//
// Code in such a process must not touch anything of the host's. So it makes plain system calls, which no
// sanitizer and no wrapper of the host's notices, and it runs no handler and no exit function.
#pragma once

#include <sys/types.h>

#include <array>
#include <csignal>
#include <memory>

/// Marks a function that runs in a new process.
#define DOVREL_IN_NEW_PROCESS __attribute__((no_sanitize("address", "thread", "undefined"), noinline))

namespace portability {

/// The kernel's signals are 1 to kLastSignal; its sets of signals have that many bits.
constexpr int kLastSignal = 64;
constexpr long kSignalSetSize = kLastSignal / 8;

/// Returns -1 with errno set on failure. errno is the one of the thread that made the process.
DOVREL_IN_NEW_PROCESS long systemCall(long number, long first = 0, long second = 0, long third = 0,
                                      long fourth = 0);

template <typename Pointer>
DOVREL_IN_NEW_PROCESS long address(Pointer* pointer) {
    return reinterpret_cast<long>(pointer);
}

/// Gives a signal its default action, in the calling process only.
DOVREL_IN_NEW_PROCESS void resetAction(int signal);

/// Closes `first` and all descriptors above it.
DOVREL_IN_NEW_PROCESS void closeFrom(int first);

/// While it exists, the calling thread takes no signal, so that no handler of the host runs in a process that
/// the thread makes. Blocks also the signals that the C library keeps for itself.
class SignalPause {
  public:
    SignalPause();
    ~SignalPause();
    SignalPause(const SignalPause&) = delete;
    SignalPause& operator=(const SignalPause&) = delete;

  private:
    std::array<unsigned char, kSignalSetSize> before_;
};

/// The stack of a new process. Must exist as long as the process shares this memory.
class ProcessStack {
  public:
    ProcessStack();
    void* top() const;

  private:
    std::unique_ptr<char[]> memory_;
};

/// Makes a process that runs `function(argument)` on `stack`, with the descriptors and signal actions of this
/// process copied and its memory shared. `flags` are those of clone(2); its lowest byte is the signal that
/// announces the end of the process, 0 for none. Returns the id of the process, -1 with errno set on failure.
///
/// A process without such a signal that has not started a program is seen only by a wait for __WCLONE or
/// __WALL: not by SIGCHLD, and not by a wait for every child.
DOVREL_IN_NEW_PROCESS pid_t makeProcess(int (*function)(void*), void* stackTop, int flags, void* argument);

/// Blocks until a process without a signal has ended, and lets the system forget it.
void awaitProcess(pid_t process);

}  // namespace portability
