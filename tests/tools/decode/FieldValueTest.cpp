#include "tools/decode/FieldValue.h"

#include <gtest/gtest.h>

#include "tests/support/library/Bytes.h"
#include "tools/decode/DecodedOutput.h"

namespace dovrel::tools {
namespace {

// A part of the field at offset 0 with these data, described.
struct Described {
    Described(const POSField& field, std::string_view digits) : data(test::arrayFromHex(digits)) {
        part.number = field.number;
        part.length = 8 + data.getSize();
        part.data = {data.data(), data.getSize()};
        describeField(part, field, 64, result);
        result.items = {part};
        lines = toOutputText(result);
        lines.erase(0, lines.find('\n') + 1);
    }

    CPPByteArray data;
    DecodedItem part;
    Decoded result;
    std::string lines;
};

TEST(FieldValue, Numbers_HaveTheirMeaning) {
    EXPECT_EQ(Described(posField::kMessageKind, "0A 00 00 00").lines,
              "0000  1 message kind = 10 (request)\n");
    EXPECT_EQ(Described(posField::kMessageKind, "0C 00 00 00").lines,
              "0000  1 message kind = 12 (normal reply)\n");
    EXPECT_EQ(Described(posField::kCommand, "0E 00 00 00").lines, "0000  3 command = 14 (call method)\n");
    EXPECT_EQ(Described(posField::kCommand, "63 00 00 00").lines, "0000  3 command = 99 (unknown)\n");
    EXPECT_EQ(Described(posField::kExceptionCode, "1B 00 00 00").lines,
              "0000  151 exception code = 27 (method not found)\n");
    EXPECT_EQ(Described(posField::kExecuterWord, "FF FF FF FF").lines,
              "0000  117 executer word = 4294967295 (no executer)\n");
    EXPECT_EQ(Described(posField::kSession, "01 00 01 00").part.value, 65537u);
}

TEST(FieldValue, NumberWithoutFourBytes_IsANoteAndReadAsReadersDo) {
    EXPECT_EQ(Described(posField::kSession, "01 02").lines,
              "0000  103 session identifier = 513\n"
              "note at 0000: session identifier has 2 bytes; readers add zero bytes to make 4\n");
    EXPECT_EQ(Described(posField::kSession, "01 00 00 00 FF").lines,
              "0000  103 session identifier = 1\n"
              "note at 0000: session identifier has 5 bytes; readers use the first 4\n");
}

TEST(FieldValue, Names_EndWithAZeroByte) {
    EXPECT_EQ(Described(posField::kMethodName, "65 63 68 6F 00").lines, "0000  107 method name = \"echo\"\n");
    EXPECT_EQ(Described(posField::kMethodName, "65 63").lines,
              "0000  107 method name = \"ec\"\n"
              "problem at 0000: method name does not end with a zero byte, as names do\n");
    EXPECT_TRUE(Described(posField::kMethodName, "").result.hasProblems());
}

TEST(FieldValue, Identifiers_Have16Bytes) {
    EXPECT_EQ(Described(posField::kObject, "01").lines,
              "0000  105 object identifier = 1 byte: 01\n"
              "problem at 0000: object identifier has 1 byte, but an identifier has 16\n");
    EXPECT_FALSE(Described(posField::kExecuter, "").result.hasProblems());
    EXPECT_TRUE(Described(posField::kCommandExecuter, "").result.hasProblems());
    EXPECT_TRUE(Described(posField::kExecuter, "01").result.hasProblems());
}

TEST(FieldValue, FieldsWithNumbersInside_ShowThem) {
    EXPECT_EQ(Described(posField::kOptions, "61 04 50 04 FF").lines,
              "0000  114 options = 5 bytes: 61 04 50 04 FF \"a.P..\"\n"
              "0008    option = 1121\n"
              "000A    option = 1104\n");
    EXPECT_EQ(Described(posField::kRegistrationFlags, "01 00 00 00").lines,
              "0000  115 registration flags = 4 bytes: 01 00 00 00\n"
              "0008    flags = 1\n");
    EXPECT_EQ(Described(posField::kServerMessage, "01 00 00 00 48 69").lines,
              "0000  120 server message = 6 bytes: 01 00 00 00 48 69 \"....Hi\"\n"
              "0008    flags = 1\n"
              "000C    text = \"Hi\"\n");
    EXPECT_EQ(Described(posField::kServerMessage, "01 00").lines,
              "0000  120 server message = 2 bytes: 01 00\n");
}

}  // namespace
}  // namespace dovrel::tools
