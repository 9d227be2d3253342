#include "ProcessTableTest.h"

#include <ApplicationServices/ApplicationServices.h>
#include <signal.h>
#include <sys/sysctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/NeedsRoot.h"

namespace files = std::filesystem;
using portability::findProcess;

using ProcessTable = ProcessTableTest;

TEST_F(ProcessTable, ProgramWhoseNameEndsLikeTheDeletionMark_KeepsItsWholeName) {
    const auto probe = run("Probed (deleted)");
    EXPECT_EQ(findProcess(probe->id())->name, "Probed (deleted)");
}

TEST_F(ProcessTable, NamesWithBlanksAndParentheses_DoNotConfuseTheFields) {
    const auto probe = run("a) S 1 (b");
    const auto process = findProcess(probe->id());
    ASSERT_TRUE(process);
    EXPECT_EQ(process->name, "a) S 1 (b");
    EXPECT_EQ(process->group, probe->id());
}

TEST_F(ProcessTable, LongName_IsWholeHereAndCutTo16InTheKernelsRecord) {
    const auto probe = run("ProbedWithAVeryLongName");
    EXPECT_EQ(findProcess(probe->id())->name, "ProbedWithAVeryLongName");
    int name[3] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};
    std::vector<kinfo_proc> list(10000);
    std::size_t size = list.size() * sizeof(kinfo_proc);
    ASSERT_EQ(sysctl(name, 3, list.data(), &size, nullptr, 0), 0);
    list.resize(size / sizeof(kinfo_proc));
    const auto entry = std::find_if(list.begin(), list.end(), [&probe](const kinfo_proc& candidate) {
        return candidate.kp_proc.p_pid == probe->id();
    });
    ASSERT_NE(entry, list.end());
    EXPECT_STREQ(entry->kp_proc.p_comm, "ProbedWithAVeryL");
    EXPECT_EQ(entry->kp_proc.p_stat, SSLEEP);
}

TEST_F(ProcessTable, EndedProcessThatNobodyWaitedFor_IsNotListed) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(0);
    }
    siginfo_t ended;
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(findListed(child));
    EXPECT_FALSE(findProcess(child));
    waitpid(child, nullptr, 0);
}

// In a container there may be no such task.
TEST_F(ProcessTable, TasksOfTheKernel_AreNeitherListedNorFound) {
    constexpr unsigned long kKernelTask = 0x200000;
    for (const auto& entry : files::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "stat");
        std::string status;
        std::getline(file, status);
        std::istringstream fields(status.substr(std::min(status.size(), status.rfind(')') + 1)));
        std::string skipped;
        unsigned long flags = 0;
        for (int i = 0; i < 6; ++i)
            fields >> skipped;
        if (!(fields >> flags) || (flags & kKernelTask) == 0) continue;
        const pid_t task = std::stoi(entry.path().filename());
        EXPECT_FALSE(findProcess(task)) << status;
        EXPECT_FALSE(findListed(task)) << status;
    }
}

TEST_F(ProcessTable, Count_IsAtLeastThatOfAllProcesses) {
    const auto entries = files::directory_iterator("/proc");
    const auto count = std::count_if(begin(entries), end(entries), [](const files::directory_entry& entry) {
        return std::isdigit(static_cast<unsigned char>(entry.path().filename().c_str()[0])) != 0;
    });
    // Other processes may start and end meanwhile.
    EXPECT_GT(portability::countProcesses() + 5, static_cast<std::size_t>(count));
}

TEST_F(ProcessTable, OwnProcess_HasItsFacts) {
    const auto own = findListed(getpid());
    ASSERT_TRUE(own);
    EXPECT_EQ(own->parent, getppid());
    EXPECT_EQ(own->user, geteuid());
    EXPECT_EQ(own->state, 'R');
    EXPECT_EQ(own->file, files::read_symlink("/proc/self/exe").string());
    EXPECT_GT(own->startTime, 0U);
}

TEST_F(ProcessTable, ProcessOfAnotherUser_IsFoundButNotListed) {
    NEEDS_ROOT("become another user");
    constexpr uid_t kOther = 65534;
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        const char result = setuid(kOther) == 0 ? 'y' : 'n';
        if (write(ready[1], &result, 1) == 1) pause();
        _exit(1);
    }
    char result = 0;
    ASSERT_EQ(read(ready[0], &result, 1), 1);
    ASSERT_EQ(result, 'y');
    const auto found = findProcess(child);
    EXPECT_TRUE(found && found->user == kOther);
    EXPECT_FALSE(findListed(child));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(ready[0]);
    close(ready[1]);
}

TEST_F(ProcessTable, StoppedProcess_IsListedAsStopped) {
    const auto probe = run("probe");
    ASSERT_GT(probe->id(), 0);
    kill(probe->id(), SIGSTOP);
    while (findProcess(probe->id())->state != 'T') {
    }
    EXPECT_EQ(findListed(probe->id())->state, 'T');
    kill(probe->id(), SIGCONT);
}

TEST_F(ProcessTable, SerialNumberOfTheFirstProcess_IsNotTheSpecialOne) {
    ProcessSerialNumber number = {};
    ASSERT_EQ(GetProcessForPID(1, &number), noErr);
    EXPECT_NE(number.highLongOfPSN, 0U);
    pid_t pid = -7;
    ASSERT_EQ(GetProcessPID(&number, &pid), noErr);
    EXPECT_EQ(pid, 1);
    const ProcessSerialNumber special = {0, 1};
    EXPECT_EQ(GetProcessPID(&special, &pid), procNotFound);
}

TEST_F(ProcessTable, FindProcess_NumbersOfNoProcess_AreNothing) {
    EXPECT_FALSE(findProcess(0));
    EXPECT_FALSE(findProcess(-1));
    EXPECT_FALSE(findProcess(0x7FFFFFFF));
}
