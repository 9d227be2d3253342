#include "server/RequestKey.h"

#include <gtest/gtest.h>

#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

const std::string kObject(16, 'o');

TEST(RequestKey, SessionAndObject_AreApartFromTheDigest) {
    const auto one = RequestKey::fromRequest(callRequest(1, kObject, "echo", "a").bytes());
    const auto two = RequestKey::fromRequest(callRequest(2, std::string(16, 'p'), "echo", "a").bytes());
    ASSERT_TRUE(one && two);
    EXPECT_EQ(one->command, 14u);
    EXPECT_EQ(one->session, 1u);
    EXPECT_EQ(one->object, kObject);
    EXPECT_EQ(two->session, 2u);
    EXPECT_EQ(one->digest, two->digest);
}

TEST(RequestKey, EveryOtherField_ChangesTheDigest) {
    const auto digest = [](const Request& request) {
        return RequestKey::fromRequest(request.bytes())->digest;
    };
    const std::string original = digest(callRequest(1, kObject, "echo", "ab"));
    EXPECT_NE(digest(callRequest(1, kObject, "echo", "ac")), original);
    EXPECT_NE(digest(callRequest(1, kObject, "ech", "oab")), original);
    EXPECT_NE(digest(instantiateRequest(1, "Echo")), digest(instantiateRequest(1, "Counter")));
    EXPECT_NE(digest(registerRequest("Demo")), digest(registerRequest("Other")));
    EXPECT_NE(digest(registerRequest("Demo")), digest(registerRequest("Demo", {padded("Echo")})));
}

TEST(RequestKey, EveryCommand_HasAKey) {
    for (const Request& request : oneOfEachRequest())
        EXPECT_TRUE(RequestKey::fromRequest(request.bytes()));
}

TEST(RequestKey, BytesThatAreNotARequest_HaveNoKey) {
    EXPECT_FALSE(RequestKey::fromRequest(toBytes("")));
    EXPECT_FALSE(RequestKey::fromRequest(toBytes("no block")));
    EXPECT_FALSE(RequestKey::fromRequest(Request(99).bytes()));
    EXPECT_FALSE(RequestKey::fromRequest(Request(14).number(103, 1).bytes()));
}

}  // namespace
}  // namespace merrowd::test
