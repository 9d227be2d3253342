// Alerts in hosts of every kind: whatever a host's main thread does, whatever becomes of the helper, the
// screen or the host itself, no call hangs, nothing is left behind, and what is the host's stays as it was.
#include <signal.h>

#include <filesystem>
#include <fstream>

#include "tests/endtoend/EndToEnd.h"
#include "tests/support/Desktop.h"
#include "tests/support/FakeAlertHelper.h"
#include "tests/support/RootProcesses.h"

namespace dovrel::test {
namespace {

namespace fs = std::filesystem;

class AlertHosts : public testing::Test {
  protected:
    AlertHosts() {
        root_.configure(
            "//misbehave\nSTR:error\n//misbehaveCommand\nSTR:execute command\n//errorCode\nINT:28\n"
            "//errorText\nSTR:The lid is open.\n");
    }

    ~AlertHosts() override {
        host_.reset();
        EXPECT_TRUE(waitUntil([this] { return helpers().empty(); })) << "a helper still runs";
        EXPECT_LE(desktop_.mostAlerts(), 1u) << "two alerts at once";
        if (HasFailure()) std::cerr << "The host's system log:\n" << systemLog() << std::endl;
    }

    /// Starts a host and waits until it is about to make its call.
    void start(const std::vector<std::string>& waysAndHabits) {
        std::vector<std::string> command = {ALERT_HOST, root_.library()};
        command.insert(command.end(), waysAndHabits.begin(), waysAndHabits.end());
        host_ = std::make_unique<ChildProcess>(command, root_.path() + "/system.log");
        EXPECT_EQ(host_->readLine(), "ready");
    }

    /// The call comes back as failed, all is as before, and the host ends by itself.
    void expectFailedCallAndEnd() {
        EXPECT_EQ(host_->readLine(), "status 80000008");
        EXPECT_EQ(host_->readLine(), "end");
        EXPECT_EQ(host_->wait(), 0);
    }

    void expectAlertThatIsAnswered() {
        EXPECT_TRUE(desktop_.pressKey("Return"));
        expectFailedCallAndEnd();
        EXPECT_EQ(desktop_.mostAlerts(), 1u);
    }

    void expectLogged() const {
        EXPECT_EQ(countOf(systemLog(), "No Error dialogue shown"), 1u) << systemLog();
        EXPECT_EQ(countOf(systemLog(), "The lid is open."), 1u) << systemLog();
    }

    std::string helper() const { return root_.library() + "/Contents/MacOS/dovrel-alert"; }

    /// The built helper is another name of the same file, so it is never written to.
    void removeHelper() const { EXPECT_TRUE(fs::remove(helper())); }

    void useFakeHelper(const std::vector<std::string>& commands) const {
        removeHelper();
        fs::create_symlink(FAKE_ALERT_HELPER, helper());
        fake_.follow(commands);
    }

    std::vector<pid_t> helpers() const { return processesOf(root_.path(), "dovrel-alert"); }

    void signalHelper(int signal) const {
        const std::vector<pid_t> running = helpers();
        ASSERT_EQ(running.size(), 1u);
        EXPECT_EQ(kill(running.front(), signal), 0);
    }

    bool hasDesktopWithoutAlerts() const {
        return waitUntil([this] { return desktop_.alerts().empty() && helpers().empty(); });
    }

    std::string systemLog() const { return contentOf(root_.path() + "/system.log"); }

    TestRoot root_;
    Desktop desktop_;
    FakeAlertHelper fake_;
    std::unique_ptr<ChildProcess> host_;
};

// What the main thread does.

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
    root_.configure(
        "//misbehave\nSTR:error\n//misbehaveCommand\nSTR:unregister application\n//errorCode\nINT:23\n");
    start({"atexit"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, TwoThreadsThatFailAtOnce_ShowOneAlertAfterTheOther) {
    start({"join-two"});
    EXPECT_TRUE(desktop_.pressKey("Return"));
    EXPECT_EQ(host_->readLine(), "status 80000008");
    expectAlertThatIsAnswered();
}

// What else hosts do.

TEST_F(AlertHosts, AHostWithoutStandardStreams_ShowsTheAlertAndKeepsThemClosed) {
    start({"join", "closed"});
    expectAlertThatIsAnswered();
}

TEST_F(AlertHosts, AHostWithoutStandardStreams_GivesTheHelperItsStreamAndNothingElse) {
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
    setenv("LD_LIBRARY_PATH", (root_.library() + "/Contents/MacOS").c_str(), 1);
    host_ =
        std::make_unique<ChildProcess>(std::vector<std::string>{LINKED_HOST}, root_.path() + "/system.log");
    EXPECT_TRUE(desktop_.pressKey("Return"));
    // The library writes to standard output as well.
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

// What becomes of the helper.

TEST_F(AlertHosts, AHelperThatIsMissing_IsAnAlertThatIsNotShown) {
    removeHelper();
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertHosts, AHelperThatMayNotBeExecuted_IsAnAlertThatIsNotShown) {
    removeHelper();
    fs::copy_file(FAKE_ALERT_HELPER, helper());
    fs::permissions(helper(), fs::perms::owner_read | fs::perms::owner_write);
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertHosts, AHelperThatIsAFolder_IsAnAlertThatIsNotShown) {
    removeHelper();
    fs::create_directory(helper());
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertHosts, AHelperThatCannotBeStarted_IsAnAlertThatIsNotShown) {
    removeHelper();
    std::ofstream(helper()) << "#!/no/such/interpreter\n";
    fs::permissions(helper(), fs::perms::owner_all);
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertHosts, AHelperThatIsKilledWhileTheAlertIsOpen_IsAnAlertThatIsNotAnswered) {
    for (const char* way : {"call", "join"}) {
        start({way});
        EXPECT_NE(desktop_.waitForAlert(), "");
        signalHelper(SIGKILL);
        expectFailedCallAndEnd();
        EXPECT_TRUE(hasDesktopWithoutAlerts());
    }
    EXPECT_EQ(countOf(systemLog(), "No Error dialogue shown"), 2u) << systemLog();
}

TEST_F(AlertHosts, AHelperThatNeverAnswersAndIsKilled_IsAnAlertThatIsNotAnswered) {
    useFakeHelper({"wait"});
    start({"join"});
    kill(fake_.process(), SIGKILL);
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertHosts, AHelperThatIsStoppedWhileTheAlertIsOpenAndKilled_IsAnAlertThatIsNotAnswered) {
    start({"join"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    signalHelper(SIGSTOP);
    EXPECT_FALSE(host_->hasLine(0));
    signalHelper(SIGKILL);
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertHosts, AHelperThatSendsNoEvents_IsAnAlertThatIsNotAnswered) {
    useFakeHelper({kShownEvent, "send nonsense", "wait"});
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
    EXPECT_TRUE(fake_.sawItsEnd());
}

// What becomes of the screen and of the host.

TEST_F(AlertHosts, AScreenThatEndsWhileTheAlertIsOpen_IsAnAlertThatIsNotAnswered) {
    start({"join"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    desktop_.end();
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertHosts, AScreenThatCannotBeReached_IsAnAlertThatIsNotShown) {
    setenv("DISPLAY", ":4095", 1);
    start({"join"});
    expectFailedCallAndEnd();
    expectLogged();
}

TEST_F(AlertHosts, AHostThatIsKilledWhileItsAlertIsOpen_TakesTheWindowWithIt) {
    start({"join"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    host_->signal(SIGKILL);
    EXPECT_EQ(host_->wait(), -1);
    EXPECT_TRUE(hasDesktopWithoutAlerts());
}

TEST_F(AlertHosts, AHostThatIsKilledThoughAChildOfItStays_TakesTheWindowWithIt) {
    start({"join", "fork"});
    EXPECT_NE(desktop_.waitForAlert(), "");
    host_->writeLine("fork");
    EXPECT_EQ(host_->readLine(), "child");
    host_->signal(SIGKILL);
    EXPECT_EQ(host_->wait(), -1);
    EXPECT_TRUE(hasDesktopWithoutAlerts());
    for (const pid_t child : processesOf(root_.path(), "endtoend_alert_"))
        kill(child, SIGKILL);
}

}  // namespace
}  // namespace dovrel::test
