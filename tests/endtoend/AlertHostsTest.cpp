// Alerts in hosts of every kind. Whatever the main thread does, no call hangs, no process is left over, and
// the host's own state does not change.
#include "tests/endtoend/AlertHosts.h"

#include <filesystem>

namespace dovrel::test {
namespace {

// Main threads of several kinds.

TEST_F(AlertHosts, AMainThreadThatCallsItself_ShowsTheAlertAndGoesOn) {
    start({"call"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, AMainThreadInGLibsLoop_DoesNotKeepTheAlertOfAnotherThreadFromBeingShown) {
    start({"glib"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, AMainThreadThatJoinsTheCaller_DoesNotKeepItsAlertFromBeingShown) {
    start({"join"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, AMainThreadThatSleeps_DoesNotKeepTheAlertOfAnotherThreadFromBeingShown) {
    start({"sleep"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, AHostThatUnregistersInAnExitHandler_ShowsTheAlertAndEndsAsItWould) {
    root_.configure(refusal("unregister application", 23));
    start({"atexit"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, TwoThreadsThatFailAtOnce_ShowOneAlertAfterTheOther) {
    start({"join-two"});
    EXPECT_TRUE(desktop_.pressKey("Return"));
    EXPECT_EQ(host_->readLine(), "status 80000008");
    expectAlertThatIsAnswered();
}

// Other properties of hosts.

TEST_F(AlertHosts, AHostWithoutStandardStreams_ShowsTheAlertAndKeepsThemClosed) {
    start({"join", "closed"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, AHostWithoutStandardStreams_PassesTheHelperItsStreamAndNothingElse) {
    useFakeHelper({kShownEvent, pressedEvent(0)});
    start({"join", "closed"});
    expectFailedCallAndEnd();
    EXPECT_EQ(fake_.note("descriptors"), "0 1 2 3");
}

TEST_F(AlertHosts, AHostThatIgnoresTheEndOfItsChildren_ShowsTheAlert) {
    start({"join", "ignore"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, AHostThatReapsEveryChild_NeverMeetsTheHelper) {
    start({"join", "reap"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, AHostThatLoadedTheBundleByARelativePathAndLeftTheFolder_ShowsTheAlert) {
    start({"join", "relative"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, AHostThatIsLinkedWithTheLibrary_ShowsTheAlert) {
    root_.removeServer();
    const std::string folder = root_.path() + "/lib/";
    std::filesystem::create_directory(folder);
    std::filesystem::create_symlink(root_.library() + "/Contents/MacOS/Dovrel", folder + DOVREL_SONAME);
    setenv("LD_LIBRARY_PATH", folder.c_str(), 1);
    host_ =
        std::make_unique<ChildProcess>(std::vector<std::string>{LINKED_HOST}, root_.path() + "/system.log");
    EXPECT_TRUE(desktop_.pressKey("Return"));
    // Skips the lines that the library itself writes to standard output.
    std::string line;
    do {
        line = host_->readLine();
    } while (!line.empty() && line.rfind("status", 0) != 0);
    EXPECT_EQ(line, "status 80000008");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(AlertHosts, AHostWithAlertsToTheLog_ShowsNoWindowThoughThereIsADisplay) {
    setenv("POS_ALERTS", "log", 1);
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
    EXPECT_EQ(desktop_.mostAlerts(), 0u);
}

// The host's own state. GNUstep would set the locale from the environment, and would ignore
// SIGPIPE even if the host does not.

const std::vector<std::string> kHostsByPipeSignal[] = {{"join"}, {"join", "pipes"}};

TEST_F(AlertHosts, AHostsStateBeforeItLoadedTheLibrary_IsAsItWasAfterEachStepAndAnAlert) {
    setenv("LC_ALL", "C.UTF-8", 1);
    for (const std::vector<std::string>& host : kHostsByPipeSignal) {
        start(host);
        EXPECT_TRUE(desktop_.pressKey("Return"));
        expectFailedCallAndEnd();
    }
}

TEST_F(AlertHosts, AHostsStateBeforeItLoadedTheLibrary_IsAsItWasAfterEachStepAndALoggedFailure) {
    setenv("LC_ALL", "C.UTF-8", 1);
    setenv("POS_ALERTS", "log", 1);
    for (const std::vector<std::string>& host : kHostsByPipeSignal) {
        start(host);
        expectFailedCallAndEnd();
    }
    EXPECT_EQ(desktop_.mostAlerts(), 0u);
}

TEST_F(AlertHosts, AHostWhoseOutputNobodyReads_SurvivesALoggedFailure) {
    setenv("POS_ALERTS", "log", 1);
    for (const char* way : {"call", "join"}) {
        start({way, "broken"});
        expectFailedCallAndEnd();
    }
}

TEST_F(AlertHosts, AHostThatTakesOverOrphans_NeverMeetsTheHelper) {
    setenv("POS_ALERTS", "log", 1);
    start({"call"});  // launches the server, which the other host would take over
    expectFailedCallAndEnd();
    unsetenv("POS_ALERTS");
    start({"join", "subreaper", "reap"});
    EXPECT_TRUE(desktop_.pressKey("Return"));
    expectFailedCallAndEnd();
}

}  // namespace
}  // namespace dovrel::test
