#include "tools/decode/FieldNames.h"

#include <gtest/gtest.h>

#include "tests/tools/decode/DecodedInput.h"

namespace dovrel::tools {
namespace {

constexpr char kRequest[] = "00 00 00 01 00 00 00 04 0A 00 00 00 ";
constexpr char kNormalReply[] = "00 00 00 01 00 00 00 04 0B 00 00 00 ";
constexpr char kException[] = "00 00 00 01 00 00 00 04 14 00 00 00 ";

// Returns the bytes of a transfer object: the message kind, the command and further fields.
std::string object(const char* kind, const char* command, const std::string& fields = "") {
    return std::string(kObjectStart) + kind + "00 00 00 03 00 00 00 04 " + command + " 00 00 00 " + fields;
}

TEST(FieldNames, FieldWithTwoMeanings_HasThatOfTheCommand) {
    const std::string field = "00 00 00 6E 00 00 00 00";
    EXPECT_NE(DecodedInput(object(kRequest, "0E", field)).text().find("002E  110 argument data = 0 bytes"),
              std::string::npos);
    EXPECT_NE(DecodedInput(object(kRequest, "0F", field)).text().find("002E  110 command data = 0 bytes"),
              std::string::npos);
}

TEST(FieldNames, MissingFieldsOfARequest_AreProblemsAtTheEnd) {
    const DecodedInput input(object(kRequest, "0D"));
    EXPECT_EQ(input.findings(),
              "problem at 002E: field 103 (session identifier) is missing\n"
              "problem at 002E: field 105 (object identifier) is missing\n");
    EXPECT_EQ(input.decoded().summary, "request, delete object");
}

TEST(FieldNames, MissingFieldsOfAReply_AreProblemsIfReadersUseThem) {
    EXPECT_EQ(DecodedInput(object(kNormalReply, "0F")).findings(),
              "problem at 002E: field 111 (result data) is missing\n");
    EXPECT_EQ(DecodedInput(object(kException, "0F")).findings(),
              "problem at 002E: field 150 (exception text) is missing\n"
              "problem at 002E: field 151 (exception code) is missing\n");
}

TEST(FieldNames, MissingHeaderFields_AreProblemsInARequestAndNotesInAReply) {
    const std::string header = "41 73 41 6B 00 01 00 00 00 09 ";
    EXPECT_EQ(DecodedInput(header + kRequest).findings(),
              "problem at 0016: field 0 (transfer kind) is missing\n"
              "problem at 0016: field 3 (command) is missing\n");
    EXPECT_EQ(DecodedInput(header + kNormalReply).findings(),
              "note at 0016: field 0 (transfer kind) is missing; readers ignore it in a reply\n"
              "note at 0016: field 3 (command) is missing; readers ignore it in a reply\n");
    EXPECT_EQ(DecodedInput(kObjectStart).findings(),
              "problem at 0016: field 1 (message kind) is missing\n"
              "note at 0016: field 3 (command) is missing; readers ignore it in a reply\n");
}

TEST(FieldNames, UnknownCommand_IsAProblemInARequestOnly) {
    const DecodedInput request(object(kRequest, "63"));
    EXPECT_EQ(request.decoded().summary, "request, unknown command 99");
    EXPECT_EQ(request.findings(), "problem at 0022: no command has the code 99\n");
    EXPECT_EQ(DecodedInput(object(kNormalReply, "63")).findings(), "");
}

TEST(FieldNames, FieldOfAnotherCommand_IsNamedAndANote) {
    const DecodedInput input(
        object(kRequest, "11", "00 00 00 76 00 00 00 04 07 00 00 00 00 00 03 E7 00 00 00 00"));
    EXPECT_EQ(input.findings(),
              "note at 002E: field 118 is not a field of this request\n"
              "note at 003A: field 999 is not a field of this request\n");
    EXPECT_NE(input.text().find("002E  118 interface version = 7\n003A  999 part = 0 bytes\n"),
              std::string::npos);
}

TEST(FieldNames, ReservedField_IsANote) {
    EXPECT_EQ(DecodedInput(object(kRequest, "11", "00 00 00 02 00 00 00 00")).findings(),
              "note at 002E: field 2 is reserved and is never written\n"
              "note at 002E: reserved has 0 bytes; readers add zero bytes to make 4\n");
}

TEST(FieldNames, ClassList_IsDecodedAndItsElementsMustBeIdentifiers) {
    const std::string block =
        "41 73 41 6B 00 01 00 00 00 08 00 00 00 00 00 00 00 04 01 00 00 00 "
        "00 00 00 05 00 00 00 01 41";
    const DecodedInput input(object(kNormalReply, "0B", "00 00 00 82 00 00 00 1F " + block));
    EXPECT_NE(input.text().find("002E  130 class list = 31 bytes: byte array list, 1 element\n"
                                "0036    header = structured block, type number 8\n"
                                "0040    0 number of elements = 1\n"
                                "004C    5 element 0 = 1 byte: 41 \"A\"\n"),
              std::string::npos);
    EXPECT_NE(input.findings().find(
                  "problem at 004C: element 0 of the class list has 1 byte, but an identifier has 16\n"),
              std::string::npos);
}

TEST(FieldNames, ClassListThatIsNotAList_IsAProblemWithItsOffset) {
    const DecodedInput damaged(object(kNormalReply, "0B", "00 00 00 82 00 00 00 02 41 74"));
    EXPECT_NE(damaged.findings().find("problem at 0037: the byte is 74, expected 73"), std::string::npos);
    const DecodedInput other(object(kNormalReply, "0B", "00 00 00 82 00 00 00 06 41 73 41 6B 00 00"));
    EXPECT_NE(other.findings().find("problem at 002E: the class list is not a byte array list"),
              std::string::npos);
}

}  // namespace
}  // namespace dovrel::tools
