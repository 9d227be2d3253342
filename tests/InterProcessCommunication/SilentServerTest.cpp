// A server that is installed and launched, but never replies. The test waits for all ten handshakes (50 s).
#include <gtest/gtest.h>

#include <chrono>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "tests/InterProcessCommunication/InstalledServer.h"
#include "tests/InterProcessCommunication/UserTexts.h"

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
    EXPECT_EQ(console, test::launchFailureBlock("-1712"));
}

}  // namespace
}  // namespace dovrel
