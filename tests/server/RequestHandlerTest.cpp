#include "server/RequestHandler.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

namespace posField = dovrel::posField;

TEST(RequestHandler, RegisterApplication_ReturnsASessionAndFlags) {
    TestServer server;
    const Reply reply = server.send(registerRequest("Demo", {"Echo"}));
    EXPECT_EQ(reply.messageKind(), 11u);
    EXPECT_EQ(reply.command(), 10u);
    EXPECT_EQ(reply.number(posField::kSession), 65537u);
    EXPECT_EQ(reply.data(posField::kRegistrationFlags), littleEndian(0));
}

TEST(RequestHandler, RegisterApplication_CountsSessionsUp) {
    TestServer server;
    EXPECT_EQ(server.registerApplication("One"), 65537u);
    EXPECT_EQ(server.registerApplication("Two"), 65538u);
}

TEST(RequestHandler, RegisterApplication_WithTheSettingCheckClasses_SetsBit0OfTheFlags) {
    TestServer server;
    server.state().settings.checkClasses = true;
    EXPECT_EQ(server.send(registerRequest("Demo")).data(posField::kRegistrationFlags), littleEndian(1));
}

TEST(RequestHandler, RegisterApplication_WithAnEmptyName_IsFine) {
    TestServer server;
    EXPECT_FALSE(server.send(registerRequest("")).isException());
}

TEST(RequestHandler, RegisterApplication_WhenTooManyAreRegistered_IsRefusedAsRegistration) {
    TestServer server;
    for (size_t i = 0; i < ApplicationTable::kMostApplications; ++i)
        server.registerApplication();
    EXPECT_EQ(server.send(registerRequest("One more")).code(), 32u);
}

TEST(RequestHandler, UnregisterApplication_ForgetsApplicationAndObjects) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    const std::string object = server.instantiate(session, "Echo");
    EXPECT_FALSE(server.send(unregisterRequest(session)).isException());
    EXPECT_EQ(server.send(callRequest(session, object, "echo")).code(), 34u);
    EXPECT_EQ(server.send(unregisterRequest(session)).code(), 34u);
}

TEST(RequestHandler, InstantiateObject_ReturnsSixteenBytesAndNoMessage) {
    TestServer server;
    const Reply reply = server.send(instantiateRequest(server.registerApplication(), "Counter"));
    EXPECT_EQ(reply.data(posField::kObject).size(), 16u);
    EXPECT_EQ(reply.data(posField::kServerMessage), "");
}

TEST(RequestHandler, InstantiateObject_Twice_MakesTwoObjects) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    const std::string one = server.instantiate(session, "Counter");
    const std::string two = server.instantiate(session, "Counter");
    EXPECT_NE(one, two);
    server.send(callRequest(session, one, "add", littleEndian(5)));
    EXPECT_EQ(server.send(callRequest(session, one, "value")).data(posField::kResult), littleEndian(5));
    EXPECT_EQ(server.send(callRequest(session, two, "value")).data(posField::kResult), littleEndian(0));
}

TEST(RequestHandler, InstantiateObject_OfAnUnknownClass_IsClassNotFound) {
    TestServer server;
    EXPECT_EQ(server.send(instantiateRequest(server.registerApplication(), "Nothing")).code(), 24u);
}

TEST(RequestHandler, InstantiateObject_OfAnUnregisteredApplication_IsApplicationNotRegistered) {
    TestServer server;
    EXPECT_EQ(server.send(instantiateRequest(1, "Echo")).code(), 34u);
}

TEST(RequestHandler, InstantiateObject_WhenThereAreTooMany_IsRefusedAsInstantiation) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    for (size_t i = 0; i < ApplicationTable::kMostObjects; ++i) {
        server.state().applications.addObject(session, ObjectRecord());
    }
    EXPECT_EQ(server.send(instantiateRequest(session, "Echo")).code(), 26u);
}

TEST(RequestHandler, DeleteObject_Twice_IsObjectNotFound) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    const std::string object = server.instantiate(session, "Echo");
    EXPECT_FALSE(server.send(deleteRequest(session, object)).isException());
    EXPECT_EQ(server.send(deleteRequest(session, object)).code(), 25u);
}

TEST(RequestHandler, CallMethod_ReturnsTheResult) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    const std::string object = server.instantiate(session, "Echo");
    const Reply reply = server.send(callRequest(session, object, "echo", "hello"));
    EXPECT_EQ(reply.data(posField::kResult), "hello");
    EXPECT_EQ(reply.data(posField::kServerMessage), "");
}

TEST(RequestHandler, CallMethod_WithAnExecuter_IsTheSameCall) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    Request request(dovrel::posCommand::kCallMethod);
    request.number(posField::kSession, session).data(posField::kObject, server.instantiate(session, "Echo"));
    request.data(posField::kMethodName, std::string("echo\0", 5)).data(posField::kArgument, "hello");
    request.data(posField::kExecuter, padded("an executer"));
    EXPECT_EQ(server.send(request).data(posField::kResult), "hello");
}

TEST(RequestHandler, CallMethod_OfAnotherApplicationsObject_IsObjectNotFound) {
    TestServer server;
    const std::string object = server.instantiate(server.registerApplication("Owner"), "Echo");
    EXPECT_EQ(server.send(callRequest(server.registerApplication("Other"), object, "echo")).code(), 25u);
}

TEST(RequestHandler, CallMethod_ThatTheClassDoesNotHave_IsMethodNotFound) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    EXPECT_EQ(server.send(callRequest(session, server.instantiate(session, "Echo"), "Echo")).code(), 27u);
}

TEST(RequestHandler, CallMethod_ThatFails_IsAnExceptionWithItsCodeAndText) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    const std::string object = server.instantiate(session, "Counter");
    server.send(callRequest(session, object, "add", littleEndian(0xFFFFFFFF)));
    const Reply reply = server.send(callRequest(session, object, "add", littleEndian(1)));
    EXPECT_EQ(reply.messageKind(), 20u);
    EXPECT_EQ(reply.command(), 14u);
    EXPECT_EQ(reply.code(), 28u);
    EXPECT_EQ(reply.text(), "the sum does not fit in 32 bits");
}

TEST(RequestHandler, ExecuteCommand_SplitsTheDataAtTheCommandsLength) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    EXPECT_EQ(server.send(commandRequest(session, "ping", "pong")).data(posField::kResult), "pong");
}

TEST(RequestHandler, ExecuteCommand_WithALengthBeyondTheData_IsParameterFormat) {
    TestServer server;
    Request request(dovrel::posCommand::kExecuteCommand);
    request.number(posField::kSession, server.registerApplication());
    request.data(posField::kCommandExecuter, padded("")).data(posField::kCommandData, "ping");
    request.number(posField::kCommandLength, 5);
    EXPECT_EQ(server.send(request).code(), 30u);
}

TEST(RequestHandler, ExecuteCommand_ThatIsUnknown_IsCommandNotExecuted) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    EXPECT_EQ(server.send(commandRequest(session, "pin")).code(), 146u);
    EXPECT_EQ(server.send(commandRequest(session, "")).code(), 146u);
}

TEST(RequestHandler, ExecuteCommand_OfAnUnregisteredApplication_IsApplicationNotRegistered) {
    TestServer server;
    EXPECT_EQ(server.send(commandRequest(7, "ping")).code(), 34u);
}

TEST(RequestHandler, GetInformation_NeedsNoRegistration) {
    TestServer server;
    EXPECT_EQ(server.send(informationRequest(7, std::string("\x60\x01", 2))).data(posField::kInformation),
              littleEndian(7));
}

TEST(RequestHandler, QueryInterfaceVersion_ReturnsTheSetting) {
    TestServer server;
    EXPECT_EQ(server.send(versionRequest()).number(posField::kInterfaceVersion), 7u);
    server.state().settings.interfaceVersion = 8;
    EXPECT_EQ(server.send(versionRequest()).number(posField::kInterfaceVersion), 8u);
}

TEST(RequestHandler, Result_OfMegabytes_IsComplete) {
    TestServer server;
    const uint32_t session = server.registerApplication();
    const std::string argument(16u << 20, 'x');
    const std::string object = server.instantiate(session, "Echo");
    EXPECT_TRUE(server.send(callRequest(session, object, "echo", argument)).data(posField::kResult) ==
                argument);
}

}  // namespace
}  // namespace merrowd::test
