#include "processes/DetachedProcess.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

// Between its making and the new program, a process made here shares this one's memory, as after vfork:
// nothing is copied, however large the host is, no lock can be found taken, and a failure is reported by
// writing it down. A pipe that closes at the start of the program would not do: another thread that forks at
// the wrong moment keeps its other end open.
//
// What runs there may touch nothing of the host's. So it makes plain system calls, which no sanitizer and no
// wrapper of the host's notices.
#define DOVREL_IN_NEW_PROCESS __attribute__((no_sanitize("address", "thread", "undefined"), noinline))

// The C library's own name for clone. The thread sanitizer wraps the other one and takes what it makes for a
// copy of the process, with memory of its own.
extern "C" int __clone(int (*function)(void*), void* stack, int flags, void* argument, ...);

namespace portability {
namespace {

constexpr int kFirstInherited = 3;
constexpr int kMostInherited = 4;
constexpr int kLastSignal = 64;
constexpr long kSignalSetSize = kLastSignal / 8;
constexpr std::size_t kStackSize = 64 * 1024;
constexpr std::size_t kStackAlignment = 16;
constexpr mode_t kMask = 022;
constexpr long kMostDescriptors = 1 << 20;

// All that the new processes need, prepared before they exist.
struct Plan {
    const char* program;
    char* const* arguments;
    char* const* environment;
    const int* descriptors;
    int descriptorCount;
    void* secondStackTop;
    int failure;
};

DOVREL_IN_NEW_PROCESS long call(long number, long first = 0, long second = 0, long third = 0,
                                long fourth = 0) {
    return syscall(number, first, second, third, fourth);
}

template <typename Pointer>
DOVREL_IN_NEW_PROCESS long address(Pointer* pointer) {
    return reinterpret_cast<long>(pointer);
}

// A handler would run in the host's memory, and an ignored signal would stay ignored in the new program.
DOVREL_IN_NEW_PROCESS void resetSignals() {
    static const char kDefault[64] = {};  // every field of the kernel's record is 0 for the default action
    for (int signal = 1; signal <= kLastSignal; ++signal) {
        call(SYS_rt_sigaction, signal, address(kDefault), 0, kSignalSetSize);
    }
    call(SYS_rt_sigprocmask, SIG_SETMASK, address(kDefault), 0, kSignalSetSize);
}

DOVREL_IN_NEW_PROCESS void closeFrom(int first) {
    if (call(SYS_close_range, first, -1L, 0) == 0) {
        return;
    }
    for (long descriptor = first; descriptor < kMostDescriptors; ++descriptor) {
        call(SYS_close, descriptor);
    }
}

// First all out of the way, then each to its place: the old numbers may be among the new ones.
DOVREL_IN_NEW_PROCESS bool placeDescriptors(const Plan& plan) {
    const int aside = kFirstInherited + plan.descriptorCount;
    const long null = call(SYS_openat, AT_FDCWD, address("/dev/null"), O_RDWR);
    if (null < 0) {
        return false;
    }
    const long nullAside = call(SYS_fcntl, null, F_DUPFD, aside);
    if (nullAside < 0) {
        return false;
    }
    int moved[kMostInherited];
    for (int index = 0; index < plan.descriptorCount; ++index) {
        moved[index] = static_cast<int>(call(SYS_fcntl, plan.descriptors[index], F_DUPFD, aside));
        if (moved[index] < 0) {
            return false;
        }
    }
    for (int index = 0; index < aside; ++index) {
        const long source = index < kFirstInherited ? nullAside : moved[index - kFirstInherited];
        if (call(SYS_dup3, source, index, 0) < 0) {
            return false;
        }
    }
    closeFrom(aside);
    return true;
}

DOVREL_IN_NEW_PROCESS int runProgram(void* argument) {
    Plan& plan = *static_cast<Plan*>(argument);
    resetSignals();
    call(SYS_setsid);
    call(SYS_umask, kMask);
    if (call(SYS_chdir, address("/")) == 0 && placeDescriptors(plan)) {
        call(SYS_execve, address(plan.program), address(plan.arguments), address(plan.environment));
    }
    plan.failure = errno;
    call(SYS_exit_group, 127);
    return 0;
}

// Its only task is to be gone: what it has made is then nobody's child. What has failed, however, still holds
// its copies of the descriptors for a moment, and is waited for.
DOVREL_IN_NEW_PROCESS int runGoBetween(void* argument) {
    Plan& plan = *static_cast<Plan*>(argument);
    const int made = __clone(runProgram, plan.secondStackTop, CLONE_VM | CLONE_VFORK | SIGCHLD, argument);
    if (made < 0) {
        plan.failure = errno;
    } else if (plan.failure != 0) {
        call(SYS_wait4, made, 0, __WALL);
    }
    call(SYS_exit_group, 0);
    return 0;
}

// No handler of the host may run in a new process, so this thread takes no signal until both are on their
// own. The library's own call for this leaves out the signals that threads send each other.
class SignalPause {
  public:
    SignalPause() {
        std::array<unsigned char, kSignalSetSize> all;
        all.fill(0xFF);
        syscall(SYS_rt_sigprocmask, SIG_SETMASK, all.data(), before_.data(), kSignalSetSize);
    }
    ~SignalPause() { syscall(SYS_rt_sigprocmask, SIG_SETMASK, before_.data(), nullptr, kSignalSetSize); }
    SignalPause(const SignalPause&) = delete;
    SignalPause& operator=(const SignalPause&) = delete;

  private:
    std::array<unsigned char, kSignalSetSize> before_;
};

class Stack {
  public:
    Stack() : memory_(new char[kStackSize]) {}

    void* top() {
        const auto end = reinterpret_cast<std::uintptr_t>(memory_.get() + kStackSize);
        return memory_.get() + kStackSize - end % kStackAlignment;
    }

  private:
    std::unique_ptr<char[]> memory_;
};

// With no signal to announce its end, only a wait that asks for such processes sees it.
int makeGoBetween(Plan& plan) {
    Stack first;
    Stack second;
    plan.secondStackTop = second.top();
    const SignalPause pause;
    const pid_t goBetween = __clone(runGoBetween, first.top(), CLONE_VM | CLONE_VFORK, &plan);
    if (goBetween < 0) {
        return errno;
    }
    while (syscall(SYS_wait4, goBetween, nullptr, __WCLONE, nullptr) < 0 && errno == EINTR) {
    }
    return plan.failure;
}

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

int startDetached(const DetachedProcess& process) {
    if (process.descriptors.size() > kMostInherited) {
        return EINVAL;
    }
    const std::vector<char*> arguments = pointersTo(process.arguments);
    const std::vector<char*> environment = pointersTo(process.environment);
    Plan plan = {process.program.c_str(),
                 arguments.data(),
                 environment.data(),
                 process.descriptors.data(),
                 static_cast<int>(process.descriptors.size()),
                 nullptr,
                 0};
    return makeGoBetween(plan);
}

std::vector<std::string> environmentWithout(const std::string& variable) {
    const std::string removed = variable + '=';
    std::vector<std::string> entries;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        if (std::strncmp(*entry, removed.c_str(), removed.size()) != 0) {
            entries.emplace_back(*entry);
        }
    }
    return entries;
}

}  // namespace portability
