// Compares docs/protocol.md with the running code: the examples must equal what the library's trader sends
// and what this server replies.
#include "tests/support/DocumentPage.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "InterProcessCommunication/IPC_via_AE.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "server/Exchanges.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/Requests.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"
#include "tests/support/library/ForwarderDouble.h"

namespace merrowd::test {
namespace {

namespace posCommand = dovrel::posCommand;
using dovrel::POSOutcome;
using dovrel::test::DocumentPage;
using dovrel::test::failureOf;

// Formats bytes as "41 73 41 6B", so that differences are readable.
std::string hexOf(const std::string& bytes) {
    return dovrel::bytesToHexText(bytes.data(), static_cast<uint32_t>(bytes.size()));
}

class ProtocolPageTest : public testing::Test {
  protected:
    // The trader's requests reach a server in this process.
    ProtocolPageTest() {
        forwarder_.clientProcess = bytesOf(std::string("\0\0\0\0\x67\x12\0\0", 8));
        forwarder_.answerAll([this](POSTransferObj& request) {
            Outcome outcome = exchanges_.data(request.bytes(), 0);
            replies_[request.getCommand()] = bytesToText(outcome.parameter->bytes());
            return std::move(outcome.parameter);
        });
        trader_.setForwarder(&forwarder_);
    }

    // Compares the last exchange of the command with the example of its name.
    void expectExample(const POSCommand& command) {
        const std::string name = dovrel::replaceChar(command.name, ' ', '-');
        const auto request = forwarder_.lastRequest(command);
        ASSERT_NE(request, nullptr) << name;
        EXPECT_EQ(hexOf(bytesToText(request->bytes())), hexOf(page_.example(name + "-request"))) << name;
        EXPECT_EQ(hexOf(replies_[command]), hexOf(page_.example(name + "-reply"))) << name;
    }

    static dovrel::ByteView viewOf(const std::string& text) {
        return {reinterpret_cast<const uint8_t*>(text.data()), static_cast<uint32_t>(text.size())};
    }

    // Each of these functions sends the request that the page shows.
    dovrel::POSRegistration registerDemo() {
        const std::vector<dovrel::CPPClassID> classes{dovrel::CPPClassID(bytesOf(padded("Echo")))};
        const auto registered = trader_.registerApplication("Demo", classes, bytesOf("\x61\x04"));
        EXPECT_EQ(registered.outcome, POSOutcome::kDone);
        return registered.value;
    }
    dovrel::CPPObjectID instantiateEcho(uint32_t application) {
        const auto created = trader_.instantiateObject(
            application, dovrel::CPPClassID(bytesOf(padded("Echo"))), dovrel::kNoExecuter);
        EXPECT_EQ(created.outcome, POSOutcome::kDone);
        return created.value.object;
    }
    void callEcho(uint32_t application, const dovrel::CPPObjectID& object) {
        const std::string hello = "hello";
        const auto reply = trader_.callMethod(application, {object, std::nullopt, "echo", viewOf(hello)});
        EXPECT_EQ(reply.outcome, POSOutcome::kDone);
        EXPECT_EQ(dovrel::test::blockText(reply.value.result), hello);
    }

    const DocumentPage page_{PROTOCOL_PAGE};
    FakeProcess process_;
    ServerState state_{TestServer::kFirstSession};
    ExchangeLog log_{"/dev/null"};
    Exchanges exchanges_{state_, process_, log_};
    std::map<uint32_t, std::string> replies_;  // the last one of each command
    dovrel::test::ForwarderDouble forwarder_;
    dovrel::POSTransferObjTrader trader_;
};

TEST_F(ProtocolPageTest, Examples_AreOneRequestAndOneReplyPerCommandAndTheSpecialCases) {
    std::set<std::string> expected{"byte-array-list", "handshake-request", "handshake-reply",
                                   "exception-reply", "quit-request",      "call-method-reply-with-message"};
    for (const POSCommand& command : dovrel::kPOSCommands) {
        const std::string name = dovrel::replaceChar(command.name, ' ', '-');
        expected.insert(name + "-request");
        expected.insert(name + "-reply");
    }
    const std::vector<std::string> names = page_.exampleNames();
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()), expected);
}

TEST_F(ProtocolPageTest, RegistrationAndVersionQuery_AreTheBytesOfThePage) {
    registerDemo();
    expectExample(posCommand::kRegisterApplication);
    expectExample(posCommand::kQueryInterfaceVersion);
}

TEST_F(ProtocolPageTest, TheLifeOfAnObject_IsTheBytesOfThePage) {
    const uint32_t application = registerDemo().applicationId;
    const dovrel::CPPObjectID object = instantiateEcho(application);
    expectExample(posCommand::kInstantiateObject);
    callEcho(application, object);
    expectExample(posCommand::kCallMethod);
    EXPECT_EQ(trader_.deleteObject(application, object), POSOutcome::kDone);
    expectExample(posCommand::kDeleteObject);
    EXPECT_NE(failureOf([&] { trader_.deleteObject(application, object); }), nullptr);
    EXPECT_EQ(hexOf(replies_[posCommand::kDeleteObject]), hexOf(page_.example("exception-reply")));
}

TEST_F(ProtocolPageTest, AMessageForTheUser_IsTheBytesOfThePage) {
    const uint32_t application = registerDemo().applicationId;
    const dovrel::CPPObjectID object = instantiateEcho(application);
    state_.settings.misbehaviour.fault = Fault::message;
    state_.settings.misbehaviour.messageFlags = 1;
    state_.settings.misbehaviour.messageText = "Hi";
    callEcho(application, object);
    EXPECT_EQ(hexOf(replies_[posCommand::kCallMethod]),
              hexOf(page_.example("call-method-reply-with-message")));
}

TEST_F(ProtocolPageTest, CommandAndInformation_AreTheBytesOfThePage) {
    const uint32_t application = registerDemo().applicationId;
    const std::string ping = "ping", abc = "abc", three("\3\0", 2);
    EXPECT_EQ(trader_.executeCommand(application, {viewOf(ping), viewOf(abc)}).outcome, POSOutcome::kDone);
    expectExample(posCommand::kExecuteCommand);
    EXPECT_EQ(trader_.getInformation(application, viewOf(three)).outcome, POSOutcome::kDone);
    expectExample(posCommand::kGetInformation);
}

TEST_F(ProtocolPageTest, Unregistration_IsTheBytesOfThePage) {
    EXPECT_EQ(trader_.unregisterApplication(registerDemo().applicationId), POSOutcome::kDone);
    expectExample(posCommand::kUnregisterApplication);
}

TEST_F(ProtocolPageTest, Handshake_IsTheBytesOfThePage) {
    const std::string text(dovrel::serverEvent::kWakeText, dovrel::serverEvent::kWakeTextSize);
    EXPECT_EQ(page_.example("handshake-request"), text);
    EXPECT_EQ(page_.example("handshake-reply"), bytesToText(exchanges_.handshake(0).parameter->bytes()));
}

// The channel's tests check that the event of QuitServer has no data; they can see the events.
TEST_F(ProtocolPageTest, Quit_HasNoBytesOnThePage) {
    EXPECT_EQ(page_.example("quit-request"), "");
}

TEST_F(ProtocolPageTest, AByteArrayList_IsTheBytesOfThePage) {
    EXPECT_EQ(hexOf(page_.example("byte-array-list")), hexOf(arrayList({"ab", ""})));
}

}  // namespace
}  // namespace merrowd::test
