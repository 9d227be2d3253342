// Tests requests that the trader refuses to send, and its behaviour when it cannot send.
#include <functional>
#include <vector>

#include "client/exceptions/ExceptionTypeCodes.h"
#include "client/exceptions/POSException.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/InterProcessCommunication/TraderFixture.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayOf;
using test::expectFailure;
using test::kNormalAnswer;
using test::part;
using test::uint32Part;

using Calls = std::vector<std::string>;

class POSTransferObjTraderRefusalTest : public test::TraderFixture {};

TEST_F(POSTransferObjTraderRefusalTest, RegisterApplication_WhenConnectingFails_SendsNothing) {
    forwarder.throwAtConnect("no server");
    expectFailure<POSException>([&] { trader.registerApplication("App", {classId}, CPPByteArray()); },
                                exceptionTypeCode::kPOSException, "???", "no server");
    EXPECT_EQ(forwarder.calls(), (Calls{"connect 10"}));
}

TEST_F(POSTransferObjTraderRefusalTest,
       RegisterApplication_WithAClassIdentifierThatIsNot16Bytes_DoesNotRegister) {
    forwarder.answerParts(kNormalAnswer + uint32Part(118, 7));
    expectFailure<CPPException>(
        [&] {
            trader.registerApplication("App", {classId, CPPClassID(arrayOf("short"))}, CPPByteArray());
        },
        exceptionTypeCode::kCPPException, "???", test::TransportTexts::kWrongIdentifier);
    EXPECT_EQ(forwarder.calls(), (Calls{"connect 10", "query interface version", "identify"}));
}

TEST_F(POSTransferObjTraderRefusalTest,
       InstantiateObject_WithAnObjectIdentifierThatIsNot16Bytes_HandsNothingOut) {
    for (const char* identifier : {"", "01", "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F",
                                   "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11"}) {
        forwarder.answerParts(kNormalAnswer + part(105, identifier) + part(120, "01 00 00 00"));
        expectFailure<CPPException>([&] { trader.instantiateObject(5, classId, kNoExecuter); },
                                    exceptionTypeCode::kCPPException, "???",
                                    test::TransportTexts::kWrongIdentifier);
    }
}

TEST_F(POSTransferObjTraderRefusalTest,
       ExecuteCommand_WithLengthsWhoseSumIsNoLength_FailsBeforeAnythingIsSent) {
    const uint8_t command[] = {'p', 'i', 'n', 'g'};
    const uint8_t argument[] = {0};
    // The sum of the lengths is 2^32 + 3. Each length alone is within the limit of its field.
    expectFailure<StructuredWriteFailedException>(
        [&] {
            trader.executeCommand(5, {{command, 4}, {argument, 0xFFFFFFFF}});
        },
        exceptionTypeCode::kStructuredWriteFailed, "6B00A7F90036: ", test::TransportTexts::kCommandTooLong);
    EXPECT_TRUE(forwarder.calls().empty());
}

TEST_F(POSTransferObjTraderRefusalTest, GivenIdentifiersThatAreNot16Bytes_FailBeforeAnythingIsSent) {
    const CPPObjectID shortObject{arrayOf("fifteen bytes..")};
    const CPPClassID longClass{arrayOf("seventeen bytes..")};
    const ProtectedExecuterID emptyExecuter;
    const std::vector<std::function<void()>> attempts = {
        [&] { trader.instantiateObject(5, longClass, kNoExecuter); },
        [&] { trader.deleteObject(5, shortObject); },
        [&] {
            trader.callMethod(5, {shortObject, std::nullopt, "m", {}});
        },
        [&] {
            trader.callMethod(5, {objectId, emptyExecuter, "m", {}});
        },
    };
    for (const auto& attempt : attempts)
        expectFailure<CPPException>(attempt, exceptionTypeCode::kCPPException, "???",
                                    test::TransportTexts::kWrongIdentifier);
    EXPECT_TRUE(forwarder.calls().empty());
}

TEST_F(POSTransferObjTraderRefusalTest,
       ParametersThatTheRequestCannotHold_AreTheWritersFailureAndNothingIsSent) {
    const uint8_t byte = 0;
    expectFailure<StructuredWriteFailedException>(
        [&] {
            trader.callMethod(5, {objectId, std::nullopt, "m", {&byte, 0xFFFFFFFF}});
        },
        exceptionTypeCode::kStructuredWriteFailed,
        "384269E80233: ", "Byte array too small (or did not expand as expected)");
    EXPECT_TRUE(forwarder.calls().empty());
}

}  // namespace
}  // namespace dovrel
