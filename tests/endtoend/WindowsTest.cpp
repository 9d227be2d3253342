// Tests what the user sees and can decide on a desktop: a host, its alerts in
// real windows, and the real server.
#include <signal.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tests/endtoend/EndToEnd.h"
#include "tests/support/Desktop.h"
#include "tests/support/RootProcesses.h"

namespace dovrel::test {
namespace {

// Buttons, counted from the right.
constexpr int kOK = 0;
constexpr int kRetry = 0;
constexpr int kCancel = 1;

class Windows : public testing::Test {
  protected:
    ~Windows() override {
        host_.reset();
        EXPECT_TRUE(waitUntil([this] { return helpers().empty(); })) << "a helper still runs";
        EXPECT_LE(desktop_.mostAlerts(), 1u) << "two alerts at once";
        if (HasFailure()) std::cerr << "The host's system log:\n" << systemLog() << std::endl;
    }

    void start() { host_ = std::make_unique<ChildProcess>(command(), root_.path() + "/system.log"); }

    /// Starts a host and makes it register.
    void startRegistered() {
        start();
        EXPECT_EQ(lineFor("register Host"), "register 0");
    }

    void tell(const std::string& line) { host_->writeLine(line); }
    std::string line() { return host_->readLine(); }
    std::string lineFor(const std::string& what) {
        tell(what);
        return line();
    }

    /// Starts a thread of the host that carries out `what`, and waits until that thread blocks.
    void startWaitingThread(const std::string& what) {
        const std::string started = lineFor("thread " + what);
        ASSERT_EQ(started.compare(0, 7, "thread "), 0) << started;
        waitUntilAsleep(started.substr(7));
    }

    static void waitUntilAsleep(const std::string& thread) {
        const std::string status = "/proc/" + thread + "/status";
        EXPECT_TRUE(waitUntil([&] { return readFile(status).find("State:\tS") != std::string::npos; }));
    }

    std::vector<pid_t> helpers() const { return findProcesses(root_.path(), "dovrel-alert"); }

    std::string systemLog() const { return readFile(root_.path() + "/system.log"); }

    /// Returns the requests of that kind in the server's log, each with all its data.
    std::vector<std::string> requests(const std::string& kind) const {
        std::vector<std::string> found;
        std::istringstream log(root_.serverLog());
        bool within = false;
        for (std::string entry; std::getline(log, entry);) {
            if (entry.compare(0, 4, "    ") != 0) {
                within = entry.find(" " + kind) != std::string::npos;
                if (within) found.emplace_back();
            } else if (within) {
                found.back() += entry + "\n";
            }
        }
        return found;
    }

    static void failEvery(const std::string& command, int code, const std::string& text) {
        ServerControl::send(setting("log", 1) + refusal(command, code, text));
    }
    static std::string refusedRegistration(int64_t times = 0) {
        return setting("log", 1) + refusal("register application", 32, "No room.", times);
    }

    TestRoot root_;
    Desktop desktop_;
    std::unique_ptr<ChildProcess> host_;

  private:
    std::vector<std::string> command() const { return {WINDOW_HOST, root_.library()}; }
};

// Alerts of registrations that fail.

TEST_F(Windows, Retry_RepeatsTheRegistrationInFull) {
    root_.configure(refusedRegistration(2));
    start();
    tell("register Host 1104");
    EXPECT_TRUE(desktop_.takePicture("registration-english"));
    EXPECT_TRUE(desktop_.clickButton(kRetry));
    EXPECT_TRUE(desktop_.clickButton(kRetry));
    EXPECT_EQ(line(), "register 0");
    const std::vector<std::string> sent = requests("register application");
    ASSERT_EQ(sent.size(), 3u) << root_.serverLog();
    EXPECT_NE(sent[0].find("application name = \"Host\""), std::string::npos) << sent[0];
    EXPECT_EQ(sent[1], sent[0]);
    EXPECT_EQ(sent[2], sent[0]);
}

TEST_F(Windows, Retry_SucceedsWhenTheCauseWasRemovedMeanwhile) {
    root_.configure(refusedRegistration());
    start();
    tell("register Host");
    EXPECT_NE(desktop_.waitForAlert(), "");
    ServerControl::send(misbehaviour("none"));
    EXPECT_TRUE(desktop_.clickButton(kRetry));
    EXPECT_EQ(line(), "register 0");
    EXPECT_EQ(lineFor("command ping"), "command 0");
}

TEST_F(Windows, CancelTwice_FailsAfterOneRequest) {
    root_.configure(refusedRegistration());
    start();
    tell("register Host");
    EXPECT_TRUE(desktop_.clickButton(kCancel));
    EXPECT_TRUE(desktop_.takePicture("registration-second-question"));
    EXPECT_FALSE(host_->hasLine(0)) << "it is asked twice";
    EXPECT_TRUE(desktop_.clickButton(kCancel));
    EXPECT_EQ(line(), "register 80000008");
    EXPECT_EQ(requests("register application").size(), 1u);
}

TEST_F(Windows, CancelThenRetry_RegistersAfterAll) {
    root_.configure(refusedRegistration(1));
    start();
    tell("register Host");
    EXPECT_TRUE(desktop_.clickButton(kCancel));
    EXPECT_TRUE(desktop_.pressKey("Return"));
    EXPECT_EQ(line(), "register 0");
    EXPECT_EQ(requests("register application").size(), 2u);
}

TEST_F(Windows, ARefusedRegistrationWithOption1120_ShowsNoWindow) {
    root_.configure(refusedRegistration());
    start();
    EXPECT_EQ(lineFor("register Host 1120"), "register 80000008");
    EXPECT_EQ(countOccurrences(systemLog(), "dialogue"), 0u);
}

TEST_F(Windows, AServerThatIsMissing_CanBeInstalledBeforeTheNextRegistration) {
    const std::string elsewhere = root_.path() + "/Merrowd.app";
    std::filesystem::rename(root_.server(), elsewhere);
    start();
    tell("register Host");
    EXPECT_TRUE(desktop_.clickButton(kOK));
    EXPECT_EQ(line(), "register 80000008");
    std::filesystem::rename(elsewhere, root_.server());
    EXPECT_EQ(lineFor("register Host"), "register 0");
}

// Other operations.

TEST_F(Windows, AFailedOperation_FailsAfterOK) {
    startRegistered();
    failEvery("execute command", 28, "The lid is open.");
    tell("command ping");
    EXPECT_TRUE(desktop_.clickButton(kOK));
    EXPECT_EQ(line(), "command 80000008");
    EXPECT_EQ(requests("execute command").size(), 1u) << "there is no retry";
}

TEST_F(Windows, AMessageOfTheServer_IsShownAndTheOperationSucceedsAfterOK) {
    startRegistered();
    ServerControl::send(misbehaviour("message") + setting("messageText", "The lamp is getting old."));
    tell("instantiate Echo");
    EXPECT_TRUE(desktop_.takePicture("message-english"));
    EXPECT_TRUE(desktop_.clickButton(kOK));
    EXPECT_EQ(line(), "instantiate 0");
}

TEST_F(Windows, AMessageForASilencedApplication_ShowsNoWindow) {
    start();
    EXPECT_EQ(lineFor("register Host 1121"), "register 0");
    ServerControl::send(misbehaviour("message") + setting("messageText", "The lamp is getting old."));
    EXPECT_EQ(lineFor("instantiate Echo"), "instantiate 0");
    EXPECT_EQ(countOccurrences(systemLog(), "dialogue"), 0u);
}

TEST_F(Windows, AnAlert_BringsNoWindowLibraryIntoTheHost) {
    startRegistered();
    tell("command none of that name");
    EXPECT_TRUE(desktop_.clickButton(kOK));
    EXPECT_EQ(line(), "command 80000008");
    EXPECT_EQ(lineFor("libraries"), "libraries");
}

TEST_F(Windows, AnAlertWhoseHelperIsKilled_CountsAsNotShown) {
    root_.configure(refusedRegistration());
    start();
    tell("register Host");
    EXPECT_NE(desktop_.waitForAlert(), "");
    for (const pid_t helper : helpers())
        kill(helper, SIGKILL);
    EXPECT_EQ(line(), "register 80000008");
    EXPECT_EQ(countOccurrences(systemLog(), "No Error dialogue shown"), 1u) << systemLog();
    EXPECT_EQ(requests("register application").size(), 1u) << "it is not asked again";
}

// The user's language.

TEST_F(Windows, AFailureInGerman_IsShownWithItsAccents) {
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    startRegistered();
    failEvery("execute command", 24, "Ger\x8at \xe3\xa4\xd2 fehlt.");
    tell("command ping");
    EXPECT_TRUE(desktop_.takePicture("failure-german"));
    EXPECT_TRUE(desktop_.clickButton(kOK));
    EXPECT_EQ(line(), "command 80000008");
}

TEST_F(Windows, AServerThatCannotBeStarted_IsReportedInEachLanguage) {
    root_.makeServerUnexecutable();
    for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "en_GB.UTF-8"}) {
        setenv("LC_ALL", locale, 1);
        start();
        tell("register Host");
        EXPECT_TRUE(desktop_.takePicture(std::string("server-damaged-") + std::string(locale).substr(0, 2)));
        EXPECT_TRUE(desktop_.clickButton(kOK));
        EXPECT_EQ(line(), "register 80000008");
    }
}

// Alerts of calls on several threads.

TEST_F(Windows, AFailureOnASecondThread_IsShownWhileAThirdOneWaits) {
    startRegistered();
    failEvery("execute command", 28, "The lid is open.");
    EXPECT_EQ(lineFor("thread command ping").substr(0, 7), "thread ");
    EXPECT_NE(desktop_.waitForAlert(), "");
    startWaitingThread("instantiate Echo");
    EXPECT_EQ(requests("instantiate object").size(), 0u) << "the session is taken";
    EXPECT_FALSE(host_->hasLine(0));
    EXPECT_TRUE(desktop_.clickButton(kOK));
    std::vector<std::string> answers = {line(), line()};
    std::sort(answers.begin(), answers.end());
    EXPECT_EQ(answers, (std::vector<std::string>{"command 80000008", "instantiate 0"}));
    EXPECT_EQ(lineFor("loop"), "loop");
}

TEST_F(Windows, TwoFailuresOnTwoThreads_AreShownOneAfterTheOtherWhileTheMainThreadRunsItsLoop) {
    startRegistered();
    failEvery("execute command", 28, "The lid is open.");
    startWaitingThread("command ping");
    startWaitingThread("command ping");
    tell("loop");
    EXPECT_NE(desktop_.waitForAlert(), "");
    EXPECT_EQ(requests("execute command").size(), 1u);
    EXPECT_TRUE(desktop_.clickButton(kOK));
    EXPECT_EQ(line(), "command 80000008");
    EXPECT_TRUE(desktop_.clickButton(kOK));
    EXPECT_EQ(line(), "command 80000008");
    EXPECT_EQ(line(), "loop");
}

// A deadlock that must not occur: the alert waits for the main thread's loop, and code in that
// loop waits for the end of the alert.
TEST_F(Windows,
       AMainThreadThatWaitsForItsTurnInsideItsLoop_DoesNotKeepTheAlertOfAnotherThreadFromBeingShown) {
    startRegistered();
    failEvery("execute command", 28, "The lid is open.");
    const std::vector<pid_t> servers = root_.waitForServers(1);
    kill(servers.front(), SIGSTOP);
    startWaitingThread("command ping");
    EXPECT_EQ(lineFor("turn instantiate Echo"), "inside");
    waitUntilAsleep(std::to_string(host_->process()));
    kill(servers.front(), SIGCONT);
    EXPECT_TRUE(desktop_.clickButton(kOK));
    std::vector<std::string> answers = {line(), line()};
    std::sort(answers.begin(), answers.end());
    EXPECT_EQ(answers, (std::vector<std::string>{"command 80000008", "instantiate 0"}));
    EXPECT_EQ(line(), "loop");
}

// No display.

TEST_F(Windows, WithoutADisplay_AFailureOnASecondThreadEndsAtOnceThoughTheMainThreadIsBlocked) {
    unsetenv("DISPLAY");
    startRegistered();
    EXPECT_EQ(lineFor("thread command none of that name").substr(0, 7), "thread ");
    EXPECT_EQ(line(), "command 80000008");
    EXPECT_EQ(countOccurrences(systemLog(), "No Error dialogue shown"), 1u) << systemLog();
    EXPECT_EQ(lineFor("loop"), "loop");
}

}  // namespace
}  // namespace dovrel::test
