#include "server/ControlCalls.h"

#include <gtest/gtest.h>

#include "tests/server/ExchangesFixture.h"
#include "tests/server/RecordedHost.h"

namespace merrowd::test {
namespace {

class ControlCallsTest : public ExchangesFixture {
  protected:
    std::string control(const std::string& settings) { return readBytes(control_.handle(settings)); }

    std::string record() const {
        const std::string path = folder_.path("recording");
        RecordedHost host(path);
        const uint32_t session = host.registerApplication();
        host.send(commandRequest(session, "ping", "hello"));
        return path;
    }
};

TEST_F(ControlCallsTest, StartProblems_AreInTheReplyToEveryCall) {
    apply("//Log\nINT:1\n");
    for (int i = 0; i < 2; ++i) {
        EXPECT_NE(control("").find("//startProblem 1\nSTR:Merrowd.conf: line 1: there is no setting \"Log\"\n"
                                   "//startProblems\nINT:1\n"),
                  std::string::npos);
    }
}

TEST_F(ControlCallsTest, Replay_HandlesAllRequestsUntilItIsTurnedOff) {
    const std::string path = record();
    const std::string reply = control("//replay\nSTR:" + path + "\n");
    EXPECT_NE(reply.find("//recorded\nINT:2\n"), std::string::npos) << reply;
    const uint32_t session = readReply(send(registerRequest("Demo"))).number(posField::kSession);
    EXPECT_EQ(readReply(send(commandRequest(session, "ping", "hello"))).data(posField::kResult), "hello");
    EXPECT_TRUE(readReply(send(commandRequest(session, "version"))).isException());
    EXPECT_NE(logText().find(" replay: the recording does not have this request here: execute command\n"),
              std::string::npos);
    const std::string state = control("");
    EXPECT_NE(state.find("//refused\nINT:1\n//replayed\nINT:2\n"), std::string::npos) << state;

    EXPECT_EQ(control("//replay\nSTR:\n").find("replayed"), std::string::npos);
    EXPECT_FALSE(readReply(send(commandRequest(session, "version"))).isException());
}

TEST_F(ControlCallsTest, ReplayMode_StartsTheReplayFromItsBeginning) {
    control("//replay\nSTR:" + record() + "\n");
    const uint32_t session = readReply(send(registerRequest("Demo"))).number(posField::kSession);
    EXPECT_NE(control("//replayMode\nSTR:inSequence\n").find("//replayed\nINT:0\n"), std::string::npos);
    EXPECT_TRUE(readReply(send(commandRequest(session, "ping", "hello"))).isException());
}

TEST_F(ControlCallsTest, WrongValues_DoNotStartTheReplayAgain) {
    control("//replay\nSTR:" + record() + "\n");
    send(registerRequest("Demo"));
    for (const std::string wrong : {"//replay\nSTR:relative\n", "//replayMode\nSTR:backwards\n"}) {
        const std::string reply = control(wrong);
        EXPECT_NE(reply.find("//problems\nINT:1\n"), std::string::npos) << reply;
        EXPECT_NE(reply.find("//replayed\nINT:1\n"), std::string::npos) << reply;
    }
}

TEST_F(ControlCallsTest, WrongValueOfImportClasses_DoesNotImportAgain) {
    const std::string path = folder_.path("recording");
    RecordedHost host(path);
    host.instantiate(host.registerApplication(), "Echo");
    control("//importClasses\nSTR:" + path + "\n//CLASS\nSTR:Echo\n//methods\nSTR:mine\n");
    control("//importClasses\nSTR:relative\n");
    EXPECT_EQ(state_.classes.find(ServerClass::identifierFromName("Echo"))->methods(),
              std::vector<std::string>{"mine"});
}

TEST_F(ControlCallsTest, RecordingThatCannotBeUsed_IsAProblem) {
    for (const std::string setting : {"replay", "importClasses"}) {
        const std::string reply = control("//" + setting + "\nSTR:/nowhere\n");
        EXPECT_NE(reply.find("//problem 1\nSTR:Could not open file for reading: /nowhere\n"),
                  std::string::npos)
            << reply;
        EXPECT_NE(control("//" + setting + "\nSTR:here\n").find("does not fit; expected an absolute path\n"),
                  std::string::npos);
    }
}

TEST_F(ControlCallsTest, RecordingWithoutExchanges_StartsNoReplay) {
    control("//replay\nSTR:/nowhere\n");
    EXPECT_EQ(state_.replay, nullptr);
    EXPECT_FALSE(readReply(send(registerRequest("Demo"))).isException());
}

TEST_F(ControlCallsTest, EndWithLastClient_WaitsForTheEndOfAReplay) {
    const std::string path = folder_.path("recording");
    RecordedHost host(path);
    host.send(unregisterRequest(host.registerApplication()));
    control("//endWithLastClient\nINT:1\n//waitForClient\nINT:0\n//replay\nSTR:" + path + "\n");
    const uint32_t session = readReply(send(registerRequest("Demo"))).number(posField::kSession);
    EXPECT_FALSE(send(unregisterRequest(session)).endServer);
    EXPECT_FALSE(exchanges_.hasNoMoreClients());
    control("//replay\nSTR:\n");
    EXPECT_TRUE(exchanges_.hasNoMoreClients());
}

TEST_F(ControlCallsTest, Misbehaviour_HoldsForAReplayAsWell) {
    control("//replay\nSTR:" + record() + "\n" + misbehaviour("empty"));
    EXPECT_EQ(readBytes(send(registerRequest("Demo"))), "");
}

}  // namespace
}  // namespace merrowd::test
