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

// Also wakes threads of the host from within the go-between, because both have one memory.
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

// Belongs to the ChildProcess and to the thread that waits; whichever of them is last frees it.
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
    // It would keep the memory of a host that has ended.
    systemCall(SYS_prctl, PR_SET_PDEATHSIG, SIGKILL);
    const pid_t child = watch.program.start();
    // Before the host goes on: a descriptor that the host closes then must be closed everywhere.
    closeFrom(0);
    if (child >= 0) {
        enterPhase(watch.phase, kRunning);
        systemCall(SYS_wait4, child, address(&watch.status), __WALL);
    }
    systemCall(SYS_exit_group, 0);
    return 0;
}

// The go-between uses the errno of this thread, and dies with it.
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
        const SignalPause pause;  // the thread's signals are blocked from its beginning
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
