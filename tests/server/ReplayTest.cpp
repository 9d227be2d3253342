#include "server/Replay.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tests/server/RecordedHost.h"
#include "tests/support/TemporaryFolder.h"

namespace merrowd::test {
namespace {

namespace posField = dovrel::posField;
using Notes = std::vector<std::string>;

class ReplayTest : public testing::Test {
  protected:
    /// Starts a server that replays the recording. Its numbers differ from those of the recorded server.
    void replay(ReplayMode mode = ReplayMode::byRequest) {
        std::vector<std::string> problems;
        Recording recording(path_, problems);
        EXPECT_EQ(problems, Notes());
        replay_ = std::make_unique<Replay>(std::move(recording), mode, applications_,
                                           [this](const std::string& note) { notes_.push_back(note); });
    }

    Outcome handle(const Request& request) { return replay_->handle(request.bytes(), 0); }
    Reply send(const Request& request) { return Reply(handle(request).parameter->bytes()); }

    uint32_t registerApplication(const std::string& name = "Demo") {
        return send(registerRequest(name)).number(posField::kSession);
    }
    std::string instantiate(uint32_t session, const std::string& className) {
        return send(instantiateRequest(session, className)).data(posField::kObject);
    }
    std::string add(uint32_t session, const std::string& counter, uint32_t number) {
        return send(addRequest(session, counter, number)).data(posField::kResult);
    }

    static Request addRequest(uint32_t session, const std::string& counter, uint32_t number) {
        return callRequest(session, counter, "add", littleEndian(number));
    }

    const dovrel::test::TemporaryFolder folder_;
    const std::string path_ = folder_.path("recording");
    RecordedHost recorded_{path_};
    ApplicationTable applications_{1000};
    Notes notes_;
    std::unique_ptr<Replay> replay_;
};

TEST_F(ReplayTest, SameRequests_GetTheSameRepliesWithNewIdentifiers) {
    const uint32_t oldSession = recorded_.registerApplication();
    const std::string oldObject = recorded_.instantiate(oldSession, "Echo");
    recorded_.send(callRequest(oldSession, oldObject, "echo", "hello"));
    recorded_.send(callRequest(oldSession, oldObject, "nonsense"));
    recorded_.send(deleteRequest(oldSession, oldObject));
    recorded_.send(unregisterRequest(oldSession));
    for (const ReplayMode mode : {ReplayMode::byRequest, ReplayMode::inSequence}) {
        replay(mode);
        const uint32_t session = registerApplication();
        EXPECT_NE(session, oldSession);
        const std::string object = instantiate(session, "Echo");
        EXPECT_NE(object, oldObject);
        EXPECT_EQ(send(callRequest(session, object, "echo", "hello")).data(posField::kResult), "hello");
        EXPECT_EQ(send(callRequest(session, object, "nonsense")).code(), 27u);
        EXPECT_FALSE(send(deleteRequest(session, object)).isException());
        EXPECT_EQ(applications_.size(), 1u);
        EXPECT_EQ(applications_.find(session).name, "Demo");
        EXPECT_FALSE(send(unregisterRequest(session)).isException());
        EXPECT_EQ(applications_.size(), 0u);
        EXPECT_EQ(replay_->replayedCount(), 6u);
        EXPECT_EQ(replay_->exchangeCount(), 6u);
        EXPECT_EQ(notes_, Notes());
    }
}

TEST_F(ReplayTest, SameRequestSeveralTimes_GetsItsRepliesInOrderAndTheLastOneAgain) {
    const uint32_t oldSession = recorded_.registerApplication();
    const std::string oldCounter = recorded_.instantiate(oldSession, "Counter");
    for (int i = 0; i < 2; ++i)
        recorded_.send(addRequest(oldSession, oldCounter, 5));
    replay();
    const uint32_t session = registerApplication();
    const std::string counter = instantiate(session, "Counter");
    EXPECT_EQ(add(session, counter, 5), littleEndian(5));
    EXPECT_EQ(add(session, counter, 5), littleEndian(10));
    EXPECT_EQ(add(session, counter, 5), littleEndian(10));
}

TEST_F(ReplayTest, SecondHostAndSecondObject_BeginWithTheFirstReply) {
    const uint32_t oldSession = recorded_.registerApplication();
    const std::string oldCounter = recorded_.instantiate(oldSession, "Counter");
    for (int i = 0; i < 2; ++i)
        recorded_.send(addRequest(oldSession, oldCounter, 5));
    replay();
    const uint32_t first = registerApplication();
    const uint32_t second = registerApplication();
    const std::string counter = instantiate(first, "Counter");
    const std::string another = instantiate(first, "Counter");
    const std::string counterOfSecond = instantiate(second, "Counter");
    EXPECT_EQ(add(first, counter, 5), littleEndian(5));
    EXPECT_EQ(add(second, counterOfSecond, 5), littleEndian(5));
    EXPECT_EQ(add(first, counter, 5), littleEndian(10));
    EXPECT_EQ(add(first, another, 5), littleEndian(5));
}

TEST_F(ReplayTest, ObjectsOfOneClass_KeepTheirOwnRepliesInAnyOrderOfCalls) {
    const uint32_t oldSession = recorded_.registerApplication();
    const std::string oldOne = recorded_.instantiate(oldSession, "Counter");
    const std::string oldTwo = recorded_.instantiate(oldSession, "Counter");
    recorded_.send(addRequest(oldSession, oldOne, 1));
    recorded_.send(addRequest(oldSession, oldOne, 7));
    recorded_.send(addRequest(oldSession, oldTwo, 7));
    replay();
    const uint32_t session = registerApplication();
    const std::string one = instantiate(session, "Counter");
    const std::string two = instantiate(session, "Counter");
    EXPECT_EQ(add(session, two, 7), littleEndian(7));
    EXPECT_EQ(add(session, one, 7), littleEndian(8));
    EXPECT_EQ(add(session, one, 1), littleEndian(1));
}

TEST_F(ReplayTest, NumbersThatALaterServerUsedAgain_MeanTheLaterApplication) {
    for (const char* name : {"One", "Two"}) {
        // Each server of the test begins with the same number.
        RecordedHost host(path_);
        const uint32_t session = host.registerApplication(name);
        host.send(commandRequest(session, "ping", name));
    }
    replay();
    const uint32_t one = registerApplication("One");
    const uint32_t two = registerApplication("Two");
    EXPECT_EQ(send(commandRequest(two, "ping", "Two")).data(posField::kResult), "Two");
    EXPECT_EQ(send(commandRequest(one, "ping", "One")).data(posField::kResult), "One");
    EXPECT_EQ(send(commandRequest(one, "ping", "Two")).code(), 23u);
}

TEST_F(ReplayTest, RequestOfAnotherApplicationThatRegisteredInTheSameWay_IsFound) {
    for (const char* text : {"first", "second"}) {
        const uint32_t session = recorded_.registerApplication();
        const std::string object = recorded_.instantiate(session, "Echo");
        recorded_.send(callRequest(session, object, "echo", text));
    }
    const uint32_t otherSession = recorded_.registerApplication("Other");
    const std::string otherObject = recorded_.instantiate(otherSession, "Echo");
    recorded_.send(callRequest(otherSession, otherObject, "echo", "third"));
    replay();
    const uint32_t session = registerApplication();
    const std::string object = instantiate(session, "Echo");
    EXPECT_EQ(send(callRequest(session, object, "echo", "second")).data(posField::kResult), "second");
    EXPECT_EQ(send(callRequest(session, object, "echo", "first")).data(posField::kResult), "first");
    EXPECT_EQ(send(callRequest(session, object, "echo", "third")).code(), 23u);
}

TEST_F(ReplayTest, RequestThatTheRecordingDoesNotHave_IsRefusedAndLogged) {
    const uint32_t oldSession = recorded_.registerApplication();
    const std::string oldObject = recorded_.instantiate(oldSession, "Echo");
    recorded_.send(callRequest(oldSession, oldObject, "echo", "hello"));
    replay();
    const uint32_t session = registerApplication();
    const std::string object = instantiate(session, "Echo");
    const Reply reply = send(callRequest(session, object, "echo", "Hello"));
    EXPECT_EQ(reply.code(), 23u);
    EXPECT_EQ(reply.text(),
              "the recording does not have this request here: call method, method name = \"echo\"");
    EXPECT_EQ(notes_, Notes{"replay: " + reply.text()});
    EXPECT_EQ(replay_->refusedCount(), 1u);
    EXPECT_TRUE(send(callRequest(session + 1, object, "echo", "hello")).isException());
}

TEST_F(ReplayTest, ClientProcessIdentity_IsNotCompared) {
    const auto withIdentity = [](const std::string& identity) {
        Request request(dovrel::posCommand::kRegisterApplication);
        request.data(posField::kApplicationName, std::string("Demo\0", 5));
        request.data(posField::kClientProcess, identity);
        request.data(posField::kClassList, arrayList({})).data(posField::kOptions, "");
        return request;
    };
    recorded_.send(withIdentity("12345678"));
    replay();
    EXPECT_FALSE(send(withIdentity("87654321")).isException());
}

TEST_F(ReplayTest, InSequence_OtherOrderIsRefusedUntilTheExpectedRequestComes) {
    const uint32_t oldSession = recorded_.registerApplication();
    for (const char* text : {"1", "2"})
        recorded_.send(commandRequest(oldSession, "ping", text));
    replay(ReplayMode::inSequence);
    const uint32_t session = registerApplication();
    const Reply early = send(commandRequest(session, "ping", "2"));
    EXPECT_EQ(early.code(), 23u);
    EXPECT_EQ(early.text(),
              "the recording does not have this request here: execute command; its next request is: "
              "execute command");
    EXPECT_EQ(send(commandRequest(session, "ping", "1")).data(posField::kResult), "1");
    EXPECT_EQ(send(commandRequest(session, "ping", "2")).data(posField::kResult), "2");
    EXPECT_EQ(send(commandRequest(session, "ping", "2")).text(),
              "the recording does not have this request here: execute command; all its requests have been "
              "replayed");
    EXPECT_EQ(notes_.size(), 2u);
}

TEST_F(ReplayTest, ExchangeThatFailed_FailsAgain) {
    recorded_.addFailure(versionRequest());
    replay();
    const Outcome outcome = handle(versionRequest());
    EXPECT_EQ(outcome.parameter, nullptr);
    EXPECT_EQ(outcome.status, -10000);
}

TEST_F(ReplayTest, RepliesThatAreNotTransferObjects_AreReplayedUnchanged) {
    recorded_.add(versionRequest(), toBytes("no block"));
    recorded_.add(versionRequest(), toBytes(""));
    recorded_.add(registerRequest("Demo"), toBytes("AsAk"));
    replay();
    EXPECT_EQ(bytesToText(handle(versionRequest()).parameter->bytes()), "no block");
    EXPECT_EQ(bytesToText(handle(versionRequest()).parameter->bytes()), "");
    EXPECT_EQ(bytesToText(handle(registerRequest("Demo")).parameter->bytes()), "AsAk");
}

TEST_F(ReplayTest, LargePayloads_AreReadFromTheirFile) {
    const std::string large(100000, 'x');
    const uint32_t oldSession = recorded_.registerApplication();
    recorded_.send(commandRequest(oldSession, "ping", large));
    replay();
    const uint32_t session = registerApplication();
    EXPECT_EQ(send(commandRequest(session, "ping", large)).data(posField::kResult), large);
    EXPECT_TRUE(send(commandRequest(session, "ping", large + "x")).isException());
    std::remove((path_ + ".payloads").c_str());
    EXPECT_EQ(send(commandRequest(session, "ping", large)).text(),
              "Could not open file for reading: " + path_ + ".payloads");
}

TEST_F(ReplayTest, LargeReplies_AreNotReadBeforeTheyAreNeeded) {
    recorded_.add(versionRequest(), toBytes(std::string(5000, 'x')));
    std::vector<std::string> problems;
    Recording recording(path_, problems);
    EXPECT_EQ(problems, Notes());
    std::remove((path_ + ".payloads").c_str());
    Replay replay(std::move(recording), ReplayMode::byRequest, applications_, [](const std::string&) {});
    EXPECT_EQ(Reply(replay.handle(versionRequest().bytes(), 0).parameter->bytes()).text(),
              "Could not open file for reading: " + path_ + ".payloads");
}

TEST_F(ReplayTest, BytesThatAreNotARequest_AreRefused) {
    recorded_.registerApplication();
    replay();
    const Outcome outcome = replay_->handle(toBytes("no block"), 0);
    EXPECT_EQ(Reply(outcome.parameter->bytes()).text(), "the bytes are not a request");
}

TEST_F(ReplayTest, ApplicationThatHasUnregistered_IsForgotten) {
    const uint32_t oldSession = recorded_.registerApplication();
    recorded_.send(commandRequest(oldSession, "ping", "1"));
    recorded_.send(unregisterRequest(oldSession));
    replay();
    const uint32_t session = registerApplication();
    EXPECT_FALSE(send(unregisterRequest(session)).isException());
    EXPECT_EQ(send(commandRequest(session, "ping", "1")).code(), 23u);
}

TEST_F(ReplayTest, ApplicationWhoseProcessHasEnded_IsForgottenAtTheNextRegistration) {
    const pid_t ended = fork();
    if (ended == 0) _exit(0);
    ASSERT_EQ(waitpid(ended, nullptr, 0), ended);
    const uint32_t oldSession = recorded_.registerApplication();
    const std::string oldObject = recorded_.instantiate(oldSession, "Echo");
    recorded_.send(callRequest(oldSession, oldObject, "echo", "hello"));
    replay();
    const uint32_t gone = Reply(replay_->handle(registerRequest("Demo").bytes(), ended).parameter->bytes())
                              .number(posField::kSession);
    const std::string object = instantiate(gone, "Echo");
    EXPECT_FALSE(send(callRequest(gone, object, "echo", "hello")).isException());
    const uint32_t session = registerApplication();
    EXPECT_EQ(applications_.size(), 1u);
    EXPECT_EQ(send(callRequest(gone, object, "echo", "hello")).code(), 23u);
    EXPECT_EQ(
        send(callRequest(session, instantiate(session, "Echo"), "echo", "hello")).data(posField::kResult),
        "hello");
}

}  // namespace
}  // namespace merrowd::test
