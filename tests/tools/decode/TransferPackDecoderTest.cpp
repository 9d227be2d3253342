#include "tools/decode/TransferPackDecoder.h"

#include <gtest/gtest.h>

#include "tools/decode/DecodedOutput.h"
#include "tools/decode/Decoder.h"

namespace dovrel::tools {
namespace {

// A record of zero bytes, except for some fields and three bytes of additional data.
std::string makeRecord() {
    std::string record(608, '\0');
    record.replace(0, 8, std::string("\1\2\3\4\5\6\7\x08", 8));
    record.replace(8, 4, "TAN.");
    record.replace(14, 2, std::string("\3\0", 2));
    record.replace(224, 4, "\3abc");
    return record + "xyz";
}

ByteView viewOf(const std::string& record) {
    return {reinterpret_cast<const uint8_t*>(record.data()), static_cast<uint32_t>(record.size())};
}

std::string textOf(const std::string& record) {
    return toOutputText(decode(viewOf(record), InputKind::kTransferPack, 4));
}

std::string lastLine(const std::string& text) {
    return text.substr(text.rfind('\n', text.size() - 2) + 1);
}

TEST(TransferPackDecoder, CompleteRecord_HasAllFieldsWithTheirOffsets) {
    EXPECT_EQ(textOf(makeRecord()),
              "transfer pack, 611 bytes\n"
              "0000  Status = 513\n"
              "0002  DataSize = 1027\n"
              "0004  Version = 1541\n"
              "0006  Mode = 2055\n"
              "0008  TAN = 4 bytes: 54 41 4E 2E \"TAN.\"\n"
              "000C  TPLevel = 0\n"
              "000E  AddDataSize = 3\n"
              "0010  reserved = 16 bytes: 00 00 00 00 ...\n"
              "0020  SourceObjID = 16 bytes: 00 00 00 00 ...\n"
              "0030  SourceClassID = 16 bytes: 00 00 00 00 ...\n"
              "0040  reserved = 16 bytes: 00 00 00 00 ...\n"
              "0050  DestinationObjID = 16 bytes: 00 00 00 00 ...\n"
              "0060  DestinationClassID = 16 bytes: 00 00 00 00 ...\n"
              "0070  reserved = 16 bytes: 00 00 00 00 ...\n"
              "0080  MediatorObjID = 16 bytes: 00 00 00 00 ...\n"
              "0090  MediatorClassID = 16 bytes: 00 00 00 00 ...\n"
              "00A0  MediatorValue = 16 bytes: 00 00 00 00 ...\n"
              "00B0  Digest A = 16 bytes: 00 00 00 00 ...\n"
              "00C0  Digest B = 16 bytes: 00 00 00 00 ...\n"
              "00D0  Digest C = 16 bytes: 00 00 00 00 ...\n"
              "00E0  Token 1 = 3 bytes: 61 62 63 \"abc\"\n"
              "0160  Token 2 = 0 bytes\n"
              "01E0  reserved = 128 bytes: 00 00 00 00 ...\n"
              "0260  additional data = 3 bytes: 78 79 7A \"xyz\"\n");
}

TEST(TransferPackDecoder, RecordThatEndsInAField_ShowsItsBytesAndWhereItEnds) {
    const std::string text = textOf(makeRecord().substr(0, 10));
    EXPECT_NE(text.find("0008  TAN = 2 bytes: 54 41 \"TA\"\n"), std::string::npos);
    EXPECT_EQ(text.find("TPLevel"), std::string::npos);
    EXPECT_EQ(lastLine(text),
              "problem at 000A: the record ends here, but a transfer pack has at least 608 bytes\n");
}

TEST(TransferPackDecoder, RecordWithTooFewOrTooManyAdditionalData_IsAProblem) {
    EXPECT_EQ(lastLine(textOf(makeRecord().substr(0, 609))),
              "problem at 0261: the record ends after 1 of the 3 bytes of additional data\n");
    const std::string text = textOf(makeRecord() + "!");
    EXPECT_NE(text.find("0263  bytes after the end = 1 byte: 21 \"!\"\n"), std::string::npos);
    EXPECT_EQ(lastLine(text), "problem at 0263: the record ends here, but 1 byte follow\n");
}

TEST(TransferPackDecoder, TokenLongerThanItsPlace_IsAProblem) {
    std::string record = makeRecord();
    record[352] = '\x7F';
    EXPECT_EQ(textOf(record).find("problem"), std::string::npos);
    record[352] = '\x80';
    EXPECT_EQ(lastLine(textOf(record)),
              "problem at 0160: Token 2 has 128 bytes, but there is room for 127\n");
}

TEST(TransferPackDecoder, SizeOfARecord_IncludesTheAdditionalData) {
    EXPECT_TRUE(hasSizeOfTransferPack(viewOf(makeRecord())));
    EXPECT_FALSE(hasSizeOfTransferPack(viewOf(makeRecord() + "!")));
    EXPECT_FALSE(hasSizeOfTransferPack(viewOf(makeRecord().substr(0, 607))));
    EXPECT_FALSE(hasSizeOfTransferPack({nullptr, 0}));
}

}  // namespace
}  // namespace dovrel::tools
