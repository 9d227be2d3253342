#include "server/Exchanges.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <new>
#include <stdexcept>

#include "client/exceptions/CPPException.h"
#include "tests/server/FailingClass.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/Requests.h"
#include "tests/support/ServerSettings.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WaitUntil.h"

namespace merrowd::test {
namespace {

namespace posField = dovrel::posField;
using dovrel::test::misbehaviour;
using dovrel::test::refusal;
using dovrel::test::setting;
using dovrel::test::TemporaryFolder;
using Calls = std::vector<std::string>;

class ExchangesTest : public testing::Test {
  protected:
    Outcome send(const Request& request, pid_t sender = 0) {
        return exchanges_.handleData(request.bytes(), sender);
    }
    static Reply readReply(const Outcome& outcome) { return Reply(outcome.parameter->bytes()); }
    static std::string readAnswer(const Outcome& outcome) { return bytesToText(outcome.parameter->bytes()); }

    // Registers an application, creates an Echo object, then applies the settings.
    void prepare(const std::string& settings) {
        session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
        object_ = readReply(send(instantiateRequest(session_, "Echo"))).data(posField::kObject);
        exchanges_.applySettingsText(settings);
    }
    Outcome call() { return send(callRequest(session_, object_, "echo", "hello")); }

    std::string logText() const { return folder_.read("Merrowd.log"); }

    const TemporaryFolder folder_;
    FakeProcess process_;
    ServerState state_{TestServer::kFirstSession};
    ExchangeLog log_{folder_.path("Merrowd.log")};
    Exchanges exchanges_{state_, process_, log_};
    uint32_t session_ = 0;
    std::string object_;
};

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

TEST_F(ExchangesTest, Late_PausesAndAnswers) {
    prepare(misbehaviour("late") + setting("delay", 1234));
    EXPECT_EQ(readReply(call()).data(posField::kResult), "hello");
    EXPECT_EQ(process_.calls, (Calls{"pause 1234"}));
}

TEST_F(ExchangesTest, Late_IsInTheLogBeforeThePause) {
    prepare(setting("log", 1) + misbehaviour("vanishBefore"));
    EXPECT_THROW(call(), Vanished);
    EXPECT_NE(logText().find("#1 call method\n"), std::string::npos);
}

TEST_F(ExchangesTest, Silent_Hangs) {
    prepare(misbehaviour("silent"));
    EXPECT_TRUE(call().isSilent);
    EXPECT_EQ(process_.calls, (Calls{"hang"}));
}

TEST_F(ExchangesTest, VanishBefore_DoesNothingFirst) {
    prepare(misbehaviour("vanishBefore"));
    EXPECT_THROW(send(deleteRequest(session_, object_)), Vanished);
    EXPECT_EQ(state_.applications.objectCount(), 1u);
}

TEST_F(ExchangesTest, VanishDuring_HasDoneTheWork) {
    prepare(misbehaviour("vanishDuring"));
    EXPECT_THROW(send(deleteRequest(session_, object_)), Vanished);
    EXPECT_EQ(state_.applications.objectCount(), 0u);
}

TEST_F(ExchangesTest, VanishAfter_AnswersAndTellsTheServerToGo) {
    prepare(misbehaviour("vanishAfter"));
    const Outcome outcome = call();
    EXPECT_EQ(readReply(outcome).data(posField::kResult), "hello");
    EXPECT_TRUE(outcome.endServer);
    EXPECT_TRUE(outcome.vanish);
    EXPECT_EQ(process_.calls, Calls());
}

TEST_F(ExchangesTest, Cut_LeavesTheFirstBytes) {
    prepare("");
    const std::string whole = readAnswer(call());
    for (const size_t length : {size_t{0}, size_t{1}, size_t{17}, whole.size(), whole.size() + 1}) {
        exchanges_.applySettingsText(misbehaviour("cut") + setting("cutTo", static_cast<int64_t>(length)));
        EXPECT_EQ(readAnswer(call()), whole.substr(0, length));
    }
}

TEST_F(ExchangesTest, Garbage_IsNoBlock) {
    prepare(misbehaviour("garbage"));
    const std::string answer = readAnswer(call());
    EXPECT_GT(answer.size(), 10u);
    EXPECT_NE(answer.substr(0, 4), "AsAk");
}

TEST_F(ExchangesTest, EmptyAndNoParameter_AreAnswersWithoutBytesAndWithoutAParameter) {
    prepare(misbehaviour("empty"));
    EXPECT_EQ(readAnswer(call()), "");
    exchanges_.applySettingsText(misbehaviour("noParameter"));
    EXPECT_EQ(call().parameter, nullptr);
}

TEST_F(ExchangesTest, FailedEvent_HasTheStatusAndDoesNothing) {
    prepare(misbehaviour("failedEvent") + setting("eventStatus", -1708));
    const Outcome outcome = send(deleteRequest(session_, object_));
    EXPECT_EQ(outcome.status, -1708);
    EXPECT_EQ(outcome.parameter, nullptr);
    EXPECT_EQ(state_.applications.objectCount(), 1u);
}

TEST_F(ExchangesTest, Error_IsAnExceptionOfAnyCodeAndTextAndDoesNothing) {
    prepare(refusal("", 99, "Never heard of it."));
    const Reply reply = readReply(send(deleteRequest(session_, object_)));
    EXPECT_EQ(reply.code(), 99u);
    EXPECT_EQ(reply.text(), "Never heard of it.");
    EXPECT_EQ(reply.command(), 13u);
    EXPECT_EQ(state_.applications.objectCount(), 1u);
}

TEST_F(ExchangesTest, Message_IsInTheAnswersThatCanCarryOneAndNoOther) {
    prepare(misbehaviour("message") + setting("messageFlags", 2) + setting("messageText", "Hi."));
    const Reply reply = readReply(call());
    EXPECT_EQ(reply.data(posField::kServerMessage), littleEndian(2) + "Hi.");
    EXPECT_EQ(reply.data(posField::kResult), "hello");
    EXPECT_EQ(readReply(send(instantiateRequest(session_, "Echo"))).data(posField::kServerMessage),
              littleEndian(2) + "Hi.");
    EXPECT_FALSE(readReply(send(commandRequest(session_, "ping"))).has(posField::kServerMessage));
    EXPECT_EQ(readReply(send(callRequest(session_, object_, "none"))).code(), 27u);
}

TEST_F(ExchangesTest, Huge_IsTheResultOfMethodsCommandsAndInformation) {
    prepare(misbehaviour("huge") + setting("hugeSize", 1000000));
    EXPECT_EQ(readReply(call()).data(posField::kResult).size(), 1000000u);
    EXPECT_EQ(readReply(send(commandRequest(session_, "ping"))).data(posField::kResult).size(), 1000000u);
    EXPECT_EQ(readReply(send(informationRequest(session_, std::string("\1\0", 2))))
                  .data(posField::kInformation)
                  .size(),
              1000000u);
}

TEST_F(ExchangesTest, Handshake_IsAnsweredAsTheSettingSays) {
    EXPECT_EQ(readAnswer(exchanges_.handleHandshake(0)), "awake");
    exchanges_.applySettingsText(setting("handshake", "empty"));
    EXPECT_EQ(readAnswer(exchanges_.handleHandshake(0)), "");
    exchanges_.applySettingsText(setting("handshake", "noParameter"));
    EXPECT_EQ(exchanges_.handleHandshake(0).parameter, nullptr);
    EXPECT_EQ(process_.calls, Calls());
    exchanges_.applySettingsText(setting("handshake", "silent"));
    EXPECT_EQ(exchanges_.handleHandshake(0).parameter, nullptr);
    EXPECT_EQ(process_.calls, (Calls{"hang"}));
}

TEST_F(ExchangesTest, EndWithLastClient_EndsWithTheAnswerToTheLastUnregistration) {
    exchanges_.applySettingsText(setting("endWithLastClient", 1));
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
    exchanges_.applySettingsText(setting("endWithLastClient", 1));
    const pid_t client = fork();
    if (client == 0) _exit(0);
    send(registerRequest("Killed"), client);
    EXPECT_FALSE(exchanges_.hasNoMoreClients()) << "it ended, but the system still knows it";
    ASSERT_EQ(waitpid(client, nullptr, 0), client);
    EXPECT_TRUE(exchanges_.hasNoMoreClients());
}

TEST_F(ExchangesTest, Configure_PutsProblemsIntoTheLogAndGoesOn) {
    exchanges_.applySettingsText(
        "//nonsense\nINT:1\n//checkClasses\nINT:1\n//CLASS\nSTR:\n//CLASS\nSTR:Scanner\n//"
        "methods\nSTR:scan\n");
    EXPECT_NE(logText().find("settings: there is no setting \"nonsense\"\n"), std::string::npos);
    EXPECT_NE(logText().find("settings: a class has no name\n"), std::string::npos);
    EXPECT_TRUE(state_.settings.checkClasses);
    EXPECT_NE(state_.classes.find(ServerClass::identifierFromName("Scanner")), nullptr);
}

TEST_F(ExchangesTest, Control_OfLinesThatItDoesNotUnderstand_CountsThemAsProblems) {
    const std::string answer =
        readAnswer(exchanges_.handleControl("log=1\n//checkClasses\n//Log\nINT:1\n\1\2\n"));
    EXPECT_EQ(answer.substr(0, answer.find("//process")),
              "//applications\nINT:0\n//objects\nINT:0\n"
              "//problem 1\nSTR:line 1: \"log=1\" is not part of an entry\n"
              "//problem 2\nSTR:line 2: \"checkClasses\" has no value\n"
              "//problem 3\nSTR:line 5: \"\\x01\\x02\" is not part of an entry\n"
              "//problem 4\nSTR:there is no setting \"Log\"\n"
              "//problems\nINT:4\n");
    EXPECT_NE(logText().find(" control: line 2: \"checkClasses\" has no value\n"), std::string::npos);
}

TEST_F(ExchangesTest, Control_AnswersHowTheServerStandsAndWhatWasWrong) {
    prepare("");
    EXPECT_EQ(readAnswer(exchanges_.handleControl("//log\nINT:2\n//checkClasses\nINT:1\n")),
              "//applications\nINT:1\n//objects\nINT:1\n"
              "//problem 1\nSTR:the value \"2\" of \"log\" does not fit; expected a number from 0 to 1\n"
              "//problems\nINT:1\n//process\nINT:" +
                  std::to_string(getpid()) + "\n");
    EXPECT_TRUE(state_.settings.checkClasses);
}

TEST_F(ExchangesTest, Control_OfAnyBytes_NeverFails) {
    for (const std::string& text :
         {std::string(), std::string("\0\1\2", 3), std::string("//"), std::string("//CLASS\n"),
          std::string("STR:\n//\n//\nBAR:"), std::string(100000, '/')}) {
        EXPECT_NE(exchanges_.handleControl(text).parameter, nullptr);
    }
}

// The reply to a call of a class whose method runs `fail`. The server must then work as before.
class ExceptionsOfClassesTest : public ExchangesTest {
  protected:
    Reply callFailingMethod(FailingClass::Action fail) {
        state_.classes.add(std::make_shared<FailingClass>(std::move(fail)));
        session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
        object_ = readReply(send(instantiateRequest(session_, "Failing"))).data(posField::kObject);
        Reply reply = readReply(send(callRequest(session_, object_, "fail")));
        EXPECT_EQ(readReply(send(callRequest(session_, object_, "work"))).data(posField::kResult), "done");
        return reply;
    }

    void expectMethodFailure(const FailingClass::Action& fail, const std::string& message) {
        const std::string text = "the method \"fail\" of the class Failing let an exception out: " + message;
        const Reply reply = callFailingMethod(fail);
        EXPECT_EQ(reply.code(), 28u);
        EXPECT_EQ(reply.text(), text);
        EXPECT_EQ(reply.command(), 14u);
        EXPECT_NE(logText().find(" " + text + "\n"), std::string::npos) << logText();
    }
};

TEST_F(ExceptionsOfClassesTest, StdException_IsAnsweredAsAMethodThatFailedAndLogged) {
    expectMethodFailure([] { throw std::runtime_error("no paper"); }, "no paper");
}

TEST_F(ExceptionsOfClassesTest, CPPException_IsAnsweredAsAMethodThatFailedAndLogged) {
    expectMethodFailure([] { throw new dovrel::CPPException("no ink"); }, "no ink");
}

TEST_F(ExceptionsOfClassesTest, Number_IsAnsweredAsAMethodThatFailedAndLogged) {
    expectMethodFailure([] { throw 5; }, "it is not of a known type");
}

TEST_F(ExceptionsOfClassesTest, LackOfMemory_IsAnsweredAsAMethodThatFailedAndLogged) {
    expectMethodFailure([] { throw std::bad_alloc(); }, std::bad_alloc().what());
}

TEST_F(ExceptionsOfClassesTest, ExceptionInACreation_IsAnsweredAsAFailedInstantiationAndLogged) {
    state_.classes.add(std::make_shared<FailingClass>([] { throw std::runtime_error("no paper"); }, true));
    session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
    const Reply reply = readReply(send(instantiateRequest(session_, "Failing")));
    const std::string text = "the creation of an object of the class Failing let an exception out: no paper";
    EXPECT_EQ(reply.code(), 26u);
    EXPECT_EQ(reply.text(), text);
    EXPECT_NE(logText().find(" " + text + "\n"), std::string::npos);
    EXPECT_EQ(state_.applications.objectCount(), 0u);
}

TEST_F(ExceptionsOfClassesTest, ExceptionElsewhereInAClass_IsAnsweredAndLogged) {
    class Nameless : public FailingClass {
      public:
        Nameless() : FailingClass([] {}) {}
        std::vector<std::string> methods() const override { throw std::runtime_error("which ones?"); }
    };
    state_.classes.add(std::make_shared<Nameless>());
    session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
    object_ = readReply(send(instantiateRequest(session_, "Failing"))).data(posField::kObject);
    const Reply reply = readReply(send(callRequest(session_, object_, "work")));
    EXPECT_EQ(reply.code(), 23u);
    EXPECT_EQ(reply.text(), "the server let an exception out: which ones?");
    EXPECT_EQ(reply.command(), 14u);
    EXPECT_NE(logText().find(" the server let an exception out: which ones?\n"), std::string::npos);
}

TEST_F(ExceptionsOfClassesTest, Refusal_IsNoFaultAndLeavesNoLog) {
    const Reply reply = callFailingMethod([] { throw Refusal{28, "no"}; });
    EXPECT_EQ(reply.text(), "no");
    EXPECT_NE(access(folder_.path("Merrowd.log").c_str(), F_OK), 0);
}

TEST_F(ExchangesTest, ADescribedClassThatIsReplaced_LivesOnInItsObjects) {
    exchanges_.applySettingsText("//CLASS\nSTR:Scanner\n//methods\nSTR:scan\n//scan.answer\nSTR:old\n");
    session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
    object_ = readReply(send(instantiateRequest(session_, "Scanner"))).data(posField::kObject);
    exchanges_.applySettingsText("//CLASS\nSTR:Scanner\n//methods\nSTR:scan\n//scan.answer\nSTR:new\n");
    EXPECT_EQ(readReply(send(callRequest(session_, object_, "scan"))).data(posField::kResult), "old");
}

TEST_F(ExchangesTest, EndWithLastClient_WithoutAnyClient_EndsAfterTheSettingsTime) {
    exchanges_.applySettingsText("//endWithLastClient\nINT:1\n");
    EXPECT_FALSE(exchanges_.hasNoMoreClients()) << "the first client may still come";
    exchanges_.applySettingsText("//waitForClient\nINT:10\n");
    EXPECT_TRUE(dovrel::test::waitUntil([this] { return exchanges_.hasNoMoreClients(); }));
    exchanges_.applySettingsText("//endWithLastClient\nINT:0\n");
    EXPECT_FALSE(exchanges_.hasNoMoreClients());
}

TEST_F(ExchangesTest, EndWithLastClient_WithAClientThatIsThere_WaitsForItsEnd) {
    prepare("//endWithLastClient\nINT:1\n//waitForClient\nINT:0\n");
    EXPECT_FALSE(exchanges_.hasNoMoreClients());
}

TEST_F(ExchangesTest, EndWithLastClient_ARequest_BeginsTheTimeAnew) {
    exchanges_.applySettingsText("//endWithLastClient\nINT:1\n//waitForClient\nINT:1\n");
    ASSERT_TRUE(dovrel::test::waitUntil([this] { return exchanges_.hasNoMoreClients(); }));
    exchanges_.applySettingsText("//waitForClient\nINT:60000\n");
    send(versionRequest());
    EXPECT_FALSE(exchanges_.hasNoMoreClients());
    exchanges_.applySettingsText("//waitForClient\nINT:1\n");
    ASSERT_TRUE(dovrel::test::waitUntil([this] { return exchanges_.hasNoMoreClients(); }));
    exchanges_.handleHandshake(0);
    exchanges_.applySettingsText("//waitForClient\nINT:60000\n");
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
        exchanges_.applySettingsText(settings);
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
