#include "portability/processes/ChildProcess.h"

#include <linux/futex.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <system_error>

#include "portability/processes/PreparedProgram.h"

namespace portability {
namespace {

enum Phase : int { kStarting, kRunning, kEnded };

// Can be called in the go-between. It wakes the host's threads from there, because both
// processes share their memory.
DOVREL_IN_NEW_PROCESS void enterPhase(int& phase, int next) {
    __atomic_store_n(&phase, next, __ATOMIC_RELEASE);
    systemCall(SYS_futex, address(&phase), FUTEX_WAKE_PRIVATE, INT_MAX);
}

int currentPhase(const int& phase) {
    return __atomic_load_n(&phase, __ATOMIC_ACQUIRE);
}

void waitForPhaseAfter(int& phase, int before) {
    while (currentPhase(phase) == before) {
        syscall(SYS_futex, &phase, FUTEX_WAIT_PRIVATE, before, nullptr);
    }
}

}  // namespace

// Shared by the ChildProcess and the waiting thread. The last of the two to release it frees it.
struct ChildProcess::Watch {
    explicit Watch(const ChildProgram& given)
        : child(given), program(child.program, child.arguments, child.environment, child.descriptors) {
        if (child.leavesFolderAndMask) program.leaveFolderAndMask();
    }

    const ChildProgram child;
    PreparedProgram program;
    const ProcessStack stack;
    int phase = kStarting;
    int failure = 0;
    int status = SIGKILL;

    DOVREL_IN_NEW_PROCESS static int runGoBetween(void* watch);
    void waitForGoBetween();
};

int ChildProcess::Watch::runGoBetween(void* argument) {
    Watch& watch = *static_cast<Watch*>(argument);
    // Without this, the go-between would keep the host's memory allocated after the host has ended.
    systemCall(SYS_prctl, PR_SET_PDEATHSIG, SIGKILL);
    const pid_t child = watch.program.start();
    // Must be done before start() returns in the host. A descriptor that the host then closes must not stay
    // open in the go-between.
    closeFrom(0);
    if (child >= 0) {
        enterPhase(watch.phase, kRunning);
        systemCall(SYS_wait4, child, address(&watch.status), __WALL);
    }
    systemCall(SYS_exit_group, 0);
    return 0;
}

// Runs on its own thread. The go-between shares the errno of that thread, and is killed when the thread ends.
void ChildProcess::Watch::waitForGoBetween() {
    const pid_t goBetween = makeProcess(&runGoBetween, stack.top(), 0, this);
    if (goBetween < 0) {
        failure = errno;
    } else {
        awaitProcess(goBetween);
        failure = program.failure();
    }
    enterPhase(phase, kEnded);
}

ChildProcess::~ChildProcess() {
    if (!thread_.joinable()) {
        return;
    }
    if (isRunning()) {
        thread_.detach();
    } else {
        thread_.join();
    }
}

int ChildProcess::start(const ChildProgram& program) {
    watch_ = std::make_shared<Watch>(program);
    try {
        const SignalPause pause;  // so that the thread starts with all signals blocked
        thread_ = std::thread([watch = watch_] { watch->waitForGoBetween(); });
    } catch (const std::system_error& error) {
        return error.code().value();
    }
    waitForPhaseAfter(watch_->phase, kStarting);
    return watch_->failure;
}

bool ChildProcess::isRunning() const {
    return watch_ != nullptr && currentPhase(watch_->phase) == kRunning;
}

bool ChildProcess::waitForEnd(const Deadline& deadline) const {
    while (isRunning() && !deadline.passed()) {
        timespec left;
        syscall(SYS_futex, &watch_->phase, FUTEX_WAIT_PRIVATE, kRunning, deadline.remaining(left));
    }
    return !isRunning();
}

int ChildProcess::waitStatus() const {
    return watch_ != nullptr && currentPhase(watch_->phase) == kEnded ? watch_->status : 0;
}

}  // namespace portability
