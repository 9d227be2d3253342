// Contract tests of the kernel's process table.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/sysctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

namespace {

int readList(void* buffer, std::size_t* size) {
    int name[3] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};
    return sysctl(name, 3, buffer, size, nullptr, 0);
}

std::vector<kinfo_proc> processes() {
    std::vector<kinfo_proc> list;
    for (;;) {
        std::size_t size = 0;
        if (readList(nullptr, &size) != 0) {
            return {};
        }
        list.resize(size / sizeof(kinfo_proc) + 100);
        size = list.size() * sizeof(kinfo_proc);
        if (readList(list.data(), &size) == 0 && size > 0) {
            list.resize(size / sizeof(kinfo_proc));
            return list;
        }
    }
}

const kinfo_proc* find(const std::vector<kinfo_proc>& list, pid_t id) {
    const auto found = std::find_if(list.begin(), list.end(),
                                    [id](const kinfo_proc& entry) { return entry.kp_proc.p_pid == id; });
    return found == list.end() ? nullptr : &*found;
}

}  // namespace

TEST(Sysctl, ProcessList_ContainsThisProcessWithItsNameCutTo16) {
    const std::vector<kinfo_proc> list = processes();
    const kinfo_proc* own = find(list, getpid());
    ASSERT_NE(own, nullptr);
    EXPECT_STREQ(own->kp_proc.p_comm,
                 std::string("portability_processes_contract_tests").substr(0, 16).c_str());
    EXPECT_EQ(own->kp_eproc.e_ppid, getppid());
    EXPECT_EQ(own->kp_eproc.e_pgid, getpgrp());
    EXPECT_EQ(own->kp_eproc.e_ucred.cr_uid, geteuid());
    EXPECT_EQ(own->kp_proc.p_stat, SRUN);
}

TEST(Sysctl, ProcessList_ContainsAStartedProcessUntilItHasEnded) {
    const pid_t child = fork();
    if (child == 0) {
        for (;;) {
            pause();
        }
    }
    ASSERT_GT(child, 0);
    EXPECT_NE(find(processes(), child), nullptr);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(find(processes(), child), nullptr);
}

// Other programs start and end processes at the same time. So the test repeats until the size is the same
// before and after reading the list.
TEST(Sysctl, NeededSize_HasRoomForFiveMoreProcesses) {
    std::size_t before = 0;
    std::size_t after = 1;
    std::size_t listed = 0;
    for (int attempt = 0; attempt < 1000 && before != after; ++attempt) {
        ASSERT_EQ(readList(nullptr, &before), 0);
        listed = processes().size();
        ASSERT_EQ(readList(nullptr, &after), 0);
    }
    ASSERT_EQ(before, after) << "never quiet";
    EXPECT_EQ(before % sizeof(kinfo_proc), 0U);
    EXPECT_GE(before / sizeof(kinfo_proc), listed + 5);
}

TEST(Sysctl, BufferForOneProcess_IsTooSmallAndNotOverrun) {
    std::vector<char> buffer(2 * sizeof(kinfo_proc), '#');
    std::size_t size = sizeof(kinfo_proc);
    errno = 0;
    EXPECT_EQ(readList(buffer.data(), &size), -1);
    EXPECT_EQ(errno, ENOMEM);
    EXPECT_EQ(size, 0U);
    EXPECT_TRUE(
        std::all_of(buffer.begin() + sizeof(kinfo_proc), buffer.end(), [](char c) { return c == '#'; }));
}

TEST(Sysctl, NameOfFourComponents_IsTheSameList) {
    int name[4] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL, 0};
    std::size_t size = 0;
    EXPECT_EQ(sysctl(name, 4, nullptr, &size, nullptr, 0), 0);
    EXPECT_GT(size, sizeof(kinfo_proc));
}

TEST(Sysctl, UnknownName_FailsAndLeavesTheSize) {
    int name[3] = {CTL_KERN, 9999, 0};
    std::size_t size = 77;
    EXPECT_EQ(sysctl(name, 3, nullptr, &size, nullptr, 0), -1);
    EXPECT_NE(errno, 0);
    EXPECT_EQ(size, 77U);
}
