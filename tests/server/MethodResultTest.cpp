#include "server/MethodResult.h"

#include <gtest/gtest.h>

namespace merrowd::test {
namespace {

TEST(MethodResult, ToBytes_KeepsZeroBytes) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(toBytes(text).getSize(), 3u);
    EXPECT_EQ(bytesToText(toBytes(text)), text);
    EXPECT_EQ(toBytes("").getSize(), 0u);
}

TEST(MethodResult, BytesOfNumber_HasTheLeastSignificantByteFirst) {
    EXPECT_EQ(bytesToText(numberToBytes(0x04030201)), "\x01\x02\x03\x04");
}

TEST(MethodResult, ParseNumber_ReadsTheLeastSignificantByteFirst) {
    EXPECT_EQ(parseNumber(toBytes("\x01\x02\x03\x84")), 0x84030201u);
}

TEST(MethodResult, ParseNumber_AnythingButFourBytes_IsParameterFormatAndSaysHowMany) {
    try {
        parseNumber(toBytes("12345"));
        FAIL();
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.code, 30u);
        EXPECT_EQ(refusal.text, "the argument has 5 bytes, not 4");
    }
}

TEST(MethodResult, RequireNoArgument_RefusesOneByte) {
    EXPECT_NO_THROW(requireNoArgument({}));
    EXPECT_THROW(requireNoArgument(toBytes("x")), Refusal);
}

}  // namespace
}  // namespace merrowd::test
