#include "client/OperationResult.h"

#include <gtest/gtest.h>

#include <new>

#include "client/exceptions/POSException.h"

namespace dovrel {
namespace {

TEST(OperationResult, OperationThatReturns_HasItsOutcomeAndNoFailure) {
    for (const POSOutcome outcome : {POSOutcome::kDone, POSOutcome::kUnlistedError}) {
        const OperationResult result = runCatching([outcome] { return outcome; });
        EXPECT_EQ(result.outcome, outcome);
        EXPECT_EQ(result.failure, nullptr);
    }
}

TEST(OperationResult, ExceptionOfTheFamily_IsOwnedByTheResult) {
    const OperationResult result =
        runCatching([]() -> POSOutcome { throw new POSMethodExecutionException("broken"); });
    EXPECT_FALSE(result.outcome.has_value());
    ASSERT_NE(result.failure, nullptr);
    EXPECT_EQ(result.failure->getTypeCode(), 28u);
    EXPECT_STREQ(result.failure->getMessage(), "broken");
}

TEST(OperationResult, AnythingElseThrown_LeavesNoObject) {
    const OperationResult memory = runCatching([]() -> POSOutcome { throw std::bad_alloc(); });
    const OperationResult number = runCatching([]() -> POSOutcome { throw 5; });
    const OperationResult text = runCatching([]() -> POSOutcome { throw "text"; });
    for (const OperationResult* result : {&memory, &number, &text}) {
        EXPECT_FALSE(result->outcome.has_value());
        EXPECT_EQ(result->failure, nullptr);
    }
}

TEST(OperationResult, IgnoringFailures_ReturnsWhetherTheWorkThrew) {
    int runs = 0;
    EXPECT_TRUE(ignoringFailures([&runs] { ++runs; }));
    EXPECT_FALSE(ignoringFailures([] { throw new CPPException("broken"); }));
    EXPECT_FALSE(ignoringFailures([] { throw std::bad_alloc(); }));
    EXPECT_FALSE(ignoringFailures([] { throw 5; }));
    EXPECT_EQ(runs, 1);
}

}  // namespace
}  // namespace dovrel
