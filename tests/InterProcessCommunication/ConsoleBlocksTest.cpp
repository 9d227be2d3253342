#include "InterProcessCommunication/ConsoleBlocks.h"

#include <gtest/gtest.h>

#include "tests/support/UserTexts.h"

namespace dovrel {
namespace {

TEST(ConsoleBlocks, ServerNotFound_IsExactlyThisText) {
    testing::internal::CaptureStdout();
    printServerNotFound();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), test::kNotFoundBlock);
}

TEST(ConsoleBlocks, LaunchFailure_IsExactlyThisTextWithTheError) {
    testing::internal::CaptureStdout();
    printLaunchFailure(-1712);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), test::launchFailureBlock("-1712"));
}

}  // namespace
}  // namespace dovrel
