// The conditions under which alerts can be shown.
#import <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <future>
#include <string>

#include "tests/support/VariableChange.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/TemporaryFolder.h"

namespace {

class NSApplicationLoadTest : public testing::Test {
   protected:
    VariableChange display_{"DISPLAY", ":1"};
    VariableChange wayland_{"WAYLAND_DISPLAY", nullptr};
    VariableChange alerts_{"POS_ALERTS", nullptr};
};

}  // namespace

TEST_F(NSApplicationLoadTest, WithADisplayAndAHelper_IsYesAtEveryCall) {
    EXPECT_EQ(NSApplicationLoad(), YES);
    EXPECT_EQ(NSApplicationLoad(), YES);
}

TEST_F(NSApplicationLoadTest, OnAnyThread_IsYes) {
    EXPECT_EQ(std::async(std::launch::async, NSApplicationLoad).get(), YES);
}

TEST_F(NSApplicationLoadTest, WithoutADisplay_IsNo) {
    for (const char* none : {"", static_cast<const char*>(nullptr)}) {
        const VariableChange display("DISPLAY", none);
        EXPECT_EQ(NSApplicationLoad(), NO);
        const VariableChange wayland("WAYLAND_DISPLAY", none);
        EXPECT_EQ(NSApplicationLoad(), NO);
    }
}

TEST_F(NSApplicationLoadTest, WithAWaylandDisplayAlone_IsYes) {
    const VariableChange display("DISPLAY", nullptr);
    const VariableChange wayland("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_EQ(NSApplicationLoad(), YES);
}

TEST_F(NSApplicationLoadTest, WithAlertsToTheLog_IsNo) {
    const VariableChange alerts("POS_ALERTS", "log");
    EXPECT_EQ(NSApplicationLoad(), NO);
}

TEST_F(NSApplicationLoadTest, WithOtherWordsForAlerts_IsYes) {
    for (const char* word : {"", "Log", "window", "log "}) {
        const VariableChange alerts("POS_ALERTS", word);
        EXPECT_EQ(NSApplicationLoad(), YES) << word;
    }
}

// A program with a helper next to it, in a folder that every user may read.
class NSApplicationLoadElsewhere : public NSApplicationLoadTest {
   protected:
    NSApplicationLoadElsewhere() {
        std::filesystem::copy_file(ALERT_PROBE, probe_);
        EXPECT_EQ(chmod(folder_.path().c_str(), 0755), 0);
    }

    int runProbe() const { return dovrel::test::ChildProcess({probe_}).wait(); }

    const dovrel::test::TemporaryFolder folder_;
    const std::string probe_ = folder_.path("probe");
    const std::string helper_ = folder_.path("dovrel-alert");
};

TEST_F(NSApplicationLoadElsewhere, WithoutAHelperBesideTheProgram_IsNo) { EXPECT_EQ(runProbe(), NO); }

TEST_F(NSApplicationLoadElsewhere, WithAHelperBesideTheProgram_IsYes) {
    std::filesystem::create_symlink(ALERT_PROBE, helper_);
    EXPECT_EQ(runProbe(), YES);
}

TEST_F(NSApplicationLoadElsewhere, WithAHelperThatIsNotExecutable_IsNo) {
    folder_.write("dovrel-alert", "");
    EXPECT_EQ(runProbe(), NO);
}

TEST_F(NSApplicationLoadElsewhere, WithAFolderInTheHelpersPlace_IsNo) {
    std::filesystem::create_directory(helper_);
    EXPECT_EQ(runProbe(), NO);
}

// The user who starts the program controls the environment, and the environment
// decides which code the helper loads.
TEST_F(NSApplicationLoadElsewhere, InAProgramWithAnotherUsersOrGroupsRights_IsNo) {
    NEEDS_ROOT("give a program another user's rights");
    constexpr uid_t kNobody = 65534;
    std::filesystem::create_symlink(ALERT_PROBE, helper_);
    ASSERT_EQ(chown(probe_.c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(runProbe(), YES);
    for (const mode_t bit : {S_ISUID, S_ISGID}) {
        ASSERT_EQ(chmod(probe_.c_str(), bit | 0755), 0);
        EXPECT_EQ(runProbe(), NO);
    }
}
