// Invalid replies. Whatever the server sends, the call fails cleanly and the next call works.
#include "tests/endtoend/EndToEnd.h"
#include "tests/support/UserTexts.h"

namespace dovrel::test {
namespace {

constexpr char kUnrecoverable[] = "DLL_ERROR_UNRECOVERABLE_ERROR";
class Answers : public InSession {
  protected:
    Answers() {
        root_.configure(setting("log", 1));
        application_ = host_.registered({"Echo"});
    }
    // Makes one call under the misbehaviour of this name and expects it to fail with one alert of this message.
    // Then expects the next call to succeed.
    void expectFailure(const std::string& fault, const std::string& message,
                       const std::string& details = "") {
        ObjectId echo = host_.instantiate(application_, "Echo");
        ServerControl::send(misbehaviour(fault, "call method", 1) + details);
        const size_t callsBefore = countInServerLog(" call method");
        Console console;
        const Answered answered = host_.call(application_, echo, "echo", "hello");
        console.stop();
        EXPECT_EQ(answered.status, POS_FAILURE);
        EXPECT_EQ(answered.bytes, "");
        EXPECT_EQ(countFailures(console, message, kUnrecoverable), 1u)
            << fault << details << console.systemLog();
        EXPECT_EQ(alerts(console), 1u);
        EXPECT_EQ(countInServerLog(" call method"), callsBefore + 1) << "it was sent once";
        EXPECT_EQ(host_.call(application_, echo, "echo", "hello").bytes, "hello");
    }

    uint32_t application_ = 0;
};

// A message of one character comes from the reader and names the check that failed.
TEST_F(Answers, OfNoBytes_AreNotAStructuredBlock) {
    expectFailure("empty", "1");
}

TEST_F(Answers, OfGarbage_AreNotAStructuredBlock) {
    expectFailure("garbage", "1");
}

TEST_F(Answers, CutInsideTheBlocksHeaderOrAPart_AreNotAStructuredBlock) {
    for (const int length : {1, 4, 9, 11, 20, 45, 60})
        expectFailure("cut", "1", setting("cutTo", length));
}

// The reply is the header alone. The reader has no text of its own for a missing header field.
TEST_F(Answers, WithoutTheHeaderField1_AreAMissingPart) {
    expectFailure("cut", "???", setting("cutTo", 10));
    expectFailure("cut", "???", setting("cutTo", 22));
}

TEST_F(Answers, WithoutAFieldOfTheCommand_AreAMissingPart) {
    expectFailure("cut", "2", setting("cutTo", 46));
}

TEST_F(Answers, WithoutADirectParameter_AreAnUnknownCommunicationErrorAtOnce) {
    expectFailure("noParameter", kCommunicationError);
}

TEST_F(Answers, ToAnEventThatFailed_AreAnUnknownCommunicationErrorAtOnce) {
    expectFailure("failedEvent", kCommunicationError, setting("eventStatus", -1708));
}

TEST_F(Answers, WithoutField118ToTheVersionQuery_AreAMissingPartAndNotAnInterfaceFailure) {
    ServerControl::send(misbehaviour("cut", "query interface version") + setting("cutTo", 46));
    uint32_t other = 0;
    Console console;
    EXPECT_EQ(host_.registerApplication(other, {}, {}, "Other"), POS_FAILURE);
    console.stop();
    EXPECT_EQ(countAlerts(console, texts_.failureBody("Other", "2", kUnrecoverable)), 1u)
        << console.systemLog();
}

TEST_F(Answers, ThatAreHuge_ArriveWhole) {
    ObjectId echo = host_.instantiate(application_, "Echo");
    ServerControl::send(misbehaviour("huge") + setting("hugeSize", 100000000));
    const Answered answered = host_.call(application_, echo, "echo");
    ServerControl::send(misbehaviour("none"));
    EXPECT_EQ(answered.status, POS_OK);
    ASSERT_EQ(answered.bytes.size(), 100000000u);
    EXPECT_EQ(answered.bytes.find_first_not_of('\x5A'), std::string::npos);
}

TEST_F(Answers, ThatComeLate_AreWaitedFor) {
    ObjectId echo = host_.instantiate(application_, "Echo");
    ServerControl::send(misbehaviour("late", "", 1) + setting("delay", 2000));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(host_.call(application_, echo, "echo", "late").bytes, "late");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1900));
}

}  // namespace
}  // namespace dovrel::test
