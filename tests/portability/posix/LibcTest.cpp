// Contract tests of the C functions of a process's rights and identity.
#include <gtest/gtest.h>
#include <libc.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <filesystem>
#include <string>

#include "tests/support/NeedsRoot.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryFolder.h"

namespace {

/// A copy of the probe whose owner and mode may be changed.
class Issetugid : public testing::Test {
  protected:
    Issetugid() {
        std::filesystem::copy_file(RIGHTS_PROBE, probe_);
        EXPECT_EQ(chmod(folder_.path().c_str(), 0755), 0);
    }

    int runProbe() const {
        const pid_t child = fork();
        if (child == 0) {
            execl(probe_.c_str(), probe_.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status));
        return WEXITSTATUS(status);
    }

    const dovrel::test::TemporaryFolder folder_;
    const std::string probe_ = folder_.path("probe");
};

}  // namespace

TEST_F(Issetugid, ProgramWithTheRightsOfItsUser_Is0) {
    EXPECT_EQ(issetugid(), 0);
    EXPECT_EQ(runProbe(), 0);
}

TEST_F(Issetugid, ProgramWithAnotherUsersOrGroupsRights_IsOne) {
    NEEDS_ROOT("give a program another user's rights");
    constexpr uid_t kNobody = 65534;
    // Changing the owner of a file clears its set-id bits.
    ASSERT_EQ(chown(probe_.c_str(), kNobody, kNobody), 0);
    for (const mode_t bit : {S_ISUID, S_ISGID}) {
        ASSERT_EQ(chmod(probe_.c_str(), bit | 0755), 0);
        EXPECT_EQ(runProbe(), 1);
    }
}

TEST(Getpid, ForkedProcess_HasTheIdThatForkReturned_AndSoHaveItsChildren) {
    const auto hasOwnId = [] {
        int ends[2];
        if (pipe(ends) != 0) return 1;
        const pid_t before = getpid();
        const pid_t child = fork();
        if (child == 0) {
            const pid_t own[] = {getpid(), getpid(), getppid()};
            _exit(write(ends[1], own, sizeof own) == sizeof own ? 0 : 1);
        }
        pid_t seen[3] = {};
        const bool isRead = read(ends[0], seen, sizeof seen) == sizeof seen;
        waitpid(child, nullptr, 0);
        close(ends[0]);
        close(ends[1]);
        const bool isRight = isRead && seen[0] == child && seen[1] == child && seen[2] == before;
        return isRight && getpid() == before ? 0 : 1;
    };
    EXPECT_EQ(hasOwnId(), 0);
    EXPECT_EQ(inForkedProcess(hasOwnId), 0);
    EXPECT_EQ(hasOwnId(), 0);
}
