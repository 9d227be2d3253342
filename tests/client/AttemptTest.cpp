#include "client/Attempt.h"

#include <gtest/gtest.h>

#include <new>

#include "client/exceptions/POSException.h"

namespace dovrel {
namespace {

TEST(Attempt, WorkThatReturns_GivesWhatItReturned) {
    const Attempt yes = attempt([] { return true; });
    const Attempt no = attempt([] { return false; });
    EXPECT_TRUE(yes.succeeded);
    EXPECT_FALSE(yes.threw);
    EXPECT_FALSE(no.succeeded);
    EXPECT_FALSE(no.threw);
}

TEST(Attempt, ExceptionOfTheFamily_IsTakenOver) {
    const Attempt result = attempt([]() -> bool { throw new POSMethodExecutionException("broken"); });
    EXPECT_FALSE(result.succeeded);
    EXPECT_TRUE(result.threw);
    ASSERT_NE(result.failure, nullptr);
    EXPECT_EQ(result.failure->getTypeCode(), 28u);
    EXPECT_STREQ(result.failure->getMessage(), "broken");
}

TEST(Attempt, AnythingElseThrown_LeavesNoObject) {
    const Attempt memory = attempt([]() -> bool { throw std::bad_alloc(); });
    const Attempt number = attempt([]() -> bool { throw 5; });
    const Attempt text = attempt([]() -> bool { throw "text"; });
    for (const Attempt* result : {&memory, &number, &text}) {
        EXPECT_FALSE(result->succeeded);
        EXPECT_TRUE(result->threw);
        EXPECT_EQ(result->failure, nullptr);
    }
}

}  // namespace
}  // namespace dovrel
