#include "server/Answer.h"

#include <gtest/gtest.h>

namespace merrowd::test {
namespace {

TEST(Answer, BytesOf_KeepsZeroBytes) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(bytesOf(text).getSize(), 3u);
    EXPECT_EQ(bytesToText(bytesOf(text)), text);
    EXPECT_EQ(bytesOf("").getSize(), 0u);
}

TEST(Answer, BytesOfNumber_HasTheLeastSignificantByteFirst) {
    EXPECT_EQ(bytesToText(bytesOfNumber(0x04030201)), "\x01\x02\x03\x04");
}

TEST(Answer, NumberOf_ReadsTheLeastSignificantByteFirst) {
    EXPECT_EQ(numberOf(bytesOf("\x01\x02\x03\x84")), 0x84030201u);
}

TEST(Answer, NumberOf_AnythingButFourBytes_IsParameterFormatAndSaysHowMany) {
    try {
        numberOf(bytesOf("12345"));
        FAIL();
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.code, 30u);
        EXPECT_EQ(refusal.text, "the argument has 5 bytes, not 4");
    }
}

TEST(Answer, RequireNoArgument_RefusesOneByte) {
    EXPECT_NO_THROW(requireNoArgument({}));
    EXPECT_THROW(requireNoArgument(bytesOf("x")), Refusal);
}

}  // namespace
}  // namespace merrowd::test
