#include "portability/transport/EndpointOwner.h"

#include <gtest/gtest.h>

#include <utility>

#include "EndpointTest.h"

using namespace portability;

TEST_F(EndpointTest, Owner_IsTheProcessThatHasTheEndpoint) {
    WaitingProcess owner([] {
        static EndpointClaim claim;
        return EndpointClaim::claim(kEndpointSignature, claim) == Outcome::claimed ? 0 : 1;
    });
    ASSERT_EQ(owner.result(), 0);
    EXPECT_TRUE(isEndpointOwner(owner.id(), kEndpointSignature));
    EXPECT_FALSE(isEndpointOwner(owner.id(), 'OTHR'));
    EXPECT_FALSE(isEndpointOwner(getpid(), kEndpointSignature));
}

TEST_F(EndpointTest, Owner_ThatHasWithdrawnItsFiles_HasNoEndpoint) {
    EndpointClaim claim;
    ASSERT_EQ(EndpointClaim::claim(kEndpointSignature, claim), Outcome::claimed);
    EXPECT_TRUE(isEndpointOwner(getpid(), kEndpointSignature));
    claim.withdraw();
    EXPECT_FALSE(isEndpointOwner(getpid(), kEndpointSignature));
}

TEST_F(EndpointTest, Owner_OfAnEndpointThatNobodyClaimed_IsNobody) {
    EXPECT_FALSE(isEndpointOwner(getpid(), kEndpointSignature));
    EXPECT_FALSE(isEndpointOwner(-1, kEndpointSignature));
}
