// Checks the effects that started programs and their intermediate processes have on the host.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <string>
#include <vector>

#include "ChildProcessFixture.h"
#include "ProbeReport.h"
#include "portability/posix/OpenFolder.h"
#include "portability/processes/ProcessTable.h"
#include "tests/support/SignalAction.h"
#include "tests/support/WaitUntil.h"

namespace {

using dovrel::test::SignalAction;
using dovrel::test::waitUntil;
using portability::ChildProcess;

std::atomic<int> signalsTaken{0};

void countSignal(int) {
    ++signalsTaken;
}

// Returns the child processes of `parent`, including ended ones that it has not waited for.
std::vector<pid_t> listChildren(pid_t parent) {
    std::vector<pid_t> children;
    portability::OpenFolder processes("/proc");
    while (const dirent* entry = processes.next()) {
        const pid_t id = std::atoi(entry->d_name);
        const auto process = id > 0 ? portability::findProcess(id) : std::nullopt;
        if (process && process->parent == parent) {
            children.push_back(id);
        }
    }
    return children;
}

class ChildProcessHost : public ChildProcessFixture {};

}  // namespace

TEST_F(ChildProcessHost, Host_TakesNoSignalOfTheProgramsEndAndFindsNoChild) {
    const SignalAction handled(SIGCHLD, &countSignal);
    ChildProcess child;
    ASSERT_EQ(start(child, probe_), 0);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    ProbeReport(probe_).endProbe();
    EXPECT_EQ(waitForStatus(child), SIGKILL);
    EXPECT_EQ(signalsTaken, 0);
}

TEST_F(ChildProcessHost, HostThatWaitsForProcessesOfEveryKind_StillLearnsTheStatus) {
    ChildProcess child;
    ASSERT_EQ(startShell(child, "exit 3"), 0);
    while (waitpid(-1, nullptr, __WALL) > 0) {
    }
    EXPECT_EQ(waitForStatus(child), W_EXITCODE(3, 0));
}

TEST_F(ChildProcessHost, HostsSignals_ReachTheHostWhileTheProgramRuns) {
    const SignalAction handled(SIGUSR1, &countSignal);
    ChildProcess child;
    ASSERT_EQ(start(child, probe_), 0);
    kill(getpid(), SIGUSR1);
    EXPECT_TRUE(waitUntil([] { return signalsTaken == 1; }));
    ProbeReport(probe_).endProbe();
    waitForStatus(child);
}

TEST_F(ChildProcessHost, GoBetween_EndsWithTheHostAndTheProgramDoesNot) {
    int release[2];
    ASSERT_EQ(pipe2(release, O_CLOEXEC), 0);
    const pid_t host = fork();
    if (host == 0) {
        ChildProcess child;
        const int result = start(child, probe_);
        char byte = 0;
        _exit(result == 0 && read(release[0], &byte, 1) == 1 ? 0 : 1);
    }
    const ProbeReport report(probe_);
    std::vector<pid_t> goBetweens = listChildren(host);
    ASSERT_EQ(goBetweens.size(), 1u);
    EXPECT_EQ(write(release[1], "", 1), 1);
    int status = -1;
    ASSERT_EQ(waitpid(host, &status, 0), host);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(waitUntil([&] { return !portability::findProcess(goBetweens[0]); }));
    EXPECT_TRUE(portability::findProcess(report.id()));
    close(release[0]);
    close(release[1]);
}

TEST_F(ChildProcessHost, ProgramWhoseGoBetweenIsKilled_CountsAsKilled) {
    ChildProcess child;
    ASSERT_EQ(start(child, probe_), 0);
    const ProbeReport report(probe_);
    const std::vector<pid_t> goBetweens = listChildren(getpid());
    ASSERT_EQ(goBetweens.size(), 1u);
    EXPECT_TRUE(child.isRunning());
    kill(goBetweens[0], SIGKILL);
    EXPECT_EQ(waitForStatus(child), SIGKILL);
}

// A child subreaper becomes the parent of its descendants when their own parents end.
TEST_F(ChildProcessHost, ChildSubreaper_NeverFindsTheProgram) {
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    const SignalAction counted(SIGCHLD, &countSignal);
    const int before = signalsTaken;
    ChildProcess child;
    EXPECT_EQ(startShell(child, "exit 0"), 0);
    EXPECT_TRUE(child.waitForEnd(portability::Deadline::never()));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    EXPECT_EQ(signalsTaken, before);
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}
