// The client's operations on objects, commands and information.
#include <cstdlib>
#include <cstring>
#include <functional>

#include "tests/client/AccessClientFixture.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::Identifier;
using test::padded;

class POSAccessClientOperationsTest : public test::AccessClientFixture {};

TEST_F(POSAccessClientOperationsTest, Instantiate_HandsOutAMallocBlockOfTheObjectIdentifier) {
    registered(1);
    void* object = nullptr;
    forwarder_.answer(posCommand::kInstantiateObject, test::object("an object", 0x100, "Mind the step"));
    ASSERT_TRUE(instantiate(1, &counter_, &object));
    EXPECT_EQ(std::memcmp(object, padded("an object").data(), 16), 0);
    std::free(object);
    EXPECT_TRUE(message_.isPresent());
    EXPECT_EQ(message_.text, "Mind the step");

    const auto request = forwarder_.lastRequest(posCommand::kInstantiateObject);
    EXPECT_EQ(request->readUInt32(103), 1u);
    EXPECT_EQ(request->readString(106), padded("Counter"));
    EXPECT_EQ(request->readUInt32(117), 0xFFFFFFFFu);
}

TEST_F(POSAccessClientOperationsTest, Instantiate_MissingPointers_AreTheNullPointerFailure) {
    registered(1);
    forwarder_.forgetCalls();
    void* object = nullptr;
    EXPECT_EQ(test::failureText([&] { return instantiate(1, nullptr, &object); }), kNullPointer);
    EXPECT_EQ(test::failureText([&] { return instantiate(1, &null_, &object); }), kNullPointer);
    EXPECT_EQ(test::failureText([&] { return instantiate(1, &counter_, nullptr); }), kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientOperationsTest, Instantiate_ClassNotRegistered_FailsWhenTheRecordAsksForTheCheck) {
    registered(1, "Editor", 1, {"Clock", "Notes"});
    forwarder_.forgetCalls();
    void* object = nullptr;
    EXPECT_EQ(test::failureText([&] { return instantiate(1, &counter_, &object); }), kClassMissing);
    EXPECT_TRUE(forwarder_.calls().empty());
    EXPECT_EQ(object, nullptr);
}

TEST_F(POSAccessClientOperationsTest, Instantiate_ClassRegistered_PassesTheCheck) {
    registered(1, "Editor", 1, {"Clock", "Counter"});
    void* object = nullptr;
    ASSERT_TRUE(instantiate(1, &counter_, &object));
    std::free(object);
}

TEST_F(POSAccessClientOperationsTest, Instantiate_RecordThatAsksForNoCheck_TakesEveryClass) {
    registered(1, "Editor", 0xFFFFFFFE, {"Clock"});
    void* object = nullptr;
    ASSERT_TRUE(instantiate(1, &counter_, &object));
    std::free(object);
}

TEST_F(POSAccessClientOperationsTest, Instantiate_OnAnExecuter_IsNotChecked) {
    registered(1, "Editor", 1, {"Clock"});
    void* object = nullptr;
    ASSERT_TRUE(instantiate(1, &counter_, &object, 4));
    std::free(object);
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
        void* object = nullptr;
        EXPECT_TRUE(attempt([&] { return instantiate(1, &counter_, &object); }).threw) << size;
        EXPECT_EQ(object, nullptr);
    }
}

TEST_F(POSAccessClientOperationsTest, Instantiate_Code36_IsFalseAndHandsOutNothing) {
    registered(1);
    forwarder_.answer(posCommand::kInstantiateObject, test::error(36, "whatever"));
    void* object = &object;
    EXPECT_FALSE(instantiate(1, &counter_, &object));
    EXPECT_EQ(object, &object);
}

TEST_F(POSAccessClientOperationsTest, CallMethod_SendsObjectNameAndParametersAndHandsOutTheResult) {
    forwarder_.answer(posCommand::kCallMethod, test::result("sum", 7, "Note"));
    ASSERT_TRUE(call(&counter_, "add", "\x01\x02", 2));
    EXPECT_EQ(takeResult(), "sum");
    EXPECT_EQ(message_.text, "Note");

    const auto request = forwarder_.lastRequest(posCommand::kCallMethod);
    EXPECT_EQ(request->readUInt32(103), 1u);
    EXPECT_EQ(request->readString(105), padded("Counter"));
    EXPECT_EQ(request->readString(107), std::string("add\0", 4));
    EXPECT_EQ(request->readString(110), std::string("\x01\x02", 2));
    EXPECT_EQ(request->readString(104), "");
}

TEST_F(POSAccessClientOperationsTest, CallMethod_OnAnExecuter_NamesIt) {
    Identifier name("executer 7");
    void* executer = name.bytes();
    ASSERT_TRUE(
        client_.callMethod(1, &executer, &counter_, "add", nullptr, 0, &result_, &resultLength_, message_));
    takeResult();
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kCallMethod)->readString(104), padded("executer 7"));
}

TEST_F(POSAccessClientOperationsTest, CallMethod_HandleOfNoExecuter_NamesNone) {
    ASSERT_TRUE(
        client_.callMethod(1, &null_, &counter_, "add", nullptr, 0, &result_, &resultLength_, message_));
    takeResult();
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kCallMethod)->readString(104), "");
}

TEST_F(POSAccessClientOperationsTest, CallMethod_EmptyResult_IsNullAndZero) {
    forwarder_.answer(posCommand::kCallMethod, test::result(""));
    result_ = reinterpret_cast<uint8_t*>(&result_);
    resultLength_ = 5;
    ASSERT_TRUE(call(&counter_, "add", nullptr, 0));
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(resultLength_, 0u);
}

TEST_F(POSAccessClientOperationsTest, CallMethod_MissingPointers_AreTheNullPointerFailure) {
    EXPECT_EQ(test::failureText([&] { return call(nullptr, "add", nullptr, 0); }), kNullPointer);
    EXPECT_EQ(test::failureText([&] { return call(&null_, "add", nullptr, 0); }), kNullPointer);
    EXPECT_EQ(test::failureText([&] { return call(&counter_, nullptr, nullptr, 0); }), kNullPointer);
    EXPECT_EQ(test::failureText([&] { return call(&counter_, "add", nullptr, 1); }), kNullPointer);
    EXPECT_EQ(test::failureText([&] {
                  return client_.callMethod(1, nullptr, &counter_, "add", nullptr, 0, nullptr, &resultLength_,
                                            message_);
              }),
              kNullPointer);
    EXPECT_EQ(test::failureText([&] {
                  return client_.callMethod(1, nullptr, &counter_, "add", nullptr, 0, &result_, nullptr,
                                            message_);
              }),
              kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientOperationsTest, DeleteObject_SendsTheIdentifier) {
    ASSERT_TRUE(client_.deleteObject(6, &counter_));
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kDeleteObject)->readUInt32(103), 6u);
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kDeleteObject)->readString(105), padded("Counter"));
}

TEST_F(POSAccessClientOperationsTest, DeleteObject_MissingPointers_AreTheNullPointerFailure) {
    EXPECT_EQ(test::failureText([&] { return client_.deleteObject(1, nullptr); }), kNullPointer);
    EXPECT_EQ(test::failureText([&] { return client_.deleteObject(1, &null_); }), kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientOperationsTest, ExecuteCommand_SendsCommandThenArgumentAndTheCommandsLength) {
    char command[] = "list";
    char argument[] = "all";
    void* commandBytes = command;
    void* argumentBytes = argument;
    ASSERT_TRUE(client_.executeCommand(8, &commandBytes, 4, &argumentBytes, 3, &result_, &resultLength_));
    EXPECT_EQ(takeResult(), "result");

    const auto request = forwarder_.lastRequest(posCommand::kExecuteCommand);
    EXPECT_EQ(request->readUInt32(103), 8u);
    EXPECT_EQ(request->readString(104), std::string(16, '\0'));
    EXPECT_EQ(request->readString(110), "listall");
    EXPECT_EQ(request->readUInt32(112), 4u);
}

TEST_F(POSAccessClientOperationsTest, ExecuteCommand_HandlesOfNothing_AreLegalWithLengthZero) {
    ASSERT_TRUE(client_.executeCommand(1, &null_, 0, &null_, 0, &result_, &resultLength_));
    takeResult();
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kExecuteCommand)->readString(110), "");
}

TEST_F(POSAccessClientOperationsTest, ExecuteCommand_MissingPointers_AreTheNullPointerFailure) {
    const auto execute = [this](void* const* command, uint32_t commandLength, void* const* argument,
                                uint32_t argumentLength, uint8_t** result, uint32_t* length) {
        return test::failureText([&] {
            return client_.executeCommand(1, command, commandLength, argument, argumentLength, result,
                                          length);
        });
    };
    EXPECT_EQ(execute(nullptr, 0, &counter_, 1, &result_, &resultLength_), kNullPointer);
    EXPECT_EQ(execute(&null_, 1, &counter_, 1, &result_, &resultLength_), kNullPointer);
    EXPECT_EQ(execute(&counter_, 1, nullptr, 0, &result_, &resultLength_), kNullPointer);
    EXPECT_EQ(execute(&counter_, 1, &null_, 1, &result_, &resultLength_), kNullPointer);
    EXPECT_EQ(execute(&counter_, 1, &counter_, 1, nullptr, &resultLength_), kNullPointer);
    EXPECT_EQ(execute(&counter_, 1, &counter_, 1, &result_, nullptr), kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientOperationsTest, GetInformation_SendsTheRequest) {
    int32_t length = 0;
    ASSERT_TRUE(client_.getInformation(12, "about", 5, &result_, &length));
    resultLength_ = static_cast<uint32_t>(length);
    EXPECT_EQ(takeResult(), "information");
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kGetInformation)->readUInt32(103), 12u);
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kGetInformation)->readString(108), "about");
}

TEST_F(POSAccessClientOperationsTest, GetInformation_InterfaceVersion_IsAnsweredWithoutTheServer) {
    int32_t length = 0;
    ASSERT_TRUE(client_.getInformation(0, "\x60\x01", 2, &result_, &length));
    EXPECT_EQ(length, 4);
    EXPECT_EQ(std::memcmp(result_, "\x07\x00\x00\x00", 4), 0);
    delete[] result_;
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientOperationsTest, GetInformation_MissingPointers_AreTheNullPointerFailure) {
    int32_t length = 0;
    EXPECT_EQ(test::failureText([&] { return client_.getInformation(1, nullptr, 0, &result_, &length); }),
              kNullPointer);
    EXPECT_EQ(test::failureText([&] { return client_.getInformation(1, "x", 1, nullptr, &length); }),
              kNullPointer);
    EXPECT_EQ(test::failureText([&] { return client_.getInformation(1, "x", 1, &result_, nullptr); }),
              kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

}  // namespace
}  // namespace dovrel
