// A server that runs, but never replies to a handshake. The clock is fast: the ten handshakes take a second.
#include <gtest/gtest.h>

#include <chrono>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "tests/InterProcessCommunication/InstalledServer.h"
#include "tests/support/FastClock.h"
#include "tests/support/UserTexts.h"

namespace dovrel {
namespace {

TEST(SilentServer, ConnectToServer_GivesUpAfterTheTenthHandshakeWithTheLaunchFailureBlockAnd43) {
    test::InstalledServer server;
    server.install();
    ASSERT_EQ(Client_to_POS_Communicator().ConnectToServer(), 0);
    server.setBehaviour("handshake=silent\n");
    testing::internal::CaptureStdout();
    {
        const test::FastClock clock(50);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(Client_to_POS_Communicator().ConnectToServer(), 43);
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(50));
    }
    const std::string console = testing::internal::GetCapturedStdout();
    EXPECT_EQ(server.processes().size(), 1u);
    EXPECT_EQ(console, test::launchFailureBlock("-1712"));
}

}  // namespace
}  // namespace dovrel
