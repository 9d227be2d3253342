#include <gtest/gtest.h>

#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

TEST(Counter, Add_ReturnsTheSumLittleEndian) {
    TestObject counter("Counter");
    EXPECT_EQ(counter.call("add", std::string("\x02\x00\x00\x00", 4)), std::string("\x02\x00\x00\x00", 4));
    EXPECT_EQ(counter.call("add", std::string("\xFF\x01\x00\x00", 4)), std::string("\x01\x02\x00\x00", 4));
}

TEST(Counter, Value_ReturnsTheSumAndKeepsIt) {
    TestObject counter("Counter");
    EXPECT_EQ(counter.call("value"), littleEndian(0));
    counter.call("add", littleEndian(7));
    EXPECT_EQ(counter.call("value"), littleEndian(7));
    EXPECT_EQ(counter.call("value"), littleEndian(7));
}

TEST(Counter, Reset_ReturnsNothingAndStartsAtZero) {
    TestObject counter("Counter");
    counter.call("add", littleEndian(7));
    EXPECT_EQ(counter.call("reset"), "");
    EXPECT_EQ(counter.call("value"), littleEndian(0));
}

TEST(Counter, Add_UpToTheGreatestSum_IsFineAndBeyondItIsRefusedWithoutAdding) {
    TestObject counter("Counter");
    counter.call("add", littleEndian(0xFFFFFFFE));
    EXPECT_EQ(counter.call("add", littleEndian(1)), littleEndian(0xFFFFFFFF));
    EXPECT_EQ(counter.callRefused("add", littleEndian(1)), 28u);
    EXPECT_EQ(counter.call("value"), littleEndian(0xFFFFFFFF));
}

TEST(Counter, Add_OfAnythingButFourBytes_IsParameterFormat) {
    TestObject counter("Counter");
    for (const size_t size : {0u, 1u, 3u, 5u, 8u})
        EXPECT_EQ(counter.callRefused("add", std::string(size, '\1')), 30u);
    EXPECT_EQ(counter.call("value"), littleEndian(0));
}

TEST(Counter, ValueAndReset_WithAnArgument_AreParameterFormat) {
    TestObject counter("Counter");
    EXPECT_EQ(counter.callRefused("value", "x"), 30u);
    EXPECT_EQ(counter.callRefused("reset", "x"), 30u);
}

}  // namespace
}  // namespace merrowd::test
