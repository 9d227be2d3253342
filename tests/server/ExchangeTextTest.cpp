#include "server/ExchangeText.h"

#include <gtest/gtest.h>

#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

TEST(ExchangeText, OfARequest_HasALinePerFieldInItsForm) {
    EXPECT_EQ(exchangeText(callRequest(65537, padded("object"), "echo", "hello").bytes(), "> "),
              "> 103 session identifier = 65537\n"
              "> 105 object identifier = 16 bytes: 6F 62 6A 65 63 74 00 00 00 00 00 00 00 00 00 00 "
              "\"object..........\"\n"
              "> 107 method name = \"echo\"\n"
              "> 110 argument data = 5 bytes: 68 65 6C 6C 6F \"hello\"\n"
              "> 104 executer identifier = 0 bytes\n");
}

TEST(ExchangeText, OfAnAnswer_HasTheFieldsOfTheAnswer) {
    POSTransferObj answer(1, kMessageKindAnswer, 14);
    answer.writeString(111, "\x01");
    answer.writeString(120, "");
    EXPECT_EQ(exchangeText(answer.bytes(), "< "),
              "< 111 result data = 1 byte: 01\n< 120 server message = 0 bytes\n");
}

TEST(ExchangeText, OfAnException_HasTextAndCode) {
    const auto answer = RequestHandler::exceptionAnswer(14, {28, "Oh no."});
    EXPECT_EQ(exchangeText(answer->bytes(), "< "),
              "< 150 exception text = \"Oh no.\"\n< 151 exception code = 28\n");
}

TEST(ExchangeText, OfLongData_ShowsTheBeginning) {
    const std::string text =
        exchangeText(callRequest(1, padded(""), "echo", std::string(65, 'x')).bytes(), "");
    EXPECT_NE(text.find("110 argument data = 65 bytes: 78 78"), std::string::npos);
    EXPECT_NE(text.find("78 ... \"" + std::string(64, 'x') + "\"\n"), std::string::npos);
}

TEST(ExchangeText, OfBytesThatAreNoBlock_ShowsThem) {
    EXPECT_EQ(exchangeText(bytesOf("no"), "> "), "> 2 bytes: 6E 6F \"no\"\n");
    EXPECT_EQ(exchangeText({}, "> "), "> 0 bytes\n");
}

TEST(ExchangeText, OfADamagedRequest_ShowsTheFieldsThatAreThere) {
    POSTransferObj request(1, dovrel::kMessageKindRequest, 13);
    request.writeString(105, "short");
    EXPECT_EQ(exchangeText(request.bytes(), ""),
              "105 object identifier = 5 bytes: 73 68 6F 72 74 \"short\"\n");
}

TEST(ExchangeText, CommandNameOf_NamesTheCommandOrSaysThatThereIsNone) {
    EXPECT_EQ(commandNameOf(versionRequest().bytes()), "query interface version");
    EXPECT_EQ(commandNameOf(Request(99).bytes()), "unknown command");
    EXPECT_EQ(commandNameOf({}), "unknown command");
    EXPECT_EQ(commandCodeOf(versionRequest().bytes()), 17u);
    EXPECT_EQ(commandCodeOf({}), 0u);
}

}  // namespace
}  // namespace merrowd::test
