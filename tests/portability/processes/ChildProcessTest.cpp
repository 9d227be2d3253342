#include "portability/processes/ChildProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "ProbeReport.h"
#include "ProgramsFixture.h"
#include "portability/posix/OpenFolder.h"
#include "portability/processes/DetachedProcess.h"
#include "portability/processes/PreparedProgram.h"
#include "portability/processes/ProcessTable.h"
#include "tests/support/SignalAction.h"
#include "tests/support/VariableChange.h"
#include "tests/support/WaitUntil.h"

namespace {

using dovrel::test::SignalAction;
using dovrel::test::waitUntil;
using portability::ChildProcess;
using portability::kNullDevice;

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

// Returns true if this process has no children, not even ended ones. It does not reap any.
bool hasNoChild() {
    siginfo_t info;
    return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT | __WALL) == -1 && errno == ECHILD;
}

class Child : public ProgramsFixture {
  protected:
    ~Child() override { EXPECT_TRUE(waitUntil(&hasNoChild)) << "a process of the test is left"; }

    static int start(ChildProcess& child, const std::string& program,
                     const std::vector<std::string>& arguments = {},
                     const std::vector<int>& descriptors = {0, 1, 2}) {
        std::vector<std::string> all = {program};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return child.start({program, all, portability::environmentWithout(std::string()), descriptors});
    }

    static int startShell(ChildProcess& child, const std::string& script) {
        return start(child, "/bin/sh", {"-c", script});
    }

    static int toStatus(const ChildProcess& child) {
        EXPECT_TRUE(waitUntil([&child] { return !child.isRunning(); }));
        return child.waitStatus();
    }
};

}  // namespace

TEST_F(Child, Program_ThatExits_LeavesItsStatus) {
    ChildProcess child;
    EXPECT_FALSE(child.isRunning());
    ASSERT_EQ(startShell(child, "exit 3"), 0);
    EXPECT_EQ(toStatus(child), W_EXITCODE(3, 0));
}

TEST_F(Child, Program_ThatASignalEnds_LeavesTheSignal) {
    ChildProcess child;
    ASSERT_EQ(startShell(child, "kill -TERM $$"), 0);
    EXPECT_EQ(toStatus(child), SIGTERM);
}

TEST_F(Child, Program_HasThisProcesssFolderMaskAndEnvironment) {
    const VariableChange variable("DOVREL_TEST_VARIABLE", "value");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path());
    const mode_t mask = umask(027);
    ChildProcess child;
    const int result = start(child, probe_);
    umask(mask);
    std::filesystem::current_path(before);
    ASSERT_EQ(result, 0);
    const ProbeReport report(probe_);
    EXPECT_EQ(report["folder"], folder_.path());
    EXPECT_EQ(report["mask"], std::to_string(027));
    EXPECT_EQ(report["environment DOVREL_TEST_VARIABLE"], "value");
}

TEST_F(Child, Program_IsInASessionOfItsOwnWithNoSignalBlockedOrIgnored) {
    const SignalAction ignored(SIGINT, SIG_IGN);
    const SignalAction ignoredChildren(SIGCHLD, SIG_IGN);
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    ChildProcess child;
    const int result = start(child, probe_);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_EQ(result, 0);
    const ProbeReport report(probe_);
    EXPECT_EQ(report["session"], report["id"]);
    EXPECT_EQ(report["SigBlk"], "0000000000000000");
    EXPECT_EQ(report["SigIgn"], "0000000000000000");
}

TEST_F(Child, Program_InheritsTheGivenDescriptorsInTheirOrderAndNoOther) {
    const int zero = open("/dev/zero", O_RDONLY);  // deliberately without close-on-exec
    const int full = open("/dev/full", O_RDONLY | O_CLOEXEC);
    ChildProcess child;
    const int result = start(child, probe_, {}, {full, kNullDevice, zero, full});
    close(zero);
    close(full);
    ASSERT_EQ(result, 0);
    const ProbeReport report(probe_);
    EXPECT_EQ(report["descriptor 0"], "/dev/full");
    EXPECT_EQ(report["descriptor 1"], "/dev/null");
    EXPECT_EQ(report["descriptor 2"], "/dev/zero");
    EXPECT_EQ(report["descriptor 3"], "/dev/full");
    EXPECT_EQ(report["descriptor 4"], "(none)");
}

TEST_F(Child, DescriptorThatHostAndProgramClose_IsClosed) {
    int input[2];
    int output[2];
    ASSERT_EQ(pipe2(input, O_CLOEXEC), 0);
    ASSERT_EQ(pipe2(output, O_CLOEXEC | O_NONBLOCK), 0);
    ChildProcess child;
    ASSERT_EQ(start(child, "/bin/sh", {"-c", "exec 3>&-; read line"}, {input[0], 1, 2, output[1]}), 0);
    close(output[1]);
    char byte = 0;
    EXPECT_TRUE(waitUntil([&] { return read(output[0], &byte, 1) == 0; })) << "the go-between holds it";
    EXPECT_TRUE(child.isRunning());
    for (const int descriptor : {input[0], input[1], output[0]}) {
        close(descriptor);
    }
    toStatus(child);
}

TEST_F(Child, FailedStart_ReturnsItsCauseAndHoldsNothing) {
    struct Case {
        std::string program;
        int failure;
    };
    for (const Case& expected : {Case{folder_.path("absent"), ENOENT}, Case{folder_.path(), EACCES},
                                 Case{makeProgram("closed", "#!/bin/sh\n", 0644), EACCES},
                                 Case{makeProgram("text", "no program", 0755), ENOEXEC},
                                 Case{makeProgram("script", "#!/no/such/interpreter\n", 0755), ENOENT}}) {
        int pipe[2];
        ASSERT_EQ(pipe2(pipe, O_CLOEXEC | O_NONBLOCK), 0);
        ChildProcess child;
        EXPECT_EQ(start(child, expected.program, {}, {0, 1, pipe[1]}), expected.failure) << expected.program;
        EXPECT_FALSE(child.isRunning());
        close(pipe[1]);
        char byte = 0;
        EXPECT_EQ(read(pipe[0], &byte, 1), 0) << "somebody still holds the other end: " << expected.program;
        close(pipe[0]);
    }
    ChildProcess child;
    EXPECT_EQ(start(child, probe_, {}, {12345}), EBADF);
    ChildProcess other;
    EXPECT_EQ(start(other, probe_, {}, std::vector<int>(9, 1)), EINVAL) << "too many descriptors";
}

TEST_F(Child, Host_TakesNoSignalOfTheProgramsEndAndFindsNoChild) {
    const SignalAction handled(SIGCHLD, &countSignal);
    ChildProcess child;
    ASSERT_EQ(start(child, probe_), 0);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    ProbeReport(probe_).endProbe();
    EXPECT_EQ(toStatus(child), SIGKILL);
    EXPECT_EQ(signalsTaken, 0);
}

TEST_F(Child, HostThatWaitsForProcessesOfEveryKind_StillLearnsTheStatus) {
    ChildProcess child;
    ASSERT_EQ(startShell(child, "exit 3"), 0);
    while (waitpid(-1, nullptr, __WALL) > 0) {
    }
    EXPECT_EQ(toStatus(child), W_EXITCODE(3, 0));
}

TEST_F(Child, HostsSignals_ReachTheHostWhileTheProgramRuns) {
    const SignalAction handled(SIGUSR1, &countSignal);
    ChildProcess child;
    ASSERT_EQ(start(child, probe_), 0);
    kill(getpid(), SIGUSR1);
    EXPECT_TRUE(waitUntil([] { return signalsTaken == 1; }));
    ProbeReport(probe_).endProbe();
    toStatus(child);
}

TEST_F(Child, Program_RunsOnWithoutItsObjectAndLeavesNoZombie) {
    {
        ChildProcess child;
        ASSERT_EQ(start(child, probe_), 0);
    }
    ProbeReport report(probe_);
    EXPECT_TRUE(portability::findProcess(report.id()));
    report.endProbe();
    EXPECT_TRUE(waitUntil(&hasNoChild));
}

TEST_F(Child, GoBetween_EndsWithTheHostAndTheProgramDoesNot) {
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

TEST_F(Child, ProgramWhoseGoBetweenIsKilled_CountsAsKilled) {
    ChildProcess child;
    ASSERT_EQ(start(child, probe_), 0);
    const ProbeReport report(probe_);
    const std::vector<pid_t> goBetweens = listChildren(getpid());
    ASSERT_EQ(goBetweens.size(), 1u);
    EXPECT_TRUE(child.isRunning());
    kill(goBetweens[0], SIGKILL);
    EXPECT_EQ(toStatus(child), SIGKILL);
}

TEST_F(Child, ManyThreads_StartingAtOnce_GetTheirOwnStatus) {
    constexpr int kThreads = 4;
    constexpr int kStarts = 10;
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index) {
        threads.emplace_back([this, index, &failures] {
            for (int count = 0; count < kStarts; ++count) {
                ChildProcess child;
                failures += startShell(child, "exit " + std::to_string(index)) == 0 ? 0 : 1;
                failures += toStatus(child) == W_EXITCODE(index, 0) ? 0 : 1;
                ChildProcess absent;
                failures += start(absent, folder_.path("absent")) == ENOENT ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
}

TEST_F(Child, Program_ThatIsToLeaveFolderAndMask_HasDefinedOnes) {
    const mode_t before = umask(077);
    ChildProcess child;
    const int failure =
        child.start({probe_, {probe_}, portability::environmentWithout(std::string()), {0, 1, 2}, true});
    umask(before);
    ASSERT_EQ(failure, 0);
    const ProbeReport report(probe_);
    EXPECT_EQ(report["folder"], "/");
    EXPECT_EQ(report["mask"], std::to_string(022));
    kill(report.id(), SIGKILL);
    toStatus(child);
}

TEST_F(Child, Wait_EndsWithTheProgramOrAtItsDeadline) {
    ChildProcess child;
    EXPECT_TRUE(child.waitForEnd(portability::Deadline::never())) << "nothing was started";
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    ASSERT_EQ(start(child, "/bin/cat", {}, {ends[0], 1, 2}), 0);
    EXPECT_FALSE(child.waitForEnd(portability::Deadline::afterTicks(1)));
    close(ends[0]);
    close(ends[1]);
    EXPECT_TRUE(child.waitForEnd(portability::Deadline::never()));
    EXPECT_EQ(child.waitStatus(), 0);
}

// A child subreaper becomes the parent of its descendants when their own parents end.
TEST_F(Child, ChildSubreaper_NeverFindsTheProgram) {
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
