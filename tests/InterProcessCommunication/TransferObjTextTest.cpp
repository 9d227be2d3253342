#include "InterProcessCommunication/TransferObjText.h"

#include <gtest/gtest.h>

#include "InterProcessCommunication/POSTransferObj.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::makeArray;

/// Returns a request of command 14 with this argument.
CPPByteArray callRequest(const std::string& argument) {
    POSTransferObj request(1, 10, 14);
    request.writeUInt32(103, 65537);
    request.writeString(105, "object" + std::string(10, '\0'));
    request.writeString(107, std::string("echo", 5));
    request.writeString(110, argument);
    request.writeString(104, "");
    return request.bytes();
}

TEST(TransferObjText, OfARequest_HasALinePerFieldInItsForm) {
    EXPECT_EQ(transferObjText(callRequest("hello"), "> "),
              "> 103 session identifier = 65537\n"
              "> 105 object identifier = 16 bytes: 6F 62 6A 65 63 74 00 00 00 00 00 00 00 00 00 00 "
              "\"object..........\"\n"
              "> 107 method name = \"echo\"\n"
              "> 110 argument data = 5 bytes: 68 65 6C 6C 6F \"hello\"\n"
              "> 104 executer identifier = 0 bytes\n");
}

TEST(TransferObjText, OfAnAnswer_HasTheFieldsOfTheAnswer) {
    POSTransferObj answer(1, 11, 14);
    answer.writeString(111, "\x01");
    answer.writeString(120, "");
    EXPECT_EQ(transferObjText(answer.bytes(), "< "),
              "< 111 result data = 1 byte: 01\n< 120 server message = 0 bytes\n");
}

TEST(TransferObjText, OfAnException_HasTextAndCode) {
    POSTransferObj answer(1, 20, 14);
    answer.writeString(150, "Oh no.");
    answer.writeUInt32(151, 28);
    EXPECT_EQ(transferObjText(answer.bytes(), "< "),
              "< 150 exception text = \"Oh no.\"\n< 151 exception code = 28\n");
}

TEST(TransferObjText, OfTexts_IsUTF8OnOneLine) {
    POSTransferObj answer(1, 20, 14);
    answer.writeString(150,
                       "Größe, gr\x9A\xA7"
                       "er\r\n\x1B[2J");
    answer.writeUInt32(151, 28);
    EXPECT_EQ(transferObjText(answer.bytes(), "< "),
              "< 150 exception text = \"Größe, größer\\n\\x1B[2J\"\n< 151 exception code = 28\n");
}

TEST(TransferObjText, RequestSummary_NamesTheCommandWithItsMethodOrClassAndNothingElse) {
    EXPECT_EQ(requestSummary(callRequest("a secret")), "call method, method name = \"echo\"");
    POSTransferObj instantiation(1, 10, 12);
    instantiation.writeUInt32(103, 65537);
    instantiation.writeString(106, "Echo" + std::string(12, '\0'));
    EXPECT_EQ(
        requestSummary(instantiation.bytes()),
        "instantiate object, class identifier = 16 bytes: 45 63 68 6F 00 00 00 00 00 00 00 00 00 00 00 00 "
        "\"Echo............\"");
    EXPECT_EQ(requestSummary(POSTransferObj(1, 10, 17).bytes()), "query interface version");
    EXPECT_EQ(requestSummary(makeArray("no")), "unknown command");
}

TEST(TransferObjText, ErrorCodeText_IsTheCodeWithItsMeaning) {
    EXPECT_EQ(errorCodeText(27), "27 (method not found)");
    EXPECT_EQ(errorCodeText(36), "36 (library not found)");
    EXPECT_EQ(errorCodeText(99), "99 (unknown)");
    EXPECT_EQ(errorCodeText(44), "44 (unknown)");
    EXPECT_EQ(errorCodeText(0xFFFFFFFF), "4294967295 (unknown)");
}

TEST(TransferObjText, OfLongData_ShowsTheBeginning) {
    const std::string text = transferObjText(callRequest(std::string(65, 'x')), "");
    EXPECT_NE(text.find("110 argument data = 65 bytes: 78 78"), std::string::npos);
    EXPECT_NE(text.find("78 ... \"" + std::string(64, 'x') + "\"\n"), std::string::npos);
}

TEST(TransferObjText, OfBytesThatAreNoBlock_ShowsThem) {
    EXPECT_EQ(transferObjText(makeArray("no"), "> "), "> 2 bytes: 6E 6F \"no\"\n");
    EXPECT_EQ(transferObjText({}, "> "), "> 0 bytes\n");
}

TEST(TransferObjText, OfADamagedRequest_ShowsTheFieldsThatAreThere) {
    POSTransferObj request(1, 10, 13);
    request.writeString(105, "short");
    EXPECT_EQ(transferObjText(request.bytes(), ""),
              "105 object identifier = 5 bytes: 73 68 6F 72 74 \"short\"\n");
}

TEST(TransferObjText, ReadCommandName_NamesTheCommandOrSaysThatThereIsNone) {
    EXPECT_EQ(readCommandName(POSTransferObj(1, 10, 17).bytes()), "query interface version");
    EXPECT_EQ(readCommandName(POSTransferObj(1, 10, 99).bytes()), "unknown command");
    EXPECT_EQ(readCommandName({}), "unknown command");
    EXPECT_EQ(readCommandCode(POSTransferObj(1, 10, 17).bytes()), 17u);
    EXPECT_EQ(readCommandCode({}), 0u);
}

TEST(TransferObjText, FieldNumber_IsZeroExtendedAndUsesFourBytes) {
    const uint8_t bytes[] = {1, 2, 3, 4, 5};
    EXPECT_EQ(fieldNumber({nullptr, 0}), 0u);
    EXPECT_EQ(fieldNumber({bytes, 2}), 0x0201u);
    EXPECT_EQ(fieldNumber({bytes, 5}), 0x04030201u);
}

}  // namespace
}  // namespace dovrel
