#include "client/POSAccessClient.h"

#include "client/exceptions/POSException.h"
#include "tests/client/AccessClientFixture.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::makeArray;
using test::padded;

class POSAccessClientTest : public test::AccessClientFixture {};

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
    const CPPByteArray options = makeArray("\x50\x04\x61\x04");
    const auto result = client_.registerApplication("Editor", classList({"Counter", "Clock"}), options);
    ASSERT_EQ(result.outcome, POSOutcome::kDone);

    EXPECT_EQ(forwarder_.calls(), (std::vector<std::string>{"connect 10", "query interface version",
                                                            "identify", "register application"}));
    const auto request = forwarder_.lastRequest(posCommand::kRegisterApplication);
    EXPECT_EQ(request->readString(100), std::string("Editor\0", 7));
    EXPECT_EQ(request->readString(114), std::string("\x50\x04\x61\x04", 4));
    EXPECT_NE(request->readString(130).find(padded("Counter")), std::string::npos);
    EXPECT_NE(request->readString(130).find(padded("Clock")), std::string::npos);
}

TEST_F(POSAccessClientTest, Register_OptionsThatTheFrameIgnores_AreSentAsGiven) {
    ASSERT_EQ(client_.registerApplication("Editor", {}, makeArray("abc")).outcome, POSOutcome::kDone);
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kRegisterApplication)->readString(114), "abc");
}

TEST_F(POSAccessClientTest, Register_IdentifierReturnedTwice_NewerRecordReplacesTheOlder) {
    registered(5, "Editor", 1, {"Counter"});
    registered(5, "Viewer", 1, {"Clock"});
    EXPECT_EQ(client_.applicationCount(), 1u);
    EXPECT_STREQ(client_.applicationName(5), "Viewer");
    EXPECT_EQ(test::failureText([&] { instantiate(5); }), kClassMissing);
}

TEST_F(POSAccessClientTest, Register_Failed_RecordsNothing) {
    forwarder_.answer(posCommand::kRegisterApplication, test::error(32, "refused"));
    EXPECT_EQ(test::failureText([&] { client_.registerApplication("Editor", {}, CPPByteArray()); }),
              "refused");
    EXPECT_EQ(client_.applicationCount(), 0u);
}

TEST_F(POSAccessClientTest,
       Register_AnswerWithCodeThatStandsForNoException_IsAnUnlistedErrorAndRecordsNothing) {
    for (uint32_t code : {36u, 29u, 151u}) {
        forwarder_.answer(posCommand::kRegisterApplication, test::error(code, "whatever"));
        EXPECT_EQ(client_.registerApplication("Editor", {}, CPPByteArray()).outcome,
                  POSOutcome::kUnlistedError)
            << code;
        EXPECT_EQ(client_.applicationCount(), 0u);
    }
}

TEST_F(POSAccessClientTest, Unregister_SendsTheIdentifierAndRemovesTheRecord) {
    registered(3);
    EXPECT_EQ(client_.unregisterApplication(3), POSOutcome::kDone);
    EXPECT_EQ(forwarder_.lastRequest(posCommand::kUnregisterApplication)->readUInt32(103), 3u);
    EXPECT_FALSE(client_.isRegistered(3));
}

TEST_F(POSAccessClientTest, Unregister_AnsweredWithAnError_KeepsTheRecord) {
    registered(3);
    forwarder_.answerNext(posCommand::kUnregisterApplication,
                          {test::error(34, "unknown"), test::error(36, "whatever")});
    EXPECT_EQ(test::failureText([&] { client_.unregisterApplication(3); }), "unknown");
    EXPECT_EQ(client_.unregisterApplication(3), POSOutcome::kUnlistedError);
    EXPECT_TRUE(client_.isRegistered(3));
}

TEST_F(POSAccessClientTest, DisconnectIfUnused_TellsTheForwarderOnlyWithoutApplications) {
    client_.disconnectIfUnused();
    EXPECT_EQ(forwarder_.countOccurrences("check"), 1u);
    registered(1);
    client_.disconnectIfUnused();
    EXPECT_EQ(forwarder_.countOccurrences("check"), 1u);
}

TEST_F(POSAccessClientTest, DisconnectIfUnused_ForwarderThatThrows_IsPassedOver) {
    forwarder_.onCheck = [] { throw new CPPException("stale"); };
    client_.disconnectIfUnused();
    EXPECT_EQ(forwarder_.countOccurrences("check"), 1u);
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

    EXPECT_EQ(forwarder_.calls(),
              (std::vector<std::string>{"connect 10", "unregister application", "unregister application",
                                        "unregister application", "unregister application"}));
    std::vector<uint32_t> order;
    for (const auto& request : forwarder_.requests(posCommand::kUnregisterApplication))
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
        posCommand::kUnregisterApplication,
        {test::nothing(), [](POSTransferObj&) -> std::unique_ptr<POSTransferObj> { throw 5; }});
    client_.shutDown();
    EXPECT_EQ(forwarder_.countOccurrences("unregister application"), 2u);
    EXPECT_FALSE(client_.isRegistered(1));
    EXPECT_TRUE(client_.isRegistered(2));
    EXPECT_TRUE(client_.isRegistered(3));
}

TEST_F(POSAccessClientTest, ShutDown_AnswerWithCode36_ThrowsNothingSoTheLoopGoesOn) {
    for (uint32_t identifier : {1u, 2u})
        registered(identifier);
    forwarder_.answerNext(posCommand::kUnregisterApplication, {test::error(36, "whatever")});
    client_.shutDown();
    EXPECT_TRUE(client_.isRegistered(1));
    EXPECT_FALSE(client_.isRegistered(2));
}

CPPClassID makeClass(const std::string& bytes) {
    return CPPClassID(makeArray(bytes));
}

TEST(POSApplicationRecord, HasClass_ComparesByteByByte) {
    POSApplicationRecord record;
    EXPECT_FALSE(record.hasClass(makeClass("0123456789abcdef")));
    record.classes = {makeClass("fedcba9876543210"), makeClass(std::string("0123456789abcde\0", 16))};
    EXPECT_TRUE(record.hasClass(makeClass("fedcba9876543210")));
    EXPECT_TRUE(record.hasClass(makeClass(std::string("0123456789abcde\0", 16))));
    EXPECT_FALSE(record.hasClass(makeClass("0123456789abcdef")));
    EXPECT_FALSE(record.hasClass(makeClass("0123456789abcde")));
}

}  // namespace
}  // namespace dovrel
