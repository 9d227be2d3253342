// How the trader handles replies that are not normal ones. The fixture checks that every reply is deleted;
// the address sanitizer finds a reply that is deleted twice.
#include <typeinfo>

#include "InterProcessCommunication/POSCommands.h"
#include "client/exceptions/ExceptionTypeCodes.h"
#include "client/exceptions/POSException.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "settings/MultiLanguageSupport.h"
#include "tests/InterProcessCommunication/TraderFixture.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::exceptionAnswer;
using test::expectFailure;
using test::failureOf;
using test::kNormalAnswer;
using test::makeArray;
using test::Operation;
using test::part;
using test::Returned;
using test::uint32Part;

class POSTransferObjTraderReplyTest : public test::TraderFixture {
  protected:
    // Expects that the operation throws exactly this class with this message.
    void expectOperationFails(const Operation& operation, const std::type_info& type, const char* message) {
        SCOPED_TRACE(operation.name);
        const auto failure = failureOf([&] { operation.run(trader); });
        ASSERT_NE(failure, nullptr) << "nothing was thrown";
        const CPPException& thrown = *failure;
        EXPECT_STREQ(typeid(thrown).name(), type.name());
        EXPECT_STREQ(thrown.getMessage(), message);
        EXPECT_STREQ(thrown.getDetail(), "???");
        EXPECT_EQ(thrown.getCode(), 0);
    }
};

struct CodeCase {
    uint32_t code;
    const std::type_info& type;
};

TEST_F(POSTransferObjTraderReplyTest, ErrorCodes_ThrowTheirClassWithTheServersTextInEveryOperation) {
    const CodeCase cases[] = {
        {0, typeid(CPPException)},
        {23, typeid(POSException)},
        {24, typeid(POSClassNotFoundException)},
        {25, typeid(POSObjectNotFoundException)},
        {26, typeid(POSObjectInstantiationException)},
        {27, typeid(POSMethodNotFoundException)},
        {28, typeid(POSMethodExecutionException)},
        {30, typeid(POSParameterFormatException)},
        {32, typeid(POSRegistrationException)},
        {33, typeid(POSClassPackageNotProcessedException)},
        {34, typeid(POSApplicationNotRegisteredException)},
        {43, typeid(POSClassPackageNotFoundException)},
        {145, typeid(POSExecuterReturnedErrorCodeException)},
        {146, typeid(POSCommandNotExecutedException)},
    };
    for (const CodeCase& expected : cases) {
        SCOPED_TRACE(expected.code);
        for (const Operation& operation : operations()) {
            prepare(operation);
            forwarder.answerParts(exceptionAnswer(expected.code, "what happened"));
            expectOperationFails(operation, expected.type, "what happened");
        }
    }
}

TEST_F(POSTransferObjTraderReplyTest, ErrorCode3_ThrowsTheTextOfTheInterfaceKeyInsteadOfTheServers) {
    for (const Operation& operation : operations()) {
        prepare(operation);
        forwarder.answerParts(exceptionAnswer(3, "what the server says"));
        expectOperationFails(operation, typeid(CPPException), test::TransportTexts::kNoValidInterface);
    }
}

TEST_F(POSTransferObjTraderReplyTest, ErrorCodesThatStandForNoException_EndTheOperationInSilence) {
    for (const uint32_t code : {36u, 999u, 1u, 2u, 4u, 5u, 29u, 31u, 44u, 144u, 147u, 0xFFFFFFFFu}) {
        for (const Operation& operation : operations()) {
            SCOPED_TRACE(operation.name + std::string(" ") + std::to_string(code));
            prepare(operation);
            forwarder.answerParts(exceptionAnswer(code, "what happened"));
            operation.run(trader).expectUnlistedError();
        }
    }
}

TEST_F(POSTransferObjTraderReplyTest,
       ErrorCodeThatStandsForNoException_InTheVersionCheck_EndsTheRegistration) {
    forwarder.answerParts(exceptionAnswer(36, "a library is missing"));
    operationNamed("register application").run(trader).expectUnlistedError();
    EXPECT_EQ(forwarder.calls(), (std::vector<std::string>{"connect 10", "query interface version"}));
}

TEST_F(POSTransferObjTraderReplyTest, ErrorTextOfNoBytes_LeavesTheExceptionWithoutAMessage) {
    forwarder.answerParts(exceptionAnswer(24, ""));
    expectOperationFails(operationNamed("unregister application"), typeid(POSClassNotFoundException),
                         nullptr);
}

TEST_F(POSTransferObjTraderReplyTest, ErrorAnswerWithoutTextOrCode_IsThePartNotFoundFailure) {
    const std::string kind = uint32Part(1, 20);
    for (const std::string& parts :
         {kind, kind + part(150, "74"), kind + uint32Part(151, 24), kind + uint32Part(151, 999)}) {
        for (const Operation& operation : operations()) {
            SCOPED_TRACE(operation.name);
            prepare(operation);
            forwarder.answerParts(parts);
            expectFailure<PartNotFoundException>([&] { operation.run(trader); },
                                                 exceptionTypeCode::kPartNotFound, "384181A400FA: ", "2");
        }
    }
}

TEST_F(POSTransferObjTraderReplyTest, ErrorCodeOfFewerBytes_IsZeroExtended) {
    forwarder.answerParts(uint32Part(1, 20) + part(150, "74") + part(151, "18"));
    expectOperationFails(operationNamed("unregister application"), typeid(POSClassNotFoundException), "t");
}

TEST_F(POSTransferObjTraderReplyTest, AnswerWithoutMessageKind_IsThePartNotFoundFailureOfTheHeader) {
    for (const Operation& operation : operations()) {
        prepare(operation);
        forwarder.answerParts(uint32Part(0, 1) + operation.replyParts);
        expectOperationFails(operation, typeid(PartNotFoundException), "???");
    }
}

TEST_F(POSTransferObjTraderReplyTest, AnyMessageKindBut20_IsANormalAnswer) {
    for (const uint32_t kind : {0u, 1u, 10u, 11u, 19u, 21u, 0x1400u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(kind);
        forwarder.answerParts(uint32Part(1, kind) + part(109, "79 65 73"));
        const Returned returned = operationNamed("get information").run(trader);
        EXPECT_TRUE(returned.isDone());
        EXPECT_EQ(returned.blockText(), "yes");
    }
}

TEST_F(POSTransferObjTraderReplyTest, InterfaceVersionOtherThan7_EndsTheRegistrationWithTheTextOfTheKey) {
    for (const char* version : {"06 00 00 00", "08 00 00 00", "00", "", "07 00 00 01"}) {
        SCOPED_TRACE(version);
        forwarder.answerParts(kNormalAnswer + part(118, version));
        expectOperationFails(operationNamed("register application"), typeid(CPPException),
                             test::TransportTexts::kNoValidInterface);
    }
    EXPECT_EQ(forwarder.countOccurrences("query interface version"), 5u);
    EXPECT_EQ(forwarder.countOccurrences("register application"), 0u);
}

TEST_F(POSTransferObjTraderReplyTest, InterfaceVersion7_MayBeAShortField) {
    forwarder.answerParts(kNormalAnswer + part(118, "07"));
    forwarder.answerParts(kNormalAnswer + operationNamed("register application").replyParts);
    EXPECT_TRUE(operationNamed("register application").run(trader).isDone());
}

TEST_F(POSTransferObjTraderReplyTest,
       MissingInterfaceVersion_IsThePartNotFoundFailureNotTheInterfaceFailure) {
    forwarder.answerParts(kNormalAnswer);
    expectFailure<PartNotFoundException>([&] { operationNamed("register application").run(trader); },
                                         exceptionTypeCode::kPartNotFound, "384181A400FA: ", "2");
}

TEST_F(POSTransferObjTraderReplyTest, MissingReplyFields_AreThePartNotFoundFailure) {
    for (const Operation& operation : operations()) {
        if (operation.replyParts.empty()) continue;
        SCOPED_TRACE(operation.name);
        prepare(operation);
        forwarder.answerParts(kNormalAnswer);
        expectFailure<PartNotFoundException>([&] { operation.run(trader); }, exceptionTypeCode::kPartNotFound,
                                             "384181A400FA: ", "2");
    }
}

TEST_F(POSTransferObjTraderReplyTest, EachReplyFieldMissingAlone_IsThePartNotFoundFailure) {
    const std::string sixteen = "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10";
    const std::vector<std::pair<const char*, std::string>> cases = {
        {"register application", uint32Part(103, 5)},
        {"register application", uint32Part(115, 1)},
        {"instantiate object", part(105, sixteen)},
        {"instantiate object", part(120, "")},
        {"call method", part(111, "72")},
        {"call method", part(120, "01 00 00 00")}};
    for (const auto& [name, parts] : cases) {
        SCOPED_TRACE(name);
        const Operation& incomplete = operationNamed(name);
        prepare(incomplete);
        forwarder.answerParts(kNormalAnswer + parts);
        expectFailure<PartNotFoundException>([&] { incomplete.run(trader); },
                                             exceptionTypeCode::kPartNotFound, "384181A400FA: ", "2");
    }
}

TEST_F(POSTransferObjTraderReplyTest, EmptyAnswer_IsTheReadersFailure) {
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        prepare(operation);
        forwarder.answerBytes(CPPByteArray());
        expectFailure<StructuredReaderNotInitializedException>(
            [&] { operation.run(trader); }, exceptionTypeCode::kStructuredReaderNotInitialized,
            "3841954A010E: ", "1");
    }
}

TEST_F(POSTransferObjTraderReplyTest, Garbage_IsTheReadersFailure) {
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        prepare(operation);
        forwarder.answerBytes(makeArray("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF this is not the answer"));
        expectFailure<StructuredReaderNotInitializedException>(
            [&] { operation.run(trader); }, exceptionTypeCode::kStructuredReaderNotInitialized,
            "384190CE01EA: ", "1");
    }
}

TEST_F(POSTransferObjTraderReplyTest, AnswerCutAnywhere_IsAFailure) {
    for (const Operation& operation : operations()) {
        if (operation.replyParts.empty()) continue;
        CPPByteArray whole = arrayFromHex("41 73 41 6B 00 01 00 00 00 09 " + std::string(kNormalAnswer) +
                                          operation.replyParts);
        for (uint32_t length = 0; length < whole.getSize(); ++length) {
            SCOPED_TRACE(operation.name + std::string(" cut to ") + std::to_string(length));
            CPPByteArray cut;
            cut.setFromPart(whole, 0, length);
            prepare(operation);
            forwarder.answerBytes(cut);
            EXPECT_NE(failureOf([&] { operation.run(trader); }), nullptr);
        }
    }
}

TEST_F(POSTransferObjTraderReplyTest, FailureOfTheForwarder_PassesAsItIs) {
    for (const Operation& operation : operations()) {
        prepare(operation);
        forwarder.throwAtRequest("no way through");
        expectOperationFails(operation, typeid(POSException), "no way through");
    }
}

TEST_F(POSTransferObjTraderReplyTest, Check_OfANormalAnswer_ReturnsItsKindAndLeavesIt) {
    auto reply = std::make_unique<POSTransferObj>(1, 11, 0);
    EXPECT_EQ(POSTransferObjTrader::CheckTransferObjReply(reply), 11u);
    EXPECT_NE(reply, nullptr);
}

TEST_F(POSTransferObjTraderReplyTest, Check_OfACodeWithoutAnException_ReturnsTheCodeAndReleasesTheAnswer) {
    auto reply = std::make_unique<POSTransferObj>(1, kMessageKindException, 0);
    reply->writeString(150, "text");
    reply->writeUInt32(151, 36);
    EXPECT_EQ(POSTransferObjTrader::CheckTransferObjReply(reply), 36u);
    EXPECT_EQ(reply, nullptr);
}

TEST_F(POSTransferObjTraderReplyTest, EveryAnswer_IsReleasedBeforeTheOperationEnds) {
    int answers = 0;
    for (const Operation& operation : operations()) {
        prepare(operation);
        forwarder.answerParts(kNormalAnswer + operation.replyParts);
        answers += operation.registers ? 2 : 1;
        EXPECT_TRUE(operation.run(trader).isDone());
        EXPECT_EQ(forwarder.releasedAnswers(), answers) << operation.name;
    }
}

}  // namespace
}  // namespace dovrel
