#include "portability/processes/DetachedProcess.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "ProbeReport.h"
#include "ProgramsFixture.h"
#include "portability/processes/ProcessTable.h"
#include "tests/support/Processes.h"
#include "tests/support/SignalAction.h"
#include "tests/support/VariableChange.h"

namespace {

using dovrel::test::SignalAction;
using portability::DetachedProcess;
using portability::environmentWithout;
using portability::startDetached;

std::atomic<int> childSignals{0};

void countChildSignal(int) {
    ++childSignals;
}

// Returns true if `start` succeeds in a forked process, whose descriptors it may change freely.
template <typename Start>
bool startsInCopyOfThisProcess(Start start) {
    const pid_t host = fork();
    if (host == 0) {
        _exit(start() == 0 ? 0 : 1);
    }
    int status = -1;
    return waitpid(host, &status, 0) == host && status == 0;
}

class Detached : public ProgramsFixture {
  protected:
    int startProbe(const std::vector<int>& descriptors = {}) const {
        return startDetached({probe_, {probe_}, environmentWithout(std::string()), descriptors});
    }

    int start(const std::string& program) const { return startDetached({program, {program}, {}, {}}); }
};

}  // namespace

TEST_F(Detached, Process_IsInASessionOfItsOwnAndNobodysChild) {
    ASSERT_EQ(startProbe(), 0);
    const ProbeReport report(probe_);
    EXPECT_EQ(report["session"], report["id"]);
    EXPECT_EQ(report["group"], report["id"]);
    EXPECT_NE(report["parent"], std::to_string(getpid()));
    EXPECT_EQ(waitpid(-1, nullptr, __WALL), -1);
    EXPECT_EQ(errno, ECHILD) << "this process has no child at all";
}

TEST_F(Detached, Process_HasDefinedSurroundings) {
    const mode_t before = umask(077);
    const int result = startProbe();
    umask(before);
    ASSERT_EQ(result, 0);
    const ProbeReport report(probe_);
    EXPECT_EQ(report["folder"], "/");
    EXPECT_EQ(report["mask"], std::to_string(022));
    EXPECT_EQ(report["arguments"], "1");
    EXPECT_EQ(report["descriptor 0"], "/dev/null");
    EXPECT_EQ(report["descriptor 1"], "/dev/null");
    EXPECT_EQ(report["descriptor 2"], "/dev/null");
}

TEST_F(Detached, Process_InheritsNoDescriptorButTheGivenOnesInTheirOrder) {
    std::vector<int> open;
    for (int count = 0; count < 40; ++count) {
        open.push_back(::open("/dev/zero", O_RDONLY));  // deliberately without close-on-exec
    }
    const int first = ::open("/dev/full", O_RDONLY | O_CLOEXEC);
    const int second = ::open("/dev/random", O_RDONLY | O_CLOEXEC);
    const int result = startProbe({second, first});
    for (const int descriptor : open) {
        close(descriptor);
    }
    close(first);
    close(second);
    ASSERT_EQ(result, 0);
    const ProbeReport report(probe_);
    EXPECT_EQ(report["descriptor 3"], "/dev/random");
    EXPECT_EQ(report["descriptor 4"], "/dev/full");
    int count = 0;
    for (const auto& fact : report.all()) {
        count += fact.first.rfind("descriptor ", 0) == 0 ? 1 : 0;
    }
    EXPECT_EQ(count, 5);
}

TEST_F(Detached, Process_DescriptorsThatHaveEachOthersNumbers_AreNotMixedUp) {
    ASSERT_TRUE(startsInCopyOfThisProcess([this] {
        const int zero = ::open("/dev/zero", O_RDONLY);
        const int full = ::open("/dev/full", O_RDONLY);
        const int zeroAside = fcntl(zero, F_DUPFD_CLOEXEC, 100);
        const int fullAside = fcntl(full, F_DUPFD_CLOEXEC, 100);
        dup2(zeroAside, 4);
        dup2(fullAside, 3);
        return startProbe({4, 3});
    }));
    const ProbeReport report(probe_);
    EXPECT_EQ(report["descriptor 3"], "/dev/zero");
    EXPECT_EQ(report["descriptor 4"], "/dev/full");
}

TEST_F(Detached, Process_OfAHostWithoutStandardStreams_HasThem) {
    ASSERT_TRUE(startsInCopyOfThisProcess([this] {
        close(0);
        close(1);
        close(2);
        return startProbe({::open("/dev/full", O_RDONLY)});  // has number 0
    }));
    const ProbeReport report(probe_);
    EXPECT_EQ(report["descriptor 0"], "/dev/null");
    EXPECT_EQ(report["descriptor 2"], "/dev/null");
    EXPECT_EQ(report["descriptor 3"], "/dev/full");
}

TEST_F(Detached, Process_OutlivesTheOneThatStartedIt) {
    ASSERT_TRUE(startsInCopyOfThisProcess([this] { return startProbe(); }));
    const ProbeReport report(probe_);
    EXPECT_TRUE(portability::findProcess(report.id()));
}

TEST_F(Detached, Process_HasNoSignalBlockedOrIgnored) {
    const SignalAction ignored(SIGINT, SIG_IGN);
    const SignalAction pipe(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigset_t before;
    sigfillset(&blocked);
    pthread_sigmask(SIG_SETMASK, &blocked, &before);
    const int result = startProbe();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_EQ(result, 0);
    const ProbeReport report(probe_);
    EXPECT_EQ(report["SigBlk"], "0000000000000000");
    EXPECT_EQ(report["SigIgn"], "0000000000000000");
}

TEST_F(Detached, Caller_KeepsItsSignalMaskAndActions) {
    const SignalAction handled(SIGUSR1, &countChildSignal);
    sigset_t mask;
    sigset_t after;
    sigemptyset(&mask);
    sigaddset(&mask, SIGUSR2);
    pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    ASSERT_EQ(startProbe(), 0);
    const ProbeReport report(probe_);
    pthread_sigmask(SIG_SETMASK, nullptr, &after);
    EXPECT_TRUE(sigismember(&after, SIGUSR2));
    EXPECT_FALSE(sigismember(&after, SIGUSR1));
    EXPECT_FALSE(sigismember(&after, SIGTERM));
    childSignals = 0;
    raise(SIGUSR1);
    EXPECT_EQ(childSignals, 1);
    sigemptyset(&mask);
    pthread_sigmask(SIG_SETMASK, &mask, nullptr);
}

TEST_F(Detached, Caller_ThatHandlesOrIgnoresEndsOfChildren_NoticesNothing) {
    {
        const SignalAction handled(SIGCHLD, &countChildSignal);
        childSignals = 0;
        ASSERT_EQ(startProbe(), 0);
        ProbeReport report(probe_);
        report.endProbe();
        EXPECT_EQ(start(folder_.path("absent")), ENOENT);
        EXPECT_EQ(childSignals, 0);
    }
    const SignalAction ignored(SIGCHLD, SIG_IGN);
    EXPECT_EQ(start(folder_.path("absent")), ENOENT);
    ASSERT_EQ(startProbe(), 0);
    const ProbeReport report(probe_);
    EXPECT_GT(report.id(), 0);
}

TEST_F(Detached, FailedStart_ReturnsItsCause) {
    EXPECT_EQ(start(folder_.path("absent")), ENOENT);
    EXPECT_EQ(start(makeProgram("closed", "#!/bin/sh\n", 0644)), EACCES) << "for the administrator too";
    EXPECT_EQ(start(folder_.path()), EACCES);
    EXPECT_EQ(start(makeProgram("text", "no program at all", 0755)), ENOEXEC);
    EXPECT_EQ(start(makeProgram("script", "#!/no/such/interpreter\n", 0755)), ENOENT);
    EXPECT_EQ(startDetached({probe_, {probe_}, {}, {1, 1, 1, 1, 1}}), EINVAL) << "too many descriptors";
    EXPECT_EQ(startProbe({12345}), EBADF);
}

TEST_F(Detached, FailedStart_HoldsNoDescriptorAfterwards) {
    for (int count = 0; count < 200; ++count) {
        int pipe[2];
        ASSERT_EQ(pipe2(pipe, O_CLOEXEC | O_NONBLOCK), 0);
        ASSERT_EQ(startDetached({folder_.path("absent"), {"absent"}, {}, {pipe[1]}}), ENOENT);
        close(pipe[1]);
        char byte;
        ASSERT_EQ(read(pipe[0], &byte, 1), 0) << "somebody still holds the other end, at start " << count;
        close(pipe[0]);
    }
}

TEST_F(Detached, ManyThreads_StartingAtOnce_AllSucceed) {
    constexpr int kThreads = 4;
    constexpr int kStarts = 10;
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index) {
        threads.emplace_back([this, &failures] {
            for (int count = 0; count < kStarts; ++count) {
                failures += startDetached({"/bin/true", {"true"}, {}, {}}) == 0 ? 0 : 1;
                failures += start(folder_.path("absent")) == ENOENT ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(waitpid(-1, nullptr, __WALL), -1);
}

TEST(EnvironmentWithout, Variable_IsLeftOutAndOthersStay) {
    const VariableChange one("DOVREL_TEST_ONE", "1");
    const VariableChange two("DOVREL_TEST_ONE_MORE", "2");
    const std::vector<std::string> all = environmentWithout(std::string());
    const std::vector<std::string> without = environmentWithout("DOVREL_TEST_ONE");
    EXPECT_THAT(all, testing::Contains("DOVREL_TEST_ONE=1"));
    EXPECT_THAT(without, testing::Not(testing::Contains("DOVREL_TEST_ONE=1")));
    EXPECT_THAT(without, testing::Contains("DOVREL_TEST_ONE_MORE=2"));
    EXPECT_EQ(without.size() + 1, all.size());
}

// The system makes a child subreaper the parent of orphaned descendants. A launch cannot prevent that.
TEST_F(Detached, Process_OfAChildSubreaper_BecomesItsChild) {
    ASSERT_TRUE(startsInCopyOfThisProcess([this] {
        prctl(PR_SET_CHILD_SUBREAPER, 1);
        if (start("/bin/true") != 0) return 1;
        return waitpid(-1, nullptr, 0) > 0 ? 0 : 1;
    }));
}

TEST_F(Detached, Process_HasNoLimitOfItsHost) {
    constexpr rlim_t kHostsLimit = 1 << 30;
    std::vector<decltype(RLIMIT_FSIZE)> resources = {RLIMIT_FSIZE, RLIMIT_CPU};
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    resources.push_back(RLIMIT_DATA);  // a sanitizer needs more memory than any limit
#endif
    ASSERT_EQ(inForkedProcess([this, &resources] {
                  for (const auto resource : resources) {
                      rlimit limit;
                      getrlimit(resource, &limit);
                      limit.rlim_cur = kHostsLimit;
                      if (setrlimit(resource, &limit) != 0) return 1;
                  }
                  return startProbe();
              }),
              0);
    const ProbeReport report(probe_);
    for (const auto resource : {RLIMIT_FSIZE, RLIMIT_CPU, RLIMIT_DATA}) {
        rlimit limit;
        ASSERT_EQ(prlimit(report.id(), resource, nullptr, &limit), 0);
        EXPECT_EQ(limit.rlim_cur, limit.rlim_max) << resource;
        EXPECT_NE(limit.rlim_cur, kHostsLimit) << resource;
    }
}
