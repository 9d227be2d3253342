#include "serialization/BorrowedByteArray.h"

#include <gtest/gtest.h>

#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

TEST(BorrowedByteArray, Bytes_AreThoseOfTheOwnerAndAreNotFreed) {
    const uint8_t bytes[] = {1, 2, 3};
    BorrowedByteArray borrowed;
    EXPECT_EQ(borrowed.array().getSize(), 0u);
    borrowed.borrow(bytes, sizeof bytes);
    EXPECT_EQ(borrowed.array().data(), bytes);
    const CPPByteArray copy(borrowed.array());
    EXPECT_EQ(test::toHex(copy), "01 02 03");
    borrowed.borrow(nullptr, 0);
    EXPECT_EQ(borrowed.array().getSize(), 0u);
}

}  // namespace
}  // namespace dovrel
