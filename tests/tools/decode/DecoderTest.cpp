#include "tools/decode/Decoder.h"

#include <gtest/gtest.h>

#include "tests/support/DocumentPage.h"
#include "tests/tools/decode/DecodedInput.h"

namespace dovrel::tools {
namespace {

// The examples of docs/protocol.md in the tool's words.
class DecoderTest : public testing::Test {
  protected:
    std::string decodeExample(const std::string& name) const {
        const std::string bytes = page_.example(name);
        return toOutputText(
            decode({reinterpret_cast<const uint8_t*>(bytes.data()), static_cast<uint32_t>(bytes.size())},
                   std::nullopt, 64));
    }

    const test::DocumentPage page_{DOVREL_SOURCE_FOLDER "/docs/protocol.md"};
};

TEST_F(DecoderTest, RequestOfThePage_HasItsFieldsAtTheirOffsets) {
    EXPECT_EQ(decodeExample("call-method-request"),
              "transfer object, 116 bytes: request, call method\n"
              "0000  header = structured block, type number 9\n"
              "000A  0 transfer kind = 1\n"
              "0016  1 message kind = 10 (request)\n"
              "0022  3 command = 14 (call method)\n"
              "002E  103 session identifier = 65537\n"
              "003A  105 object identifier = 16 bytes: 01 00 01 00 01 00 00 00 00 00 00 00 00 00 00 00\n"
              "0052  107 method name = \"echo\"\n"
              "005F  110 argument data = 5 bytes: 68 65 6C 6C 6F \"hello\"\n"
              "006C  104 executer identifier = 0 bytes\n");
}

TEST_F(DecoderTest, RegistrationOfThePage_HasItsClassListDecoded) {
    EXPECT_EQ(decodeExample("register-application-request"),
              "transfer object, 139 bytes: request, register application\n"
              "0000  header = structured block, type number 9\n"
              "000A  0 transfer kind = 1\n"
              "0016  1 message kind = 10 (request)\n"
              "0022  3 command = 10 (register application)\n"
              "002E  100 application name = \"Demo\"\n"
              "003B  101 client process identity = 8 bytes: 00 00 00 00 67 12 00 00 \"....g...\"\n"
              "004B  130 class list = 46 bytes: byte array list, 1 element\n"
              "0053    header = structured block, type number 8\n"
              "005D    0 number of elements = 1\n"
              "0069    5 element 0 = 16 bytes: 45 63 68 6F 00 00 00 00 00 00 00 00 00 00 00 00 "
              "\"Echo............\"\n"
              "0081  114 options = 2 bytes: 61 04 \"a.\"\n"
              "0089    option = 1121\n");
}

TEST_F(DecoderTest, RepliesOfThePage_AreNormalOrExceptions) {
    EXPECT_EQ(decodeExample("call-method-reply-with-message"),
              "transfer object, 73 bytes: normal reply, call method\n"
              "0000  header = structured block, type number 9\n"
              "000A  0 transfer kind = 1\n"
              "0016  1 message kind = 11 (normal reply)\n"
              "0022  3 command = 14 (call method)\n"
              "002E  111 result data = 5 bytes: 68 65 6C 6C 6F \"hello\"\n"
              "003B  120 server message = 6 bytes: 01 00 00 00 48 69 \"....Hi\"\n"
              "0043    flags = 1\n"
              "0047    text = \"Hi\"\n");
    EXPECT_EQ(decodeExample("exception-reply"),
              "transfer object, 100 bytes: exception reply, delete object\n"
              "0000  header = structured block, type number 9\n"
              "000A  0 transfer kind = 1\n"
              "0016  1 message kind = 20 (exception reply)\n"
              "0022  3 command = 13 (delete object)\n"
              "002E  150 exception text = \"the application has no such object\"\n"
              "0058  151 exception code = 25 (object not found)\n");
}

TEST_F(DecoderTest, BlocksOfThePage_HaveNoFindings) {
    int count = 0;
    for (const std::string& name : page_.exampleNames()) {
        if (page_.example(name).substr(0, 4) != "AsAk") continue;
        const std::string text = decodeExample(name);
        EXPECT_EQ(text.find("problem at"), std::string::npos) << name << "\n" << text;
        EXPECT_EQ(text.find("note at"), std::string::npos) << name << "\n" << text;
        ++count;
    }
    EXPECT_GE(count, 18);  // a request and a reply of each command, and others
}

TEST(Decoder, BytesOfNoKind_AreAProblem) {
    const DecodedInput input("73 74 61 72 74 50 6F 73");
    EXPECT_EQ(input.decoded().kind, "unknown kind");
    EXPECT_TRUE(input.decoded().hasProblems());
    EXPECT_EQ(DecodedInput("").findings(), "problem at 0000: there are no bytes\n");
}

TEST(Decoder, KindThatIsGiven_ShowsTheDamage) {
    EXPECT_EQ(DecodedInput("42 73 41 6B 00 01 00 00 00 08", InputKind::kBlock).findings(),
              "problem at 0000: the byte is 42, expected 41; a structured block begins with 41 73 41 6B\n");
    EXPECT_EQ(DecodedInput("", InputKind::kBlock).findings(),
              "problem at 0000: the block ends inside its mark 41 73 41 6B\n");
}

TEST(Decoder, BlockOfAnotherTypeThanTheKind_IsAProblemAtItsTypeAndDecoded) {
    constexpr char kEmptyList[] = "41 73 41 6B 00 01 00 00 00 08 00 00 00 00 00 00 00 00";
    EXPECT_EQ(DecodedInput(kEmptyList, InputKind::kTransferObject).findings(),
              "problem at 0004: the block has type number 8, but a transfer object has 9\n");
    EXPECT_EQ(DecodedInput(kEmptyList, InputKind::kByteArrayList).findings(), "");
    EXPECT_EQ(DecodedInput(kEmptyList, InputKind::kBlock).findings(), "");
    EXPECT_EQ(DecodedInput("41 73 41 6B 00 00", InputKind::kByteArrayList).findings(),
              "problem at 0004: the block has no type number, but a byte array list has 8\n");
}

TEST(Decoder, RecordOfTheRightSize_IsATransferPack) {
    std::string digits;
    for (int i = 0; i < 608; ++i)
        digits += "00";
    EXPECT_EQ(DecodedInput(digits).decoded().kind, "transfer pack");
    EXPECT_EQ(DecodedInput(digits + "00").decoded().kind, "unknown kind");
}

TEST(Decoder, LongData_AreCutOffAtTheGivenNumberOfBytes) {
    const std::string block = "41 73 41 6B 00 00 00 00 00 01 00 00 00 03 31 32 33";
    EXPECT_NE(DecodedInput(block, std::nullopt, 2).text().find("1 part = 3 bytes: 31 32 ... \"12\"\n"),
              std::string::npos);
    EXPECT_NE(DecodedInput(block, std::nullopt, 3).text().find("1 part = 3 bytes: 31 32 33 \"123\"\n"),
              std::string::npos);
}

}  // namespace
}  // namespace dovrel::tools
