#include "InterProcessCommunication/POSCommands.h"

#include <gtest/gtest.h>

namespace dovrel {
namespace {

// The tables and numbers of docs/protocol.md are compared with the code by the server's tests, and the tests of
// the trader state the bytes of each request. Only the rest is here.
TEST(POSCommands, ReservedHeaderField_HasNumber2) {
    EXPECT_EQ(posField::kReserved, 2u);
}

TEST(POSCommands, Find_ReturnsTheRowOfACodeAndNullForAnyOther) {
    for (uint32_t code = 10; code <= 17; ++code) {
        ASSERT_NE(findPOSCommand(code), nullptr) << code;
        EXPECT_EQ(findPOSCommand(code)->code, code);
    }
    for (const uint32_t code : {0u, 9u, 18u, 0xFFFFFFFFu})
        EXPECT_EQ(findPOSCommand(code), nullptr) << code;
}

}  // namespace
}  // namespace dovrel
