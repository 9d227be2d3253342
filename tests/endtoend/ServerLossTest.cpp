// The server ends between two calls, and at every stage of a call.
#include <signal.h>

#include <future>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

constexpr char kUnrecoverable[] = "DLL_ERROR_UNRECOVERABLE_ERROR";

class ServerLoss : public InSession {
  protected:
    ServerLoss() {
        root_.configure(setting("log", 1));
        application_ = host_.registered({"Echo"});
    }
    std::string notRegistered() const {
        return texts_.failureBody(
            "End to end", "no application is registered as " + std::to_string(application_), kUnrecoverable);
    }

    // Expects that the call fails because the new server does not know the application,
    // and that the library still works.
    void expectTheNewServersAnswer(const Console& console, uint32_t status, pid_t oldServer) {
        EXPECT_EQ(status, POS_FAILURE);
        EXPECT_EQ(countAlerts(console, notRegistered()), 1u) << console.systemLog();
        EXPECT_EQ(alerts(console), 1u);
        EXPECT_EQ(console.output(), "");
        const std::vector<pid_t> servers = root_.waitForServers(1);
        EXPECT_NE(servers.at(0), oldServer);
        EXPECT_EQ(host_.command(host_.registered(), "ping", "new").bytes, "new");
    }

    pid_t runningServer() const { return root_.servers().at(0); }

    // The misbehaviour applies only to the next method call. The server that replaces the
    // ended one does not know about it.
    void expectRelaunchAfter(const std::string& fault) {
        ObjectId echo = host_.instantiate(application_, "Echo");
        const pid_t old = runningServer();
        ServerControl::send(misbehaviour(fault, "call method"));
        Console console;
        const Answered answered = host_.call(application_, echo, "echo", "hello");
        console.stop();
        EXPECT_EQ(answered.bytes, "");
        expectTheNewServersAnswer(console, answered.status, old);
    }

    uint32_t application_ = 0;
};

TEST_F(ServerLoss, BetweenTwoCalls_TheNextCallLaunchesItAgainAndReportsWhatTheNewServerSays) {
    const pid_t old = runningServer();
    root_.endServers(SIGKILL);
    Console console;
    const uint32_t status = host_.command(application_, "ping").status;
    console.stop();
    expectTheNewServersAnswer(console, status, old);
}

TEST_F(ServerLoss, BetweenTwoCallsByATerminationInGoodOrder_IsTheSame) {
    const pid_t old = runningServer();
    root_.endServers(SIGTERM);
    Console console;
    const uint32_t status = host_.command(application_, "ping").status;
    console.stop();
    expectTheNewServersAnswer(console, status, old);
}

TEST_F(ServerLoss, WhileACallWaits_TheCallGoesToANewServer) {
    const pid_t old = runningServer();
    ServerControl::send(misbehaviour("late", "execute command") + setting("delay", 600000));
    Console console;
    std::future<uint32_t> status =
        std::async(std::launch::async, [this] { return host_.command(application_, "ping").status; });
    root_.waitForServerLog(" execute command");
    kill(old, SIGKILL);
    const uint32_t answered = status.get();
    console.stop();
    expectTheNewServersAnswer(console, answered, old);
}

TEST_F(ServerLoss, BeforeItHasDoneAnything_TheCallGoesToANewServer) {
    expectRelaunchAfter("vanishBefore");
}

TEST_F(ServerLoss, BeforeTheAnswerLeaves_TheCallGoesToANewServer) {
    expectRelaunchAfter("vanishDuring");
}

TEST_F(ServerLoss, AfterTheAnswer_TheCallIsAnsweredAndTheNextGoesToANewServer) {
    ObjectId echo = host_.instantiate(application_, "Echo");
    const pid_t old = runningServer();
    ServerControl::send(misbehaviour("vanishAfter", "call method"));
    EXPECT_EQ(host_.call(application_, echo, "echo", "last words").bytes, "last words");
    root_.waitForServers(0);
    Console console;
    const uint32_t status = host_.call(application_, echo, "echo", "hello").status;
    console.stop();
    expectTheNewServersAnswer(console, status, old);
}

TEST_F(ServerLoss, InEachOfTwentyAttempts_EndsWithTheEmptyReply) {
    root_.configure(setting("log", 1) + misbehaviour("vanishBefore", "execute command"));
    root_.endServers(SIGTERM);
    Console console;
    EXPECT_EQ(host_.command(application_, "ping").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(countInServerLog(" execute command"), 19u) << "the first of the twenty met no server at all";
    EXPECT_EQ(countFailures(console, "1", kUnrecoverable), 1u) << console.systemLog();
    EXPECT_EQ(alerts(console), 1u);
    EXPECT_EQ(root_.servers().size(), 1u) << "connected once more after the last attempt";
}

TEST_F(ServerLoss, AndTheServerIsNoLongerInstalled_FailsWithoutHanging) {
    root_.endServers(SIGKILL);
    root_.removeServer();
    Console console;
    EXPECT_EQ(host_.command(application_, "ping").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(countFailures(console, texts_.text("DLL_MSG_MERROWD_IS_MISSING_MACOSX"), kUnrecoverable), 1u);
    EXPECT_EQ(countOccurrences(console.output(), " Could not find Merrowd server application! \n"), 1u);
}

TEST_F(ServerLoss, BeforeTerminatePOS_LeavesTheHostFreeToGo) {
    root_.endServers(SIGKILL);
    Console console;
    library_.TerminatePOS();
    console.stop();
    EXPECT_EQ(alerts(console), 0u) << "the end of a session shows nothing";
    library_.InitializePOS();
    EXPECT_EQ(host_.command(host_.registered(), "ping", "again").bytes, "again");
}

TEST_F(ServerLoss, AgainAndAgain_IsSurvived) {
    for (int i = 0; i < 10; ++i) {
        Console console;
        root_.endServers(i % 2 == 0 ? SIGKILL : SIGTERM);
        EXPECT_EQ(host_.command(host_.registered(), "ping", "here").bytes, "here");
        console.stop();
        EXPECT_EQ(console.output(), "");
        EXPECT_EQ(alerts(console), 0u);
    }
}

}  // namespace
}  // namespace dovrel::test
