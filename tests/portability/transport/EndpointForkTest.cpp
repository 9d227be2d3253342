// An endpoint stays with the process that claimed it, also if that process forks.
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "EndpointTest.h"
#include "portability/transport/EndpointOwner.h"
#include "tests/support/Processes.h"

using namespace portability;

TEST_F(EndpointTest, ForkedProcess_HoldsNeitherTheLockNorTheSocket) {
    auto claim = std::make_unique<EndpointClaim>();
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, *claim), Outcome::claimed);
    const WaitingProcess child([] { return 0; });
    ASSERT_EQ(child.result(), 0);
    EXPECT_FALSE(isEndpointOwner(child.id(), kEndpointSignature));
    claim.reset();
    EXPECT_FALSE(isConnectable()) << "the child does not listen";
    EXPECT_EQ(claimAndLetGo(), Outcome::claimed);
}

TEST_F(EndpointTest, ForkedProcess_ThatWithdrawsTheClaim_LeavesTheFiles) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    EXPECT_EQ(inForkedProcess([&claim] {
                  claim.withdraw();
                  return 0;
              }),
              0);
    EXPECT_TRUE(isConnectable());
}

TEST_F(EndpointTest, ProcessesForkedAtAnyMoment_HoldNothing) {
    std::atomic<bool> stop{false};
    std::thread claiming([&stop] {
        while (!stop) {
            // Until a new child has let go of the last claim, the endpoint is in use.
            EndpointClaim claim;
            static_cast<void>(EndpointClaim::claim(kEndpointSignature, claim));
        }
    });
    std::vector<std::unique_ptr<WaitingProcess>> children;
    for (int i = 0; i < 50; ++i)
        children.push_back(std::make_unique<WaitingProcess>([] { return 0; }));
    stop = true;
    claiming.join();
    EXPECT_EQ(claimAndLetGo(), Outcome::claimed);
    for (const auto& child : children)
        EXPECT_FALSE(isEndpointOwner(child->id(), kEndpointSignature));
}
