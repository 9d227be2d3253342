#include "foundation/ProcessTable.h"

#include <ApplicationServices/ApplicationServices.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/sysctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "processes/DetachedProcess.h"
#include "tests/portability/processes/ProbeReport.h"
#include "tests/portability/support/VariableChange.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace files = std::filesystem;
using portability::findProcess;
using portability::listProcesses;
using portability::Process;

std::optional<Process> findListed(pid_t id) {
    for (const Process& process : listProcesses()) {
        if (process.id == id) {
            return process;
        }
    }
    return std::nullopt;
}

class ProcessTable : public testing::Test {
  protected:
    // A probe that runs from `file` in the folder.
    std::unique_ptr<ProbeReport> run(const std::string& file) {
        const std::string program = folder_.path(file);
        installProbe(program);
        EXPECT_EQ(portability::startDetached({program, {program}, {}, {}}), 0);
        return std::make_unique<ProbeReport>(program);
    }

    bool isListedUnder(const std::string& root, pid_t id) const {
        const VariableChange change("POS_SYSTEM_ROOT", root.empty() ? "/" : folder_.path(root).c_str());
        return findListed(id).has_value();
    }

    const dovrel::test::TemporaryFolder folder_;
};

const std::string kServer = "Library/Application Support/Tessilor/pos/Merrowd.app/Contents/MacOS/Merrowd";

}  // namespace

TEST_F(ProcessTable, ServersOfTwoRoots_AreEachSeenUnderTheirOwnRootAlone) {
    const auto first = run("first/" + kServer);
    const auto second = run("second/" + kServer);
    EXPECT_TRUE(isListedUnder("first", first->id()));
    EXPECT_FALSE(isListedUnder("first", second->id()));
    EXPECT_TRUE(isListedUnder("second", second->id()));
    EXPECT_FALSE(isListedUnder("second", first->id()));
    EXPECT_FALSE(isListedUnder("", first->id()));
    EXPECT_FALSE(isListedUnder("", second->id()));
}

TEST_F(ProcessTable, BundleInTheRootButInNoFixedPlace_IsNotListed) {
    const auto probe = run("root/Elsewhere/Merrowd.app/Contents/MacOS/Merrowd");
    EXPECT_FALSE(isListedUnder("root", probe->id()));
}

TEST_F(ProcessTable, ProgramInNoBundle_IsListedUnderEveryRoot) {
    const auto probe = run("first/Library/tools/Merrowd");
    EXPECT_TRUE(isListedUnder("first", probe->id()));
    EXPECT_TRUE(isListedUnder("second", probe->id()));
    EXPECT_TRUE(isListedUnder("", probe->id()));
}

TEST_F(ProcessTable, RootGivenThroughASymbolicLink_IsTheSameRoot) {
    const auto probe = run("first/" + kServer);
    files::create_directory_symlink(folder_.path("first"), folder_.path("link"));
    EXPECT_TRUE(isListedUnder("link", probe->id()));
}

TEST_F(ProcessTable, ProgramWhoseFileIsDeletedOrReplaced_KeepsItsNameAndItsRoot) {
    const auto probe = run("first/" + kServer);
    files::remove(folder_.path("first/" + kServer));
    EXPECT_TRUE(isListedUnder("first", probe->id()));
    EXPECT_FALSE(isListedUnder("second", probe->id()));
    EXPECT_EQ(findProcess(probe->id())->name, "Merrowd");
    installProbe(folder_.path("first/" + kServer));
    EXPECT_EQ(findProcess(probe->id())->name, "Merrowd");
}

TEST_F(ProcessTable, ProgramWhoseNameEndsLikeTheDeletionMark_KeepsItsWholeName) {
    const auto probe = run("Merrowd (deleted)");
    EXPECT_EQ(findProcess(probe->id())->name, "Merrowd (deleted)");
}

TEST_F(ProcessTable, NamesWithBlanksAndParentheses_DoNotConfuseTheFields) {
    const auto probe = run("a) S 1 (b");
    const auto process = findProcess(probe->id());
    ASSERT_TRUE(process);
    EXPECT_EQ(process->name, "a) S 1 (b");
    EXPECT_EQ(process->group, probe->id());
}

TEST_F(ProcessTable, LongName_IsWholeHereAndCutTo16InTheKernelsRecord) {
    const auto probe = run("MerrowdWithAVeryLongName");
    EXPECT_EQ(findProcess(probe->id())->name, "MerrowdWithAVeryLongName");
    int name[3] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};
    std::vector<kinfo_proc> list(10000);
    std::size_t size = list.size() * sizeof(kinfo_proc);
    ASSERT_EQ(sysctl(name, 3, list.data(), &size, nullptr, 0), 0);
    list.resize(size / sizeof(kinfo_proc));
    const auto entry = std::find_if(list.begin(), list.end(), [&probe](const kinfo_proc& candidate) {
        return candidate.kp_proc.p_pid == probe->id();
    });
    ASSERT_NE(entry, list.end());
    EXPECT_STREQ(entry->kp_proc.p_comm, "MerrowdWithAVery");
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

TEST_F(ProcessTable, OwnProcess_HasItsFacts) {
    const auto own = findListed(getpid());
    ASSERT_TRUE(own);
    EXPECT_EQ(own->parent, getppid());
    EXPECT_EQ(own->user, geteuid());
    EXPECT_EQ(own->state, 'R');
    EXPECT_EQ(own->file, files::read_symlink("/proc/self/exe").string());
    EXPECT_GT(own->startTime, 0U);
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
