#include "portability/processes/PreparedProgram.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cerrno>

namespace portability {
namespace {

constexpr mode_t kMask = 022;
constexpr int kStartFailed = 127;

DOVREL_IN_NEW_PROCESS void resetSignals() {
    // Without this, a handler of the host would run in the host's memory, and ignored signals would stay
    // ignored in the new program.
    for (int signal = 1; signal <= kLastSignal; ++signal) {
        resetAction(signal);
    }
    static const char kNone[kSignalSetSize] = {};
    systemCall(SYS_rt_sigprocmask, SIG_SETMASK, address(kNone), 0, kSignalSetSize);
}

DOVREL_IN_NEW_PROCESS void raiseLimit(long resource) {
    // As prlimit64 takes it: the soft and the hard limit, with 64 bits on every machine.
    static const unsigned long long kNoLimit[2] = {~0ULL, ~0ULL};
    unsigned long long limit[2];
    if (systemCall(SYS_prlimit64, 0, resource, address(kNoLimit)) == 0) return;
    if (systemCall(SYS_prlimit64, 0, resource, 0, address(limit)) != 0) return;
    limit[0] = limit[1];
    systemCall(SYS_prlimit64, 0, resource, address(limit));
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

PreparedProgram::PreparedProgram(const std::string& program, const std::vector<std::string>& arguments,
                                 const std::vector<std::string>& environment,
                                 const std::vector<int>& descriptors)
    : arguments_(pointersTo(arguments)),
      environment_(pointersTo(environment)),
      stackTop_(stack_.top()),
      plan_{program.c_str(),
            arguments_.data(),
            environment_.data(),
            descriptors.data(),
            static_cast<int>(descriptors.size()),
            false,
            false,
            descriptors.size() > kMostDescriptors ? EINVAL : 0} {}

// Duplicates all descriptors above the final numbers first, then puts each at its number. In one step, a
// descriptor could overwrite one that is still needed.
bool PreparedProgram::placeDescriptors(const Plan& plan) {
    const int aside = plan.descriptorCount;
    const long null = systemCall(SYS_openat, AT_FDCWD, address("/dev/null"), O_RDWR);
    if (null < 0) {
        return false;
    }
    int moved[kMostDescriptors];
    for (int index = 0; index < plan.descriptorCount; ++index) {
        const long given = plan.descriptors[index] == kNullDevice ? null : plan.descriptors[index];
        moved[index] = static_cast<int>(systemCall(SYS_fcntl, given, F_DUPFD, aside));
        if (moved[index] < 0) {
            return false;
        }
    }
    for (int index = 0; index < plan.descriptorCount; ++index) {
        if (systemCall(SYS_dup3, moved[index], index, 0) < 0) {
            return false;
        }
    }
    closeFrom(aside);
    return true;
}

int PreparedProgram::run(void* argument) {
    Plan& plan = *static_cast<Plan*>(argument);
    resetSignals();
    systemCall(SYS_setsid);
    if (plan.leavesLimits) {
        for (const int resource : {RLIMIT_FSIZE, RLIMIT_CPU, RLIMIT_AS, RLIMIT_DATA}) {
            raiseLimit(resource);
        }
    }
    bool isReady = true;
    if (plan.leavesFolderAndMask) {
        systemCall(SYS_umask, kMask);
        isReady = systemCall(SYS_chdir, address("/")) == 0;
    }
    if (isReady && placeDescriptors(plan)) {
        systemCall(SYS_execve, address(plan.program), address(plan.arguments), address(plan.environment));
    }
    plan.failure = errno;
    systemCall(SYS_exit_group, kStartFailed);
    return 0;
}

pid_t PreparedProgram::start() {
    if (plan_.failure != 0) {
        return -1;
    }
    // If SIGCHLD were ignored, the system would reap the child itself, and no wait could return its status.
    resetAction(SIGCHLD);
    const pid_t child = makeProcess(&run, stackTop_, CLONE_VFORK | SIGCHLD, &plan_);
    if (child < 0) {
        plan_.failure = errno;
    } else if (plan_.failure != 0) {
        // The child has not quite ended yet and still has copies of the descriptors. So its end is awaited.
        systemCall(SYS_wait4, child, 0, __WALL);
        return -1;
    }
    return child;
}

}  // namespace portability
