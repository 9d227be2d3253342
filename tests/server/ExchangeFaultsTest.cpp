// The misbehaviours that the settings can ask for.
#include "tests/server/ExchangesFixture.h"

namespace merrowd::test {
namespace {

using Calls = std::vector<std::string>;

class ExchangeFaults : public ExchangesFixture {};

TEST_F(ExchangeFaults, Late_PausesAndReplies) {
    prepare(misbehaviour("late") + setting("delay", 1234));
    EXPECT_EQ(readReply(call()).data(posField::kResult), "hello");
    EXPECT_EQ(process_.calls, (Calls{"pause 1234"}));
}

TEST_F(ExchangeFaults, Late_IsInTheLogBeforeThePause) {
    prepare(setting("log", 1) + misbehaviour("vanishBefore"));
    EXPECT_THROW(call(), Vanished);
    EXPECT_NE(logText().find("#1 call method\n"), std::string::npos);
}

TEST_F(ExchangeFaults, Silent_Hangs) {
    prepare(misbehaviour("silent"));
    EXPECT_TRUE(call().isSilent);
    EXPECT_EQ(process_.calls, (Calls{"hang"}));
}

TEST_F(ExchangeFaults, VanishBefore_DoesNothingFirst) {
    prepare(misbehaviour("vanishBefore"));
    EXPECT_THROW(send(deleteRequest(session_, object_)), Vanished);
    EXPECT_EQ(state_.applications.objectCount(), 1u);
}

TEST_F(ExchangeFaults, VanishDuring_HasDoneTheWork) {
    prepare(misbehaviour("vanishDuring"));
    EXPECT_THROW(send(deleteRequest(session_, object_)), Vanished);
    EXPECT_EQ(state_.applications.objectCount(), 0u);
}

TEST_F(ExchangeFaults, VanishAfter_RepliesAndTellsTheServerToEnd) {
    prepare(misbehaviour("vanishAfter"));
    const Outcome outcome = call();
    EXPECT_EQ(readReply(outcome).data(posField::kResult), "hello");
    EXPECT_TRUE(outcome.endServer);
    EXPECT_TRUE(outcome.vanish);
    EXPECT_EQ(process_.calls, Calls());
}

TEST_F(ExchangeFaults, Cut_LeavesTheFirstBytes) {
    prepare("");
    const std::string whole = readBytes(call());
    for (const size_t length : {size_t{0}, size_t{1}, size_t{17}, whole.size(), whole.size() + 1}) {
        apply(misbehaviour("cut") + setting("cutTo", static_cast<int64_t>(length)));
        EXPECT_EQ(readBytes(call()), whole.substr(0, length));
    }
}

TEST_F(ExchangeFaults, Garbage_IsNotABlock) {
    prepare(misbehaviour("garbage"));
    const std::string reply = readBytes(call());
    EXPECT_GT(reply.size(), 10u);
    EXPECT_NE(reply.substr(0, 4), "AsAk");
}

TEST_F(ExchangeFaults, EmptyAndNoParameter_AreRepliesWithoutBytesAndWithoutAParameter) {
    prepare(misbehaviour("empty"));
    EXPECT_EQ(readBytes(call()), "");
    apply(misbehaviour("noParameter"));
    EXPECT_EQ(call().parameter, nullptr);
}

TEST_F(ExchangeFaults, FailedEvent_HasTheStatusAndDoesNothing) {
    prepare(misbehaviour("failedEvent") + setting("eventStatus", -1708));
    const Outcome outcome = send(deleteRequest(session_, object_));
    EXPECT_EQ(outcome.status, -1708);
    EXPECT_EQ(outcome.parameter, nullptr);
    EXPECT_EQ(state_.applications.objectCount(), 1u);
}

TEST_F(ExchangeFaults, Error_IsAnExceptionOfAnyCodeAndTextAndDoesNothing) {
    prepare(refusal("", 99, "Never heard of it."));
    const Reply reply = readReply(send(deleteRequest(session_, object_)));
    EXPECT_EQ(reply.code(), 99u);
    EXPECT_EQ(reply.text(), "Never heard of it.");
    EXPECT_EQ(reply.command(), 13u);
    EXPECT_EQ(state_.applications.objectCount(), 1u);
}

TEST_F(ExchangeFaults, Message_IsInTheRepliesThatCanCarryOneAndNoOther) {
    prepare(misbehaviour("message") + setting("messageFlags", 2) + setting("messageText", "Hi."));
    const Reply reply = readReply(call());
    EXPECT_EQ(reply.data(posField::kServerMessage), littleEndian(2) + "Hi.");
    EXPECT_EQ(reply.data(posField::kResult), "hello");
    EXPECT_EQ(readReply(send(instantiateRequest(session_, "Echo"))).data(posField::kServerMessage),
              littleEndian(2) + "Hi.");
    EXPECT_FALSE(readReply(send(commandRequest(session_, "ping"))).has(posField::kServerMessage));
    EXPECT_EQ(readReply(send(callRequest(session_, object_, "none"))).code(), 27u);
}

TEST_F(ExchangeFaults, Huge_IsTheResultOfMethodsCommandsAndInformation) {
    prepare(misbehaviour("huge") + setting("hugeSize", 1000000));
    EXPECT_EQ(readReply(call()).data(posField::kResult).size(), 1000000u);
    EXPECT_EQ(readReply(send(commandRequest(session_, "ping"))).data(posField::kResult).size(), 1000000u);
    EXPECT_EQ(readReply(send(informationRequest(session_, std::string("\1\0", 2))))
                  .data(posField::kInformation)
                  .size(),
              1000000u);
}

}  // namespace
}  // namespace merrowd::test
