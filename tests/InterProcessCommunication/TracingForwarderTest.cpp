#include "InterProcessCommunication/TracingForwarder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSTransferObj.h"
#include "client/exceptions/POSException.h"
#include "platform/Environment.h"
#include "tests/InterProcessCommunication/PreparedForwarder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TraceLines.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::kNormalAnswer;

/// Replaces the time in a line, wherever it is: "123 us" becomes "# us".
std::string withoutTime(std::string line) {
    const size_t end = line.find(" us");
    if (end == std::string::npos) return line;
    const size_t begin = line.find_last_not_of("0123456789", end - 1) + 1;
    EXPECT_LT(begin, end) << line;
    return line.replace(begin, end - begin, "#");
}

class TracingForwarderTest : public testing::Test {
  protected:
    /// Returns a forwarder that traces and passes everything on to `prepared`.
    std::unique_ptr<TracingForwarder> traced(const std::string& areas) {
        auto inner = std::make_unique<test::PreparedForwarder>();
        prepared = inner.get();
        return std::make_unique<TracingForwarder>(std::move(inner), areas + ",file=" + folder.path("trace"));
    }

    std::vector<std::string> lines() const {
        std::vector<std::string> found;
        for (const std::string& line : test::splitTraceEntries(folder.read("trace")))
            found.push_back(withoutTime(line));
        return found;
    }

    /// Returns a request to delete an object.
    static std::unique_ptr<POSTransferObj> newRequest() {
        auto request = std::make_unique<POSTransferObj>(1, 10, 13);
        request->writeUInt32(103, 65537);
        return request;
    }

    std::unique_ptr<POSException> failureThrough(TracingForwarder& forwarder) const {
        return test::failureOf<POSException>([&] { delete forwarder.ForwardTransferObj(*request); });
    }

    const test::TemporaryFolder folder;
    const std::unique_ptr<POSTransferObj> request = newRequest();
    test::PreparedForwarder* prepared = nullptr;
};

TEST_F(TracingForwarderTest, Exchange_PassesUnchangedAndIsALineBeforeAndALineAfter) {
    const auto forwarder = traced("exchange");
    prepared->answerParts(kNormalAnswer);
    const std::unique_ptr<POSTransferObj> answer(forwarder->ForwardTransferObj(*request));
    EXPECT_EQ(test::toHex(prepared->lastRequest(posCommand::kDeleteObject)->bytes()),
              test::toHex(request->bytes()));
    EXPECT_EQ(answer->bytes().getSize(), 34u);
    EXPECT_EQ(answer->getMessageKind(), 11u);
    EXPECT_EQ(lines(), (std::vector<std::string>{"exchange: delete object, 58 bytes",
                                                 "exchange: delete object: answered, 34 bytes, # us"}));
}

TEST_F(TracingForwarderTest, Contents_AreShownAtLevel3Only) {
    for (const char* areas : {"exchange:1", "exchange:2", "all", "exchange:3"}) {
        const auto forwarder = traced(areas);
        prepared->answerParts(test::exceptionAnswer(25, "a secret"));
        delete forwarder->ForwardTransferObj(*request);
        const std::string trace = folder.read("trace");
        const bool asked = areas == std::string("exchange:3");
        EXPECT_EQ(trace.find("a secret") != std::string::npos, asked) << areas;
        EXPECT_EQ(trace.find("\n    > 103 session identifier = 65537\n") != std::string::npos, asked)
            << areas;
    }
}

TEST_F(TracingForwarderTest, ErrorAnswer_IsALineWithItsCode) {
    const auto forwarder = traced("exchange:1");
    prepared->answerParts(kNormalAnswer);
    prepared->answerParts(test::exceptionAnswer(25, "text"));
    for (int i = 0; i < 2; ++i)
        delete forwarder->ForwardTransferObj(*request);
    EXPECT_EQ(lines(), std::vector<std::string>{
                           "exchange: delete object: error 25 (object not found), 58 bytes, # us"});
}

TEST_F(TracingForwarderTest, AnswerThatCannotBeRead_IsALineAndPassesUnread) {
    const auto forwarder = traced("exchange:1");
    for (const char* bytes : {"", "no block"}) {
        prepared->answerBytes(test::makeArray(bytes));
        const std::unique_ptr<POSTransferObj> answer(forwarder->ForwardTransferObj(*request));
        EXPECT_EQ(test::toText(answer->bytes()), bytes);
    }
    EXPECT_EQ(lines(), (std::vector<std::string>{
                           "exchange: delete object: an answer that cannot be read, 0 bytes, # us",
                           "exchange: delete object: an answer that cannot be read, 8 bytes, # us"}));
}

TEST_F(TracingForwarderTest, FailureOfTheExchange_PassesAsItIsAfterALine) {
    const auto forwarder = traced("exchange:1");
    prepared->throwAtRequest("The line is dead.");
    const auto failure = failureThrough(*forwarder);
    ASSERT_NE(failure, nullptr);
    EXPECT_STREQ(failure->getMessage(), "The line is dead.");
    EXPECT_EQ(lines(), std::vector<std::string>{"exchange: delete object: failed, # us: The line is dead."});
}

TEST_F(TracingForwarderTest, ErrorCodesThatNoAlertShows_AreLinesLikeOthers) {
    const auto forwarder = traced("exchange:1");
    prepared->answerParts(test::exceptionAnswer(36, "text"));
    prepared->answerParts(test::exceptionAnswer(99, "text"));
    for (int i = 0; i < 2; ++i)
        delete forwarder->ForwardTransferObj(*request);
    EXPECT_EQ(lines(), (std::vector<std::string>{
                           "exchange: delete object: error 36 (library not found), 58 bytes, # us",
                           "exchange: delete object: error 99 (unknown), 58 bytes, # us"}));
}

TEST_F(TracingForwarderTest, MessageOfSeveralLinesInAnyEncoding_IsReadableAndForgesNoLine) {
    const auto forwarder = traced("exchange:1");
    prepared->throwAtRequest(
        "\xD2Zur\x9F"
        "ck\xD3\rdovrel 1 2 us exchange: forged\n> 107 method name");
    failureThrough(*forwarder);
    EXPECT_EQ(lines(), std::vector<std::string>{"exchange: delete object: failed, # us: “Zurück”\n"
                                                "    | dovrel 1 2 us exchange: forged\n"
                                                "    | > 107 method name"});
}

TEST_F(TracingForwarderTest, ValueOfSeveralLines_IsOneLineOfTheContents) {
    const auto forwarder = traced("exchange:3");
    prepared->answerParts(test::exceptionAnswer(25,
                                                "Gr\x9A\xA7"
                                                "e\r< 151 exception code = 7\ndovrel 1"));
    delete forwarder->ForwardTransferObj(*request);
    EXPECT_EQ(lines().back().substr(lines().back().find('\n')),
              "\n    < 150 exception text = \"Größe\\n< 151 exception code = 7\\ndovrel 1\""
              "\n    < 151 exception code = 25");
}

TEST_F(TracingForwarderTest, ConnectAndCheck_AreLinesOfTheConnection) {
    const auto forwarder = traced("connection");
    forwarder->ConnectToPOS(10);
    forwarder->CheckConnection();
    EXPECT_EQ(test::toHex(forwarder->GetClientProcessID()), test::kProcessIdentity);
    EXPECT_EQ(prepared->calls(), (std::vector<std::string>{"connect 10", "check", "identify"}));
    EXPECT_EQ(lines(), (std::vector<std::string>{"connection: connect: # us", "connection: checked"}));
}

TEST_F(TracingForwarderTest, FailureToConnect_PassesAsItIsAfterALine) {
    const auto forwarder = traced("connection:1");
    prepared->throwAtConnect("Nobody is there.");
    EXPECT_EQ(test::failureText([&] { forwarder->ConnectToPOS(10); }), "Nobody is there.");
    EXPECT_EQ(lines(), std::vector<std::string>{"connection: connect: failed, # us: Nobody is there."});
}

TEST_F(TracingForwarderTest, AreaThatIsOff_HasNoLines) {
    const auto forwarder = traced("connection");
    prepared->answerParts(kNormalAnswer);
    delete forwarder->ForwardTransferObj(*request);
    EXPECT_TRUE(lines().empty());
}

TEST_F(TracingForwarderTest, TraceIfRequested_WithoutTheVariable_IsTheForwarderItself) {
    setEnvironmentSource([](const char*) -> const char* { return nullptr; });
    auto inner = std::make_unique<test::PreparedForwarder>();
    const POSTransferObjForwarder* const itself = inner.get();
    EXPECT_EQ(traceIfRequested(std::move(inner)).get(), itself);
    setEnvironmentSource(nullptr);
}

TEST_F(TracingForwarderTest, TraceIfRequested_WithTheVariable_TracesUntilTheForwarderEnds) {
    setEnvironmentSource([](const char* name) {
        return name == std::string("POS_TRACE") ? "connection:1,file=/dev/null" : nullptr;
    });
    {
        const auto forwarder = traceIfRequested(std::make_unique<test::PreparedForwarder>());
        EXPECT_NE(dynamic_cast<TracingForwarder*>(forwarder.get()), nullptr);
        EXPECT_TRUE(Trace::wants(TraceArea::kConnection, TraceLevel::kFailures));
        EXPECT_FALSE(Trace::wants(TraceArea::kExchange, TraceLevel::kFailures));
    }
    EXPECT_FALSE(Trace::wants(TraceArea::kConnection, TraceLevel::kFailures));
    setEnvironmentSource(nullptr);
}

}  // namespace
}  // namespace dovrel
