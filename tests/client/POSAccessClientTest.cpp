#include "client/POSAccessClient.h"

#include <cstdlib>
#include <cstring>
#include <functional>

#include "client/Attempt.h"
#include "client/exceptions/POSException.h"
#include "tests/client/SessionTest.h"

namespace dovrel {
namespace {

using test::Identifier;

std::string padded(const std::string& name) {
    return name + std::string(16 - name.size(), '\0');
}

class POSAccessClientTest : public test::SystemRootTest {
  protected:
    POSAccessClientTest() { client_.setForwarder(&forwarder_); }

    uint32_t registered(uint32_t identifier, const char* name = "Editor", uint32_t flags = 0,
                        std::vector<std::string> classNames = {}) {
        std::vector<Identifier> classes(classNames.begin(), classNames.end());
        std::vector<void*> list;
        for (Identifier& one : classes)
            list.push_back(one.bytes());
        uint32_t applicationId = 0;
        forwarder_.answer(10, test::registration(identifier, flags));
        EXPECT_TRUE(client_.registerApplication(name, list.data(), static_cast<uint32_t>(list.size()),
                                                nullptr, 0, applicationId));
        return applicationId;
    }

    bool instantiate(uint32_t applicationId, void* const* classId, void** objectId,
                     uint32_t executer = kNoExecuter) {
        return client_.instantiateObject(applicationId, classId, objectId, executer, message_);
    }
    bool call(void* const* objectId, const char* method, const void* parameters, uint32_t length) {
        return client_.callMethod(1, nullptr, objectId, method, static_cast<const uint8_t*>(parameters),
                                  length, &result_, &resultLength_, message_);
    }

    /// The message of the failure that the work throws; "" when it throws none of the family.
    static std::string failureOf(const std::function<bool()>& work) {
        const Attempt result = attempt(work);
        return result.failure && result.failure->getMessage() != nullptr ? result.failure->getMessage() : "";
    }

    std::string takeResult() {
        const std::string text(reinterpret_cast<const char*>(result_), resultLength_);
        delete[] result_;
        result_ = nullptr;
        return text;
    }

    test::ScriptedForwarder forwarder_;
    POSAccessClient client_;
    POSServerMessage message_;
    Identifier counterName_{"Counter"};
    void* counter_ = counterName_.bytes();
    void* null_ = nullptr;
    uint8_t* result_ = nullptr;
    uint32_t resultLength_ = 0;
};

// The registry.

TEST_F(POSAccessClientTest, New_HasNoApplication) {
    EXPECT_EQ(client_.applicationCount(), 0u);
    EXPECT_FALSE(client_.isRegistered(0));
    EXPECT_STREQ(client_.applicationName(0), "Unknown Application");
}

TEST_F(POSAccessClientTest, Register_RecordsTheNameUnderTheIdentifierOfTheAnswer) {
    EXPECT_EQ(registered(77, "Editor"), 77u);
    EXPECT_EQ(client_.applicationCount(), 1u);
    EXPECT_TRUE(client_.isRegistered(77));
    EXPECT_STREQ(client_.applicationName(77), "Editor");
    EXPECT_STREQ(client_.applicationName(78), "Unknown Application");
}

TEST_F(POSAccessClientTest, Register_SendsNameClassesAndOptions) {
    Identifier clock("Clock");
    void* list[] = {counter_, clock.bytes()};
    const uint16_t options[] = {1104, 1121};
    uint32_t applicationId = 0;
    ASSERT_TRUE(client_.registerApplication("Editor", list, 2, options, 4, applicationId));

    EXPECT_EQ(forwarder_.calls(), (std::vector<std::string>{"connect 10", "17", "10"}));
    const auto request = forwarder_.lastRequest(10);
    EXPECT_EQ(request->readString(100), std::string("Editor\0", 7));
    EXPECT_EQ(request->readString(114), std::string("\x50\x04\x61\x04", 4));
    EXPECT_NE(request->readString(130).find(padded("Counter")), std::string::npos);
    EXPECT_NE(request->readString(130).find(padded("Clock")), std::string::npos);
}

TEST_F(POSAccessClientTest, Register_OptionsThatTheFrameIgnores_AreSentAsGiven) {
    uint32_t applicationId = 0;
    ASSERT_TRUE(client_.registerApplication("Editor", nullptr, 0, "abc", 3, applicationId));
    EXPECT_EQ(forwarder_.lastRequest(10)->readString(114), "abc");
}

TEST_F(POSAccessClientTest, Register_IdentifierHandedOutTwice_NewerRecordReplacesTheOlder) {
    registered(5, "Editor", 1, {"Counter"});
    registered(5, "Viewer", 1, {"Clock"});
    EXPECT_EQ(client_.applicationCount(), 1u);
    EXPECT_STREQ(client_.applicationName(5), "Viewer");
    void* object = nullptr;
    EXPECT_EQ(failureOf([&] { return instantiate(5, &counter_, &object); }), kClassMissing);
}

TEST_F(POSAccessClientTest, Register_Failed_RecordsNothing) {
    uint32_t applicationId = 99;
    forwarder_.answer(10, test::error(32, "refused"));
    EXPECT_EQ(failureOf([&] {
                  return client_.registerApplication("Editor", nullptr, 0, nullptr, 0, applicationId);
              }),
              "refused");
    EXPECT_EQ(client_.applicationCount(), 0u);
    EXPECT_EQ(applicationId, 99u);
}

TEST_F(POSAccessClientTest, Register_AnswerWithCodeThatStandsForNoException_IsFalseAndRecordsNothing) {
    for (uint32_t code : {36u, 29u, 151u}) {
        uint32_t applicationId = 99;
        forwarder_.answer(10, test::error(code, "whatever"));
        EXPECT_FALSE(client_.registerApplication("Editor", nullptr, 0, nullptr, 0, applicationId)) << code;
        EXPECT_EQ(client_.applicationCount(), 0u);
        EXPECT_EQ(applicationId, 99u);
    }
}

TEST_F(POSAccessClientTest, Register_MissingPointers_FailBeforeAnythingIsSent) {
    uint32_t applicationId = 0;
    EXPECT_EQ(failureOf([&] {
                  return client_.registerApplication("Editor", nullptr, 1, nullptr, 0, applicationId);
              }),
              kNullPointer);
    EXPECT_EQ(failureOf([&] {
                  return client_.registerApplication("Editor", &null_, 1, nullptr, 0, applicationId);
              }),
              kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientTest, Unregister_SendsTheIdentifierAndRemovesTheRecord) {
    registered(3);
    EXPECT_TRUE(client_.unregisterApplication(3));
    EXPECT_EQ(forwarder_.lastRequest(11)->readUInt32(103), 3u);
    EXPECT_FALSE(client_.isRegistered(3));
}

TEST_F(POSAccessClientTest, Unregister_AnsweredWithAnError_KeepsTheRecord) {
    registered(3);
    forwarder_.answerNext(11, {test::error(34, "unknown"), test::error(36, "whatever")});
    EXPECT_EQ(failureOf([&] { return client_.unregisterApplication(3); }), "unknown");
    EXPECT_FALSE(client_.unregisterApplication(3));
    EXPECT_TRUE(client_.isRegistered(3));
}

// Instantiation.

TEST_F(POSAccessClientTest, Instantiate_HandsOutAMallocBlockOfTheObjectIdentifier) {
    registered(1);
    void* object = nullptr;
    forwarder_.answer(12, test::object("an object", 0x100, "Mind the step"));
    ASSERT_TRUE(instantiate(1, &counter_, &object));
    EXPECT_EQ(std::memcmp(object, padded("an object").data(), 16), 0);
    std::free(object);
    EXPECT_TRUE(message_.isPresent());
    EXPECT_EQ(message_.text, "Mind the step");

    const auto request = forwarder_.lastRequest(12);
    EXPECT_EQ(request->readUInt32(103), 1u);
    EXPECT_EQ(request->readString(106), padded("Counter"));
    EXPECT_EQ(request->readUInt32(117), 0xFFFFFFFFu);
}

TEST_F(POSAccessClientTest, Instantiate_MissingPointers_AreTheNullPointerFailure) {
    registered(1);
    forwarder_.forgetCalls();
    void* object = nullptr;
    EXPECT_EQ(failureOf([&] { return instantiate(1, nullptr, &object); }), kNullPointer);
    EXPECT_EQ(failureOf([&] { return instantiate(1, &null_, &object); }), kNullPointer);
    EXPECT_EQ(failureOf([&] { return instantiate(1, &counter_, nullptr); }), kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientTest, Instantiate_ClassNotRegistered_FailsWhenTheRecordAsksForTheCheck) {
    registered(1, "Editor", 1, {"Clock", "Notes"});
    forwarder_.forgetCalls();
    void* object = nullptr;
    EXPECT_EQ(failureOf([&] { return instantiate(1, &counter_, &object); }), kClassMissing);
    EXPECT_TRUE(forwarder_.calls().empty());
    EXPECT_EQ(object, nullptr);
}

TEST_F(POSAccessClientTest, Instantiate_ClassRegistered_PassesTheCheck) {
    registered(1, "Editor", 1, {"Clock", "Counter"});
    void* object = nullptr;
    ASSERT_TRUE(instantiate(1, &counter_, &object));
    std::free(object);
}

TEST_F(POSAccessClientTest, Instantiate_RecordThatAsksForNoCheck_TakesEveryClass) {
    registered(1, "Editor", 0xFFFFFFFE, {"Clock"});
    void* object = nullptr;
    ASSERT_TRUE(instantiate(1, &counter_, &object));
    std::free(object);
}

TEST_F(POSAccessClientTest, Instantiate_OnAnExecuter_IsNotChecked) {
    registered(1, "Editor", 1, {"Clock"});
    void* object = nullptr;
    ASSERT_TRUE(instantiate(1, &counter_, &object, 4));
    std::free(object);
    EXPECT_EQ(forwarder_.lastRequest(12)->readUInt32(117), 4u);
}

TEST_F(POSAccessClientTest, Instantiate_ObjectIdentifierThatIsNotSixteenBytes_Fails) {
    registered(1);
    for (size_t size : {size_t{0}, size_t{15}, size_t{17}}) {
        forwarder_.answer(12, [size](POSTransferObj& request) {
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

TEST_F(POSAccessClientTest, Instantiate_Code36_IsFalseAndHandsOutNothing) {
    registered(1);
    forwarder_.answer(12, test::error(36, "whatever"));
    void* object = &object;
    EXPECT_FALSE(instantiate(1, &counter_, &object));
    EXPECT_EQ(object, &object);
}

// Method calls.

TEST_F(POSAccessClientTest, CallMethod_SendsObjectNameAndParametersAndHandsOutTheResult) {
    forwarder_.answer(14, test::result("sum", 7, "Note"));
    ASSERT_TRUE(call(&counter_, "add", "\x01\x02", 2));
    EXPECT_EQ(takeResult(), "sum");
    EXPECT_EQ(message_.text, "Note");

    const auto request = forwarder_.lastRequest(14);
    EXPECT_EQ(request->readUInt32(103), 1u);
    EXPECT_EQ(request->readString(105), padded("Counter"));
    EXPECT_EQ(request->readString(107), std::string("add\0", 4));
    EXPECT_EQ(request->readString(110), std::string("\x01\x02", 2));
    EXPECT_EQ(request->readString(104), "");
}

TEST_F(POSAccessClientTest, CallMethod_OnAnExecuter_NamesIt) {
    Identifier name("executer 7");
    void* executer = name.bytes();
    ASSERT_TRUE(
        client_.callMethod(1, &executer, &counter_, "add", nullptr, 0, &result_, &resultLength_, message_));
    takeResult();
    EXPECT_EQ(forwarder_.lastRequest(14)->readString(104), padded("executer 7"));
}

TEST_F(POSAccessClientTest, CallMethod_HandleOfNoExecuter_NamesNone) {
    ASSERT_TRUE(
        client_.callMethod(1, &null_, &counter_, "add", nullptr, 0, &result_, &resultLength_, message_));
    takeResult();
    EXPECT_EQ(forwarder_.lastRequest(14)->readString(104), "");
}

TEST_F(POSAccessClientTest, CallMethod_EmptyResult_IsNullAndZero) {
    forwarder_.answer(14, test::result(""));
    result_ = reinterpret_cast<uint8_t*>(&result_);
    resultLength_ = 5;
    ASSERT_TRUE(call(&counter_, "add", nullptr, 0));
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(resultLength_, 0u);
}

TEST_F(POSAccessClientTest, CallMethod_MissingPointers_AreTheNullPointerFailure) {
    EXPECT_EQ(failureOf([&] { return call(nullptr, "add", nullptr, 0); }), kNullPointer);
    EXPECT_EQ(failureOf([&] { return call(&null_, "add", nullptr, 0); }), kNullPointer);
    EXPECT_EQ(failureOf([&] { return call(&counter_, nullptr, nullptr, 0); }), kNullPointer);
    EXPECT_EQ(failureOf([&] { return call(&counter_, "add", nullptr, 1); }), kNullPointer);
    EXPECT_EQ(failureOf([&] {
                  return client_.callMethod(1, nullptr, &counter_, "add", nullptr, 0, nullptr, &resultLength_,
                                            message_);
              }),
              kNullPointer);
    EXPECT_EQ(failureOf([&] {
                  return client_.callMethod(1, nullptr, &counter_, "add", nullptr, 0, &result_, nullptr,
                                            message_);
              }),
              kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

// Deleting.

TEST_F(POSAccessClientTest, DeleteObject_SendsTheIdentifier) {
    ASSERT_TRUE(client_.deleteObject(6, &counter_));
    EXPECT_EQ(forwarder_.lastRequest(13)->readUInt32(103), 6u);
    EXPECT_EQ(forwarder_.lastRequest(13)->readString(105), padded("Counter"));
}

TEST_F(POSAccessClientTest, DeleteObject_MissingPointers_AreTheNullPointerFailure) {
    EXPECT_EQ(failureOf([&] { return client_.deleteObject(1, nullptr); }), kNullPointer);
    EXPECT_EQ(failureOf([&] { return client_.deleteObject(1, &null_); }), kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

// Commands.

TEST_F(POSAccessClientTest, ExecuteCommand_SendsCommandThenArgumentAndTheCommandsLength) {
    char command[] = "list";
    char argument[] = "all";
    void* commandBytes = command;
    void* argumentBytes = argument;
    ASSERT_TRUE(client_.executeCommand(8, &commandBytes, 4, &argumentBytes, 3, &result_, &resultLength_));
    EXPECT_EQ(takeResult(), "result");

    const auto request = forwarder_.lastRequest(15);
    EXPECT_EQ(request->readUInt32(103), 8u);
    EXPECT_EQ(request->readString(104), std::string(16, '\0'));
    EXPECT_EQ(request->readString(110), "listall");
    EXPECT_EQ(request->readUInt32(112), 4u);
}

TEST_F(POSAccessClientTest, ExecuteCommand_HandlesOfNothing_AreLegalWithLengthZero) {
    ASSERT_TRUE(client_.executeCommand(1, &null_, 0, &null_, 0, &result_, &resultLength_));
    takeResult();
    EXPECT_EQ(forwarder_.lastRequest(15)->readString(110), "");
}

TEST_F(POSAccessClientTest, ExecuteCommand_MissingPointers_AreTheNullPointerFailure) {
    const auto execute = [this](void* const* command, uint32_t commandLength, void* const* argument,
                                uint32_t argumentLength, uint8_t** result, uint32_t* length) {
        return failureOf([&] {
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

// Information.

TEST_F(POSAccessClientTest, GetInformation_SendsTheRequest) {
    int32_t length = 0;
    ASSERT_TRUE(client_.getInformation(12, "about", 5, &result_, &length));
    resultLength_ = static_cast<uint32_t>(length);
    EXPECT_EQ(takeResult(), "information");
    EXPECT_EQ(forwarder_.lastRequest(16)->readUInt32(103), 12u);
    EXPECT_EQ(forwarder_.lastRequest(16)->readString(108), "about");
}

TEST_F(POSAccessClientTest, GetInformation_InterfaceVersion_IsAnsweredWithoutTheServer) {
    int32_t length = 0;
    ASSERT_TRUE(client_.getInformation(0, "\x60\x01", 2, &result_, &length));
    EXPECT_EQ(length, 4);
    EXPECT_EQ(std::memcmp(result_, "\x07\x00\x00\x00", 4), 0);
    delete[] result_;
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientTest, GetInformation_MissingPointers_AreTheNullPointerFailure) {
    int32_t length = 0;
    EXPECT_EQ(failureOf([&] { return client_.getInformation(1, nullptr, 0, &result_, &length); }),
              kNullPointer);
    EXPECT_EQ(failureOf([&] { return client_.getInformation(1, "x", 1, nullptr, &length); }), kNullPointer);
    EXPECT_EQ(failureOf([&] { return client_.getInformation(1, "x", 1, &result_, nullptr); }), kNullPointer);
    EXPECT_TRUE(forwarder_.calls().empty());
}

// The end.

TEST_F(POSAccessClientTest, DisconnectIfUnused_TellsTheForwarderOnlyWithoutApplications) {
    client_.disconnectIfUnused();
    EXPECT_EQ(forwarder_.countOf("check"), 1u);
    registered(1);
    client_.disconnectIfUnused();
    EXPECT_EQ(forwarder_.countOf("check"), 1u);
}

TEST_F(POSAccessClientTest, DisconnectIfUnused_ForwarderThatThrows_IsPassedOver) {
    forwarder_.onCheck = [] { throw new CPPException("stale"); };
    client_.disconnectIfUnused();
    EXPECT_EQ(forwarder_.countOf("check"), 1u);
}

TEST_F(POSAccessClientTest, ShutDown_WithoutApplications_SendsNothing) {
    client_.shutDown();
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessClientTest, ShutDown_ConnectsAndUnregistersInAscendingOrderOfSignedIdentifiers) {
    for (uint32_t identifier : {7u, 0x80000000u, 0xFFFFFFFFu, 0u})
        registered(identifier);
    forwarder_.forgetCalls();
    client_.shutDown();

    EXPECT_EQ(forwarder_.calls(), (std::vector<std::string>{"connect 10", "11", "11", "11", "11"}));
    std::vector<uint32_t> order;
    for (const auto& request : forwarder_.requests(11))
        order.push_back(request->readUInt32(103));
    EXPECT_EQ(order, (std::vector<uint32_t>{0x80000000u, 0xFFFFFFFFu, 0u, 7u}));
    EXPECT_EQ(client_.applicationCount(), 0u);
}

TEST_F(POSAccessClientTest, ShutDown_ConnectThatThrows_StopsBeforeTheFirst) {
    registered(1);
    forwarder_.forgetCalls();
    forwarder_.onConnect = [] { throw new POSException("missing"); };
    client_.shutDown();
    EXPECT_EQ(forwarder_.calls(), std::vector<std::string>{"connect 10"});
    EXPECT_TRUE(client_.isRegistered(1));
}

TEST_F(POSAccessClientTest, ShutDown_FirstFailureStopsTheLoopAndTheRestStays) {
    for (uint32_t identifier : {1u, 2u, 3u})
        registered(identifier);
    forwarder_.forgetCalls();
    forwarder_.answerNext(
        11, {test::nothing(), [](POSTransferObj&) -> std::unique_ptr<POSTransferObj> { throw 5; }});
    client_.shutDown();
    EXPECT_EQ(forwarder_.countOf("11"), 2u);
    EXPECT_FALSE(client_.isRegistered(1));
    EXPECT_TRUE(client_.isRegistered(2));
    EXPECT_TRUE(client_.isRegistered(3));
}

TEST_F(POSAccessClientTest, ShutDown_AnswerWithCode36_ThrowsNothingSoTheLoopGoesOn) {
    for (uint32_t identifier : {1u, 2u})
        registered(identifier);
    forwarder_.answerNext(11, {test::error(36, "whatever")});
    client_.shutDown();
    EXPECT_TRUE(client_.isRegistered(1));
    EXPECT_FALSE(client_.isRegistered(2));
}

}  // namespace
}  // namespace dovrel
