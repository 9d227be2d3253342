#include "InterProcessCommunication/ConsoleBlocks.h"

#include <gtest/gtest.h>

namespace dovrel {
namespace {

TEST(ConsoleBlocks, ServerNotFound_IsExactlyThisText) {
    testing::internal::CaptureStdout();
    printServerNotFound();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              " \n"
              "============================================= \n"
              " Tessilor Runtime Error! \n"
              " Could not find Merrowd server application! \n"
              " Please download and install \n"
              " the latest version of \n"
              " the Tessilor Runtime software\n"
              " from http://www.tessilor.example/download \n"
              "============================================= \n"
              " \n");
}

TEST(ConsoleBlocks, LaunchFailure_IsExactlyThisTextWithTheError) {
    testing::internal::CaptureStdout();
    printLaunchFailure(-1712);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              " \n"
              "=============================================== \n"
              "  -- Tessilor Runtime Error -- \n"
              " Could not launch Merrowd server application! \n"
              "\n"
              "error: -1712\n"
              "\n"
              " In case this problem persists, you might want \n"
              " to try one of the following before contacting \n"
              " your software vendor's support department: \n"
              "\n"
              " - Manually quit the \"Merrowd\" process \n"
              " - Restart your computer \n"
              " - Download and install the latest version of \n"
              "   the Tessilor Runtime software\n"
              "   from http://www.tessilor.example/download \n"
              "=============================================== \n"
              " \n");
}

}  // namespace
}  // namespace dovrel
