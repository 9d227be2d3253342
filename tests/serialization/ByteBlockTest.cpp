#include "serialization/ByteBlock.h"

#include <gtest/gtest.h>

namespace dovrel {
namespace {

TEST(ByteBlock, ThatIsTooSmall_IsNotReusable) {
    EXPECT_FALSE(isReusable(0, 1));
    EXPECT_FALSE(isReusable(99, 100));
    EXPECT_TRUE(isReusable(100, 100));
}

TEST(ByteBlock, WithUnusedBytes_IsReusableUpTo512OrAnEighth) {
    EXPECT_TRUE(isReusable(512 + 8, 8));
    EXPECT_FALSE(isReusable(513 + 8, 8));
    EXPECT_TRUE(isReusable(9000, 8000));
    EXPECT_FALSE(isReusable(9001, 8000));
    EXPECT_TRUE(isReusable(0xFFFFFFFF, 0xF0000000));
    EXPECT_FALSE(isReusable(0xFFFFFFFF, 0xE0000000));
}

}  // namespace
}  // namespace dovrel
