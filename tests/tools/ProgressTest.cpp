#include "tools/calls/Progress.h"

#include <gtest/gtest.h>

// The line on a terminal is tested in calls_test.py.
namespace dovrel::tools {
namespace {

TEST(Progress, SizeText_UsesTheLargestUnitThatFits) {
    EXPECT_EQ(sizeText(0), "0 bytes");
    EXPECT_EQ(sizeText(1023), "1023 bytes");
    EXPECT_EQ(sizeText(1024), "1.0 KiB");
    EXPECT_EQ(sizeText(1.5 * 1024 * 1024), "1.5 MiB");
    EXPECT_EQ(sizeText(4096.0 * 1024 * 1024 * 1024), "4096.0 GiB");
}

}  // namespace
}  // namespace dovrel::tools
