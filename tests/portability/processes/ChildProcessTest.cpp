#include "portability/processes/ChildProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
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

#include "ChildProcessFixture.h"
#include "ProbeReport.h"
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

class Child : public ChildProcessFixture {};

}  // namespace

TEST_F(Child, Program_ThatExits_LeavesItsStatus) {
    ChildProcess child;
    EXPECT_FALSE(child.isRunning());
    ASSERT_EQ(startShell(child, "exit 3"), 0);
    EXPECT_EQ(waitForStatus(child), W_EXITCODE(3, 0));
}

TEST_F(Child, Program_ThatASignalEnds_LeavesTheSignal) {
    ChildProcess child;
    ASSERT_EQ(startShell(child, "kill -TERM $$"), 0);
    EXPECT_EQ(waitForStatus(child), SIGTERM);
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
    waitForStatus(child);
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
                failures += waitForStatus(child) == W_EXITCODE(index, 0) ? 0 : 1;
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
    waitForStatus(child);
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
