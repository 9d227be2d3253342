// Tests the trader's requests, and how it handles normal replies.
// (POSTransferObjTraderReplyTest covers all other replies.)
#include "InterProcessCommunication/POSTransferObjTrader.h"

#include <type_traits>

#include "InterProcessCommunication/POSCommands.h"
#include "tests/InterProcessCommunication/TraderFixture.h"

namespace dovrel {
namespace {

using test::arrayOf;
using test::arrayOfHex;
using test::blockText;
using test::hexOf;
using test::kNormalAnswer;
using test::Operation;
using test::part;
using test::Returned;
using test::uint32Part;

using Calls = std::vector<std::string>;

static_assert(std::has_virtual_destructor_v<POSTransferObjTrader>);

class POSTransferObjTraderTest : public test::TraderFixture {};

// Returns the block's header and the header fields of a request with this command.
std::string requestHeader(const std::string& commandByte) {
    return "41 73 41 6B 00 01 00 00 00 09 "
           "00 00 00 00 00 00 00 04 01 00 00 00 "
           "00 00 00 01 00 00 00 04 0A 00 00 00 "
           "00 00 00 03 00 00 00 04 " +
           commandByte + " 00 00 00";
}

TEST_F(POSTransferObjTraderTest, RegisterApplication_ConnectsChecksTheVersionThenRegisters) {
    forwarder.answerParts(kNormalAnswer + uint32Part(118, 7));
    forwarder.answerParts(kNormalAnswer + uint32Part(103, 0x01020304) + part(115, "01 00 00 00"));
    const CPPClassID second{arrayOf("1234567890123456")};
    const auto registered = trader.registerApplication("App", {classId, second}, arrayOfHex("60 04"));

    EXPECT_EQ(forwarder.calls(),
              (Calls{"connect 10", "query interface version", "identify", "register application"}));
    EXPECT_EQ(request(posCommand::kQueryInterfaceVersion), requestHeader("11"));
    EXPECT_EQ(request(posCommand::kRegisterApplication),
              requestHeader("0A") +
                  " 00 00 00 64 00 00 00 04 41 70 70 00"
                  " 00 00 00 65 00 00 00 08 10 11 12 13 14 15 16 17"
                  " 00 00 00 82 00 00 00 46"
                  " 41 73 41 6B 00 01 00 00 00 08"
                  " 00 00 00 00 00 00 00 04 02 00 00 00"
                  " 00 00 00 05 00 00 00 10 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50"
                  " 00 00 00 07 00 00 00 10 31 32 33 34 35 36 37 38 39 30 31 32 33 34 35 36"
                  " 00 00 00 72 00 00 00 02 60 04");
    EXPECT_EQ(registered.outcome, POSOutcome::kDone);
    EXPECT_EQ(registered.value.applicationId, 0x01020304u);
    EXPECT_TRUE(registered.value.checksClasses);
}

TEST_F(POSTransferObjTraderTest, RegisterApplication_WithNothing_SendsEmptyFields) {
    forwarder.answerParts(kNormalAnswer + uint32Part(118, 7));
    forwarder.answerParts(kNormalAnswer + uint32Part(103, 1) + part(115, ""));
    EXPECT_EQ(trader.registerApplication("", {}, CPPByteArray()).outcome, POSOutcome::kDone);
    EXPECT_EQ(request(posCommand::kRegisterApplication),
              requestHeader("0A") +
                  " 00 00 00 64 00 00 00 01 00"
                  " 00 00 00 65 00 00 00 08 10 11 12 13 14 15 16 17"
                  " 00 00 00 82 00 00 00 16"
                  " 41 73 41 6B 00 01 00 00 00 08 00 00 00 00 00 00 00 04 00 00 00 00"
                  " 00 00 00 72 00 00 00 00");
}

TEST_F(POSTransferObjTraderTest,
       RegistrationFlags_OnlyBit0AsksForTheClassCheckAndShortFieldsAreZeroExtended) {
    const std::vector<std::pair<const char*, bool>> cases = {
        {"", false},           {"01", true},           {"02", false},
        {"FF FF", true},       {"FE FF FF FF", false}, {"01 00 00 00 00", true},
        {"00 00 00 01", false}};
    for (const auto& [flags, checks] : cases) {
        SCOPED_TRACE(flags);
        forwarder.answerParts(kNormalAnswer + uint32Part(118, 7));
        forwarder.answerParts(kNormalAnswer + uint32Part(103, 1) + part(115, flags));
        const auto registered = trader.registerApplication("App", {}, CPPByteArray());
        EXPECT_EQ(registered.outcome, POSOutcome::kDone);
        EXPECT_EQ(registered.value.checksClasses, checks);
    }
}

TEST_F(POSTransferObjTraderTest, UnregisterApplication_SendsTheSession) {
    forwarder.answerParts(kNormalAnswer);
    EXPECT_EQ(trader.unregisterApplication(0xFFFFFFFE), POSOutcome::kDone);
    EXPECT_EQ(request(posCommand::kUnregisterApplication),
              requestHeader("0B") + " 00 00 00 67 00 00 00 04 FE FF FF FF");
    EXPECT_EQ(forwarder.calls(), (Calls{"unregister application"}));
}

TEST_F(POSTransferObjTraderTest, InstantiateObject_SendsClassEmptyCreationDataAndExecuterWord) {
    forwarder.answerParts(kNormalAnswer + part(105, "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10") +
                          part(120, "01 00 00 00 48 69"));
    const auto created = trader.instantiateObject(5, classId, kNoExecuter);
    EXPECT_EQ(request(posCommand::kInstantiateObject),
              requestHeader("0C") +
                  " 00 00 00 67 00 00 00 04 05 00 00 00"
                  " 00 00 00 6A 00 00 00 10 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50"
                  " 00 00 00 74 00 00 00 00"
                  " 00 00 00 75 00 00 00 04 FF FF FF FF");
    EXPECT_EQ(created.outcome, POSOutcome::kDone);
    EXPECT_EQ(hexOf(created.value.object), "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10");
    EXPECT_EQ(created.value.message.flags, 1u);
    EXPECT_EQ(created.value.message.text, "Hi");
}

TEST_F(POSTransferObjTraderTest, DeleteObject_SendsTheObject) {
    forwarder.answerParts(kNormalAnswer);
    EXPECT_EQ(trader.deleteObject(5, objectId), POSOutcome::kDone);
    EXPECT_EQ(request(posCommand::kDeleteObject),
              requestHeader("0D") +
                  " 00 00 00 67 00 00 00 04 05 00 00 00"
                  " 00 00 00 69 00 00 00 10 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70");
}

TEST_F(POSTransferObjTraderTest, CallMethod_SendsTheNameWithItsZeroAndWithoutAnExecuterField104OfLength0) {
    forwarder.answerParts(kNormalAnswer + part(111, "72 65 73") + part(120, "02 00 00 00"));
    const uint8_t parameters[] = {0, 1, 2};
    const auto reply = trader.callMethod(5, {objectId, std::nullopt, "add", {parameters, 3}});
    EXPECT_EQ(request(posCommand::kCallMethod),
              requestHeader("0E") +
                  " 00 00 00 67 00 00 00 04 05 00 00 00"
                  " 00 00 00 69 00 00 00 10 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70"
                  " 00 00 00 6B 00 00 00 04 61 64 64 00"
                  " 00 00 00 6E 00 00 00 03 00 01 02"
                  " 00 00 00 68 00 00 00 00");
    EXPECT_EQ(reply.outcome, POSOutcome::kDone);
    EXPECT_EQ(blockText(reply.value.result), "res");
    EXPECT_EQ(reply.value.message.flags, 2u);
    EXPECT_EQ(reply.value.message.text, "");
}

TEST_F(POSTransferObjTraderTest, CallMethod_OnAnExecuter_SendsItsIdentifier) {
    forwarder.answerParts(kNormalAnswer + part(111, "") + part(120, ""));
    const ProtectedExecuterID executer{arrayOf("EXECUTER........")};
    EXPECT_EQ(trader.callMethod(5, {objectId, executer, "", {}}).outcome, POSOutcome::kDone);
    EXPECT_EQ(request(posCommand::kCallMethod),
              requestHeader("0E") +
                  " 00 00 00 67 00 00 00 04 05 00 00 00"
                  " 00 00 00 69 00 00 00 10 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70"
                  " 00 00 00 6B 00 00 00 01 00"
                  " 00 00 00 6E 00 00 00 00"
                  " 00 00 00 68 00 00 00 10 45 58 45 43 55 54 45 52 2E 2E 2E 2E 2E 2E 2E 2E");
}

TEST_F(POSTransferObjTraderTest, ExecuteCommand_SendsCommandAndArgumentInOneFieldAndTheCommandsLength) {
    forwarder.answerParts(kNormalAnswer + part(111, "6F 6B"));
    const uint8_t command[] = {'p', 'i', 'n', 'g'};
    const uint8_t argument[] = {0xAA, 0xBB};
    const auto reply = trader.executeCommand(5, {{command, 4}, {argument, 2}});
    EXPECT_EQ(request(posCommand::kExecuteCommand),
              requestHeader("0F") +
                  " 00 00 00 67 00 00 00 04 05 00 00 00"
                  " 00 00 00 68 00 00 00 10 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                  " 00 00 00 6E 00 00 00 06 70 69 6E 67 AA BB"
                  " 00 00 00 70 00 00 00 04 04 00 00 00");
    EXPECT_EQ(reply.outcome, POSOutcome::kDone);
    EXPECT_EQ(blockText(reply.value), "ok");
}

TEST_F(POSTransferObjTraderTest, ExecuteCommand_WithNullPointersOfLength0_SendsAnEmptyField) {
    forwarder.answerParts(kNormalAnswer + part(111, ""));
    EXPECT_EQ(trader.executeCommand(5, {}).outcome, POSOutcome::kDone);
    EXPECT_EQ(request(posCommand::kExecuteCommand),
              requestHeader("0F") +
                  " 00 00 00 67 00 00 00 04 05 00 00 00"
                  " 00 00 00 68 00 00 00 10 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                  " 00 00 00 6E 00 00 00 00"
                  " 00 00 00 70 00 00 00 04 00 00 00 00");
}

TEST_F(POSTransferObjTraderTest, GetInformation_SendsTheRequest) {
    forwarder.answerParts(kNormalAnswer + part(109, "69 6E 66 6F"));
    const uint8_t query[] = {0x61, 0x01};
    const auto reply = trader.getInformation(0, {query, 2});
    EXPECT_EQ(request(posCommand::kGetInformation), requestHeader("10") +
                                                        " 00 00 00 67 00 00 00 04 00 00 00 00"
                                                        " 00 00 00 6C 00 00 00 02 61 01");
    EXPECT_EQ(reply.outcome, POSOutcome::kDone);
    EXPECT_EQ(blockText(reply.value), "info");
}

TEST_F(POSTransferObjTraderTest, EmptyResults_AreNullOfLength0) {
    for (const Operation& operation : operations()) {
        const std::string name = operation.name;
        if (name != "call method" && name != "execute command" && name != "get information") continue;
        SCOPED_TRACE(name);
        forwarder.answerParts(kNormalAnswer + part(111, "") + part(109, "") + part(120, ""));
        const Returned returned = operation.run(trader);
        EXPECT_TRUE(returned.isDone());
        EXPECT_EQ(returned.block.data, nullptr);
        EXPECT_EQ(returned.block.length, 0u);
    }
}

TEST_F(POSTransferObjTraderTest, AnswersAndMessagesMayHaveTheirFieldsInAnyOrderAndMore) {
    forwarder.answerParts(part(120, "01 00 00 00 6D") + part(999, "00") + part(111, "72") + kNormalAnswer);
    const Returned returned = operationNamed("call method").run(trader);
    EXPECT_TRUE(returned.isDone());
    EXPECT_EQ(returned.blockText(), "r");
    EXPECT_EQ(returned.message.text, "m");
}

TEST_F(POSTransferObjTraderTest, HeaderFieldsThatAreNotLookedAt_MayBeMissingOrHoldAnything) {
    const std::string kind = uint32Part(1, 11);
    for (const std::string& header : {kind, uint32Part(0, 99) + kind + uint32Part(3, 99),
                                      kind + part(0, "") + part(2, "00") + part(3, "00")}) {
        SCOPED_TRACE(header);
        forwarder.answerParts(header + part(109, "72"));
        const Returned returned = operationNamed("get information").run(trader);
        EXPECT_TRUE(returned.isDone());
        EXPECT_EQ(returned.blockText(), "r");
    }
}

TEST_F(POSTransferObjTraderTest, EveryRequest_HasTheFieldsOfTheTableInItsOrder) {
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        prepare(operation);
        forwarder.answerParts(kNormalAnswer + operation.replyParts);
        ASSERT_TRUE(operation.run(trader).isDone());

        ASSERT_EQ(forwarder.calls().back(), operation.name);
        const auto command =
            std::find_if(kPOSCommands.begin(), kPOSCommands.end(),
                         [&](const POSCommand& one) { return operation.name == std::string(one.name); });
        const auto sent = forwarder.lastRequest(*command);
        const CPPByteArray& wire = sent->bytes();

        std::vector<uint32_t> expected = {0, 1, 3};
        for (const POSField& field : command->request)
            expected.push_back(field);
        std::vector<uint32_t> tags;
        const auto wordAt = [&wire](uint32_t offset) {
            return uint32_t{wire.getByte(offset)} << 24 | uint32_t{wire.getByte(offset + 1)} << 16 |
                   uint32_t{wire.getByte(offset + 2)} << 8 | wire.getByte(offset + 3);
        };
        for (uint32_t offset = 10; offset < wire.getSize(); offset += 8 + wordAt(offset + 4))
            tags.push_back(wordAt(offset));
        EXPECT_EQ(tags, expected);
    }
}

}  // namespace
}  // namespace dovrel
