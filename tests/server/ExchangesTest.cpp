#include "server/Exchanges.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/server/ExchangesFixture.h"
#include "tests/support/WaitUntil.h"

namespace merrowd::test {
namespace {

using Calls = std::vector<std::string>;

class ExchangesTest : public ExchangesFixture {};

TEST_F(ExchangesTest, Data_IsAnsweredByTheRequestHandler) {
    prepare("");
    const Outcome outcome = call();
    EXPECT_EQ(readReply(outcome).data(posField::kResult), "hello");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_FALSE(outcome.endServer);
    EXPECT_EQ(process_.calls, Calls());
}

TEST_F(ExchangesTest, Data_WithoutTheLog_LeavesNoLogFile) {
    prepare("");
    EXPECT_NE(access(folder_.path("Merrowd.log").c_str(), F_OK), 0);
}

TEST_F(ExchangesTest, Data_WithTheLog_IsWrittenDownInBothDirections) {
    prepare(setting("log", 1));
    send(callRequest(session_, object_, "echo", "hello"), 4711);
    EXPECT_NE(logText().find("#1 call method, from process 4711\n    > 103 session identifier = 65537\n"),
              std::string::npos);
    EXPECT_NE(logText().find("#1 answered\n    < 111 result data = 5 bytes: 68 65 6C 6C 6F \"hello\"\n"),
              std::string::npos);
}

TEST_F(ExchangesTest, Handshake_IsAnsweredAsTheSettingSays) {
    EXPECT_EQ(readBytes(exchanges_.handleHandshake(0)), "awake");
    apply(setting("handshake", "empty"));
    EXPECT_EQ(readBytes(exchanges_.handleHandshake(0)), "");
    apply(setting("handshake", "noParameter"));
    EXPECT_EQ(exchanges_.handleHandshake(0).parameter, nullptr);
    EXPECT_EQ(process_.calls, Calls());
    apply(setting("handshake", "silent"));
    EXPECT_EQ(exchanges_.handleHandshake(0).parameter, nullptr);
    EXPECT_EQ(process_.calls, (Calls{"hang"}));
}

TEST_F(ExchangesTest, EndWithLastClient_EndsWithTheReplyToTheLastUnregistration) {
    apply(setting("endWithLastClient", 1));
    EXPECT_FALSE(send(versionRequest()).endServer) << "before the first client";
    const uint32_t one = readReply(send(registerRequest("One"))).number(posField::kSession);
    const uint32_t two = readReply(send(registerRequest("Two"))).number(posField::kSession);
    EXPECT_FALSE(send(unregisterRequest(one)).endServer);
    const Outcome last = send(unregisterRequest(two));
    EXPECT_FALSE(readReply(last).isException());
    EXPECT_TRUE(last.endServer);
    EXPECT_FALSE(last.vanish);
}

TEST_F(ExchangesTest, WithoutEndWithLastClient_TheServerStays) {
    const uint32_t one = readReply(send(registerRequest("One"))).number(posField::kSession);
    EXPECT_FALSE(send(unregisterRequest(one)).endServer);
    EXPECT_FALSE(exchanges_.hasNoMoreClients());
}

TEST_F(ExchangesTest, LastClientHasGone_SeesClientsThatWereKilled) {
    apply(setting("endWithLastClient", 1));
    const pid_t client = fork();
    if (client == 0) _exit(0);
    send(registerRequest("Killed"), client);
    EXPECT_FALSE(exchanges_.hasNoMoreClients()) << "it ended, but the system still knows it";
    ASSERT_EQ(waitpid(client, nullptr, 0), client);
    EXPECT_TRUE(exchanges_.hasNoMoreClients());
}

TEST_F(ExchangesTest, Configure_PutsProblemsIntoTheLogAndGoesOn) {
    apply(
        "//nonsense\nINT:1\n//checkClasses\nINT:1\n//CLASS\nSTR:\n//CLASS\nSTR:Scanner\n//"
        "methods\nSTR:scan\n");
    EXPECT_NE(logText().find("settings: Merrowd.conf: line 1: there is no setting \"nonsense\"\n"),
              std::string::npos);
    EXPECT_NE(logText().find("settings: Merrowd.conf: line 5: a class has no name\n"), std::string::npos);
    EXPECT_TRUE(state_.settings.checkClasses);
    EXPECT_NE(state_.classes.find(ServerClass::identifierFromName("Scanner")), nullptr);
}

TEST_F(ExchangesTest, Control_OfLinesThatItDoesNotUnderstand_CountsThemAsProblems) {
    const std::string reply = readBytes(control_.handle("log=1\n//checkClasses\n//Log\nINT:1\n\1\2\n"));
    EXPECT_EQ(reply.substr(0, reply.find("//process")),
              "//applications\nINT:0\n//objects\nINT:0\n"
              "//problem 1\nSTR:line 1: \"log=1\" is not part of an entry\n"
              "//problem 2\nSTR:line 2: \"checkClasses\" has no value\n"
              "//problem 3\nSTR:line 5: \"\\x01\\x02\" is not part of an entry\n"
              "//problem 4\nSTR:line 3: there is no setting \"Log\"\n"
              "//problems\nINT:4\n");
    EXPECT_NE(logText().find(" control: line 2: \"checkClasses\" has no value\n"), std::string::npos);
}

TEST_F(ExchangesTest, Control_ReturnsTheStateOfTheServerAndTheProblems) {
    prepare("");
    EXPECT_EQ(
        readBytes(control_.handle("//log\nINT:2\n//checkClasses\nINT:1\n")),
        "//applications\nINT:1\n//objects\nINT:1\n"
        "//problem 1\nSTR:line 1: the value \"2\" of \"log\" does not fit; expected a number from 0 to 1\n"
        "//problems\nINT:1\n//process\nINT:" +
            std::to_string(getpid()) + "\n");
    EXPECT_TRUE(state_.settings.checkClasses);
}

TEST_F(ExchangesTest, Control_OfAnyBytes_NeverFails) {
    for (const std::string& text :
         {std::string(), std::string("\0\1\2", 3), std::string("//"), std::string("//CLASS\n"),
          std::string("STR:\n//\n//\nBAR:"), std::string(100000, '/')}) {
        EXPECT_NE(control_.handle(text).parameter, nullptr);
    }
}

// The reply to a call of a class whose method runs `fail`. The server must then work as before.
TEST_F(ExchangesTest, ADescribedClassThatIsReplaced_LivesOnInItsObjects) {
    apply("//CLASS\nSTR:Scanner\n//methods\nSTR:scan\n//scan.answer\nSTR:old\n");
    session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
    object_ = readReply(send(instantiateRequest(session_, "Scanner"))).data(posField::kObject);
    apply("//CLASS\nSTR:Scanner\n//methods\nSTR:scan\n//scan.answer\nSTR:new\n");
    EXPECT_EQ(readReply(send(callRequest(session_, object_, "scan"))).data(posField::kResult), "old");
}

TEST_F(ExchangesTest, EndWithLastClient_WithoutAnyClient_EndsAfterTheSettingsTime) {
    apply("//endWithLastClient\nINT:1\n");
    EXPECT_FALSE(exchanges_.hasNoMoreClients()) << "the first client may still come";
    apply("//waitForClient\nINT:10\n");
    EXPECT_TRUE(dovrel::test::waitUntil([this] { return exchanges_.hasNoMoreClients(); }));
    apply("//endWithLastClient\nINT:0\n");
    EXPECT_FALSE(exchanges_.hasNoMoreClients());
}

TEST_F(ExchangesTest, EndWithLastClient_WithAClientThatIsThere_WaitsForItsEnd) {
    prepare("//endWithLastClient\nINT:1\n//waitForClient\nINT:0\n");
    EXPECT_FALSE(exchanges_.hasNoMoreClients());
}

TEST_F(ExchangesTest, EndWithLastClient_ARequest_BeginsTheTimeAnew) {
    apply("//endWithLastClient\nINT:1\n//waitForClient\nINT:1\n");
    ASSERT_TRUE(dovrel::test::waitUntil([this] { return exchanges_.hasNoMoreClients(); }));
    apply("//waitForClient\nINT:60000\n");
    send(versionRequest());
    EXPECT_FALSE(exchanges_.hasNoMoreClients());
    apply("//waitForClient\nINT:1\n");
    ASSERT_TRUE(dovrel::test::waitUntil([this] { return exchanges_.hasNoMoreClients(); }));
    exchanges_.handleHandshake(0);
    apply("//waitForClient\nINT:60000\n");
    EXPECT_FALSE(exchanges_.hasNoMoreClients());
}

// Returns a block with that number of empty parts.
std::string makeBlockOfParts(uint32_t count) {
    std::string block("AsAk\0\1\0\0\0\x09", 10);
    for (uint32_t i = 0; i < count; ++i)
        block += std::string("\0\0\x40\0\0\0\0\0", 8);
    return block;
}

TEST_F(ExchangesTest, RequestWithMorePartsThanARequestHas_IsRefusedBeforeItIsRead) {
    for (const char* settings :
         {"", "//log\nINT:1\n//misbehave\nSTR:late\n//misbehaveCommand\nSTR:call method\n"}) {
        apply(settings);
        const Outcome outcome = exchanges_.handleData(toBytes(makeBlockOfParts(1'000'000)), 0);
        EXPECT_EQ(readReply(outcome).code(), 30u);
        EXPECT_EQ(readReply(outcome).text(), "the request has more than 64 parts");
        EXPECT_EQ(process_.calls, Calls());
    }
    EXPECT_NE(logText().find("a request with more than 64 parts was refused"), std::string::npos);
    EXPECT_LT(logText().size(), 500u) << "its parts are not in the log";
}

TEST_F(ExchangesTest, RegistrationWithMoreClassesThanThereCanBe_IsRefusedBeforeTheyAreRead) {
    std::string list = makeBlockOfParts(65536 + 2);
    list[9] = 8;
    Request request(dovrel::posCommand::kRegisterApplication.code);
    request.data(posField::kApplicationName.number, std::string("Demo\0", 5));
    request.data(posField::kClientProcess.number, "");
    request.data(posField::kClassList.number, list);
    request.data(posField::kOptions.number, "");
    const Reply reply = readReply(send(request));
    EXPECT_EQ(reply.code(), 30u);
    EXPECT_EQ(reply.text(), "field 130 (class list) has more than 65536 elements");
}

}  // namespace
}  // namespace merrowd::test
