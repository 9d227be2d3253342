// Helpers, screens and hosts that fail or end while an alert is open or about to open. No call may hang, and
// no process or window may be left over.
#include <signal.h>

#include <filesystem>
#include <fstream>

#include "tests/endtoend/AlertHosts.h"
#include "tests/support/RootProcesses.h"

namespace dovrel::test {
namespace {

namespace fs = std::filesystem;

using AlertFaults = AlertHosts;

// Helpers that fail.

TEST_F(AlertFaults, AHelperThatIsMissing_IsAnAlertThatIsNotShown) {
    removeHelper();
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertFaults, AHelperThatMayNotBeExecuted_IsAnAlertThatIsNotShown) {
    removeHelper();
    fs::copy_file(FAKE_ALERT_HELPER, helper());
    fs::permissions(helper(), fs::perms::owner_read | fs::perms::owner_write);
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertFaults, AHelperThatIsAFolder_IsAnAlertThatIsNotShown) {
    removeHelper();
    fs::create_directory(helper());
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertFaults, AHelperThatCannotBeStarted_IsAnAlertThatIsNotShown) {
    removeHelper();
    std::ofstream(helper()) << "#!/no/such/interpreter\n";
    fs::permissions(helper(), fs::perms::owner_all);
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertFaults, AHelperThatIsKilledWhileTheAlertIsOpen_IsAnAlertThatIsNotAnswered) {
    for (const char* way : {"call", "join"}) {
        start({way});
        EXPECT_NE(desktop_.waitForAlert(), "");
        signalHelper(SIGKILL);
        expectFailedCallAndEnd();
        EXPECT_TRUE(hasDesktopWithoutAlerts());
    }
    EXPECT_EQ(countOccurrences(systemLog(), "No Error dialogue shown"), 2u) << systemLog();
}

TEST_F(AlertFaults, AHelperThatNeverRepliesAndIsKilled_IsAnAlertThatIsNotAnswered) {
    useFakeHelper({"wait"});
    start({"join"});
    kill(fake_.process(), SIGKILL);
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertFaults, AHelperThatIsStoppedWhileTheAlertIsOpenAndKilled_IsAnAlertThatIsNotAnswered) {
    start({"join"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    signalHelper(SIGSTOP);
    EXPECT_FALSE(host_->hasLine(0));
    signalHelper(SIGKILL);
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertFaults, AHelperThatSendsNoEvents_IsAnAlertThatIsNotAnswered) {
    useFakeHelper({kShownEvent, "send nonsense", "wait"});
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
    EXPECT_TRUE(fake_.sawItsEnd());
}

// Screens and hosts that end.

TEST_F(AlertFaults, AScreenThatEndsWhileTheAlertIsOpen_IsAnAlertThatIsNotAnswered) {
    start({"join"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    desktop_.end();
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertFaults, AScreenThatCannotBeReached_IsAnAlertThatIsNotShown) {
    setenv("DISPLAY", ":4095", 1);
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertFaults, AHostThatIsKilledWhileItsAlertIsOpen_TakesTheWindowWithIt) {
    start({"join"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    host_->signal(SIGKILL);
    EXPECT_EQ(host_->wait(), -1);
    EXPECT_TRUE(hasDesktopWithoutAlerts());
}

TEST_F(AlertFaults, AHostThatIsKilledThoughAChildOfItStays_TakesTheWindowWithIt) {
    start({"join", "fork"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    host_->writeLine("fork");
    EXPECT_EQ(host_->readLine(), "child");
    host_->signal(SIGKILL);
    EXPECT_EQ(host_->wait(), -1);
    EXPECT_TRUE(hasDesktopWithoutAlerts());
    for (const pid_t child : findProcesses(root_.path(), "endtoend_alert_"))
        kill(child, SIGKILL);
}

}  // namespace
}  // namespace dovrel::test
