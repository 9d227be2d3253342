// Compares docs/protocol.md with the running code: the examples must equal what the library's trader sends
// and what this server replies.
#include "tests/support/DocumentPage.h"

#include <gtest/gtest.h>

#include <set>

#include "InterProcessCommunication/IPC_via_AE.h"
#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "client/exceptions/CPPException.h"
#include "server/Exchanges.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

using dovrel::CPPException;
using dovrel::test::DocumentPage;

// Formats bytes as "41 73 41 6B", so that differences are readable.
std::string hexOf(const std::string& bytes) {
    return dovrel::bytesToHexText(bytes.data(), static_cast<uint32_t>(bytes.size()));
}

// Passes what the trader sends to a server in this process, and records requests and replies.
class LoopbackForwarder : public dovrel::POSTransferObjForwarder {
  public:
    explicit LoopbackForwarder(Exchanges& exchanges) : exchanges_(exchanges) {}

    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override {
        lastRequest = bytesToText(request.bytes());
        Outcome outcome = exchanges_.data(request.bytes(), 0);
        lastAnswer = bytesToText(outcome.parameter->bytes());
        if (request.getCommand() == dovrel::posCommand::kQueryInterfaceVersion) {
            versionRequest = lastRequest;
            versionAnswer = lastAnswer;
        }
        return outcome.parameter.release();
    }
    void ConnectToPOS(uint32_t) override {}
    void CheckConnection() override {}
    CPPByteArray GetClientProcessID() override { return bytesOf(std::string("\0\0\0\0\x67\x12\0\0", 8)); }

    std::string lastRequest;
    std::string lastAnswer;
    std::string versionRequest;  // sent before a registration
    std::string versionAnswer;

  private:
    Exchanges& exchanges_;
};

class ProtocolPageTest : public testing::Test {
  protected:
    ProtocolPageTest() { trader_.setForwarder(&forwarder_); }

    void expectExample(const std::string& command) {
        EXPECT_EQ(hexOf(forwarder_.lastRequest), hexOf(page_.example(command + "-request"))) << command;
        EXPECT_EQ(hexOf(forwarder_.lastAnswer), hexOf(page_.example(command + "-reply"))) << command;
    }

    // Each of these functions sends the request that the page shows.
    dovrel::POSRegistration registerDemo() {
        const std::vector<dovrel::CPPClassID> classes{dovrel::CPPClassID(bytesOf(padded("Echo")))};
        dovrel::POSRegistration registration;
        EXPECT_TRUE(trader_.registerApplication("Demo", classes, bytesOf("\x61\x04"), registration));
        return registration;
    }
    dovrel::CPPObjectID instantiateEcho(uint32_t application) {
        dovrel::CPPObjectID object;
        dovrel::POSServerMessage message;
        EXPECT_TRUE(trader_.instantiateObject(application, dovrel::CPPClassID(bytesOf(padded("Echo"))),
                                              dovrel::kNoExecuter, object, message));
        return object;
    }
    void callEcho(uint32_t application, const dovrel::CPPObjectID& object) {
        uint8_t* result = nullptr;
        uint32_t length = 0;
        dovrel::POSServerMessage message;
        const std::string hello = "hello";
        EXPECT_TRUE(trader_.callMethod(application, nullptr, object, "echo",
                                       reinterpret_cast<const uint8_t*>(hello.data()), 5, &result, &length,
                                       message));
        EXPECT_EQ(std::string(result, result + length), hello);
        delete[] result;
    }

    const DocumentPage page_{PROTOCOL_PAGE};
    FakeProcess process_;
    ServerState state_{TestServer::kFirstSession};
    ExchangeLog log_{"/dev/null"};
    Exchanges exchanges_{state_, process_, log_};
    LoopbackForwarder forwarder_{exchanges_};
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
    expectExample("register-application");
    EXPECT_EQ(hexOf(forwarder_.versionRequest), hexOf(page_.example("query-interface-version-request")));
    EXPECT_EQ(hexOf(forwarder_.versionAnswer), hexOf(page_.example("query-interface-version-reply")));
}

TEST_F(ProtocolPageTest, TheLifeOfAnObject_IsTheBytesOfThePage) {
    const uint32_t application = registerDemo().applicationId;
    const dovrel::CPPObjectID object = instantiateEcho(application);
    expectExample("instantiate-object");
    callEcho(application, object);
    expectExample("call-method");
    EXPECT_TRUE(trader_.deleteObject(application, object));
    expectExample("delete-object");
    EXPECT_THROW(
        {
            try {
                trader_.deleteObject(application, object);
            } catch (CPPException* caught) {
                const std::unique_ptr<CPPException> failure(caught);
                throw CPPException(*failure);
            }
        },
        CPPException);
    EXPECT_EQ(hexOf(forwarder_.lastAnswer), hexOf(page_.example("exception-reply")));
}

TEST_F(ProtocolPageTest, AMessageForTheUser_IsTheBytesOfThePage) {
    const uint32_t application = registerDemo().applicationId;
    const dovrel::CPPObjectID object = instantiateEcho(application);
    state_.settings.misbehaviour.fault = Fault::message;
    state_.settings.misbehaviour.messageFlags = 1;
    state_.settings.misbehaviour.messageText = "Hi";
    callEcho(application, object);
    EXPECT_EQ(hexOf(forwarder_.lastAnswer), hexOf(page_.example("call-method-reply-with-message")));
}

TEST_F(ProtocolPageTest, CommandAndInformation_AreTheBytesOfThePage) {
    const uint32_t application = registerDemo().applicationId;
    const std::string ping = "ping", abc = "abc", three("\3\0", 2);
    uint8_t* result = nullptr;
    uint32_t length = 0;
    EXPECT_TRUE(trader_.executeCommand(application, reinterpret_cast<const uint8_t*>(ping.data()), 4,
                                       reinterpret_cast<const uint8_t*>(abc.data()), 3, &result, &length));
    expectExample("execute-command");
    delete[] result;
    EXPECT_TRUE(trader_.getInformation(application, reinterpret_cast<const uint8_t*>(three.data()), 2,
                                       &result, &length));
    expectExample("get-information");
    delete[] result;
}

TEST_F(ProtocolPageTest, Unregistration_IsTheBytesOfThePage) {
    EXPECT_TRUE(trader_.unregisterApplication(registerDemo().applicationId));
    expectExample("unregister-application");
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
