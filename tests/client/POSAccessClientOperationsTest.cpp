// The client's operations on objects, commands and information.
#include <optional>

#include "tests/client/AccessClientFixture.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayOf;
using test::blockText;
using test::failureText;
using test::padded;
using test::textOf;

class POSAccessClientOperationsTest : public test::AccessClientFixture {};

TEST_F(POSAccessClientOperationsTest, Instantiate_ReturnsTheObjectAndTheMessage) {
    registered(1);
    forwarder_.answer(posCommand::kInstantiateObject, test::object("an object", 0x100, "Mind the step"));
    const auto created = instantiate(1);
    EXPECT_EQ(created.outcome, POSOutcome::kDone);
    EXPECT_EQ(textOf(created.value.object), padded("an object"));
    EXPECT_TRUE(created.value.message.isPresent());
    EXPECT_EQ(created.value.message.text, "Mind the step");

    const auto request = forwarder_.lastRequest(posCommand::kInstantiateObject);
    EXPECT_EQ(request->readUInt32(103), 1u);
    EXPECT_EQ(request->readString(106), padded("Counter"));
    EXPECT_EQ(request->readUInt32(117), 0xFFFFFFFFu);
}

TEST_F(POSAccessClientOperationsTest, Instantiate_ClassNotRegistered_FailsWhenTheRecordAsksForTheCheck) {
    registered(1, "Editor", 1, {"Clock", "Notes"});
    forwarder_.forgetCalls();
    EXPECT_EQ(failureText([&] { instantiate(1); }), kClassMissing);
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientOperationsTest, Instantiate_ClassRegistered_PassesTheCheck) {
    registered(1, "Editor", 1, {"Clock", "Counter"});
    EXPECT_EQ(instantiate(1).outcome, POSOutcome::kDone);
}

TEST_F(POSAccessClientOperationsTest, Instantiate_RecordThatAsksForNoCheck_TakesEveryClass) {
    registered(1, "Editor", 0xFFFFFFFE, {"Clock"});
    EXPECT_EQ(instantiate(1).outcome, POSOutcome::kDone);
}

TEST_F(POSAccessClientOperationsTest, Instantiate_OnAnExecuter_IsNotChecked) {
    registered(1, "Editor", 1, {"Clock"});
    EXPECT_EQ(instantiate(1, 4).outcome, POSOutcome::kDone);
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kInstantiateObject)->readUInt32(117), 4u);
}

TEST_F(POSAccessClientOperationsTest, Instantiate_ObjectIdentifierThatIsNotSixteenBytes_Fails) {
    registered(1);
    for (size_t size : {size_t{0}, size_t{15}, size_t{17}}) {
        forwarder_.answer(posCommand::kInstantiateObject, [size](POSTransferObj& request) {
            auto answer = std::make_unique<POSTransferObj>(1, 11, request.getCommand());
            answer->writeString(105, std::string(size, 'x'));
            answer->writeString(120, "");
            return answer;
        });
        EXPECT_NE(test::failureOf([&] { instantiate(1); }), nullptr) << size;
    }
}

TEST_F(POSAccessClientOperationsTest, Instantiate_Code36_IsAnUnlistedErrorWithoutAnObject) {
    registered(1);
    forwarder_.answer(posCommand::kInstantiateObject, test::error(36, "whatever"));
    const auto created = instantiate(1);
    EXPECT_EQ(created.outcome, POSOutcome::kUnlistedError);
    EXPECT_EQ(created.value.object.getSize(), 0u);
}

TEST_F(POSAccessClientOperationsTest, CallMethod_SendsObjectNameAndParametersAndReturnsTheResult) {
    forwarder_.answer(posCommand::kCallMethod, test::result("sum", 7, "Note"));
    const uint8_t parameters[] = {1, 2};
    const auto reply = client_.callMethod(1, {object_, std::nullopt, "add", {parameters, 2}});
    EXPECT_EQ(reply.outcome, POSOutcome::kDone);
    EXPECT_EQ(blockText(reply.value.result), "sum");
    EXPECT_EQ(reply.value.message.text, "Note");

    const auto request = forwarder_.lastRequest(posCommand::kCallMethod);
    EXPECT_EQ(request->readUInt32(103), 1u);
    EXPECT_EQ(request->readString(105), padded("an object"));
    EXPECT_EQ(request->readString(107), std::string("add\0", 4));
    EXPECT_EQ(request->readString(110), std::string("\x01\x02", 2));
    EXPECT_EQ(request->readString(104), "");
}

TEST_F(POSAccessClientOperationsTest, CallMethod_OnAnExecuter_NamesIt) {
    const ProtectedExecuterID executer{arrayOf(padded("executer 7"))};
    EXPECT_EQ(client_.callMethod(1, {object_, executer, "add", {}}).outcome, POSOutcome::kDone);
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kCallMethod)->readString(104), padded("executer 7"));
}

TEST_F(POSAccessClientOperationsTest, CallMethod_EmptyResult_IsNullAndZero) {
    forwarder_.answer(posCommand::kCallMethod, test::result(""));
    const auto reply = client_.callMethod(1, {object_, std::nullopt, "add", {}});
    EXPECT_EQ(reply.outcome, POSOutcome::kDone);
    EXPECT_EQ(reply.value.result.data, nullptr);
    EXPECT_EQ(reply.value.result.length, 0u);
}

TEST_F(POSAccessClientOperationsTest, DeleteObject_SendsTheIdentifier) {
    EXPECT_EQ(client_.deleteObject(6, object_), POSOutcome::kDone);
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kDeleteObject)->readUInt32(103), 6u);
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kDeleteObject)->readString(105), padded("an object"));
}

TEST_F(POSAccessClientOperationsTest, ExecuteCommand_SendsCommandThenArgumentAndTheCommandsLength) {
    const uint8_t command[] = {'l', 'i', 's', 't'};
    const uint8_t argument[] = {'a', 'l', 'l'};
    const auto reply = client_.executeCommand(8, {{command, 4}, {argument, 3}});
    EXPECT_EQ(reply.outcome, POSOutcome::kDone);
    EXPECT_EQ(blockText(reply.value), "result");

    const auto request = forwarder_.lastRequest(posCommand::kExecuteCommand);
    EXPECT_EQ(request->readUInt32(103), 8u);
    EXPECT_EQ(request->readString(104), std::string(16, '\0'));
    EXPECT_EQ(request->readString(110), "listall");
    EXPECT_EQ(request->readUInt32(112), 4u);
}

TEST_F(POSAccessClientOperationsTest, GetInformation_SendsTheRequest) {
    const auto reply = client_.getInformation(12, GetInfoCommand("about", 5));
    EXPECT_EQ(reply.outcome, POSOutcome::kDone);
    EXPECT_EQ(blockText(reply.value), "information");
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kGetInformation)->readUInt32(103), 12u);
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kGetInformation)->readString(108), "about");
}

TEST_F(POSAccessClientOperationsTest, GetInformation_InterfaceVersion_IsAnsweredWithoutTheServer) {
    const auto reply = client_.getInformation(0, GetInfoCommand("\x60\x01", 2));
    EXPECT_EQ(reply.outcome, POSOutcome::kDone);
    EXPECT_EQ(blockText(reply.value), std::string("\x07\x00\x00\x00", 4));
    EXPECT_TRUE(forwarder_.calls().empty());
}

}  // namespace
}  // namespace dovrel
