// A server that is installed and launched, but never answers: the fifty seconds of ten handshakes, in full.
#include <gtest/gtest.h>

#include <chrono>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "tests/InterProcessCommunication/InstalledServer.h"

namespace dovrel {
namespace {

TEST(SilentServer, ConnectToServer_GivesUpAfterTheTenthHandshakeWithTheLaunchFailureBlockAnd43) {
    test::InstalledServer server;
    server.install("wake=silent\n");
    const auto start = std::chrono::steady_clock::now();
    testing::internal::CaptureStdout();
    EXPECT_EQ(Client_to_POS_Communicator().ConnectToServer(), 43);
    const std::string console = testing::internal::GetCapturedStdout();
    const double taken = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    EXPECT_GE(taken, 50.0);
    EXPECT_EQ(server.processes().size(), 1u);
    EXPECT_EQ(console,
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
