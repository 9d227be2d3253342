#include "platform/SystemException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using testing::StrEq;

TEST(SystemException, FromAnErrorCode_SaysSystemErrorAndTheCode) {
    const SystemException failure(-43);
    EXPECT_THAT(failure.getMessage(), StrEq("System error: -43"));
    EXPECT_THAT(failure.getDetail(), StrEq("???"));
    EXPECT_EQ(failure.getCode(), 0);
    EXPECT_EQ(failure.getErrorCode(), -43);
}

TEST(SystemException, FromALocationAndAnErrorCode_HasBoth) {
    const SystemException failure("somewhere", 2147483647);
    EXPECT_THAT(failure.getMessage(), StrEq("System error: 2147483647"));
    EXPECT_THAT(failure.getDetail(), StrEq("somewhere"));
    EXPECT_EQ(failure.getCode(), 0);
    EXPECT_EQ(failure.getErrorCode(), 2147483647);
}

TEST(SystemException, FromALocationAMessageAndACode_HasErrorCodeZero) {
    const SystemException failure("somewhere", " Can not", 0x100000000);
    EXPECT_THAT(failure.getMessage(), StrEq(" Can not"));
    EXPECT_THAT(failure.getDetail(), StrEq("somewhere"));
    EXPECT_EQ(failure.getCode(), 0x100000000);
    EXPECT_EQ(failure.getErrorCode(), 0);
}

TEST(SystemException, SetErrorCode_ReplacesTheMessageAndNothingElse) {
    SystemException failure("somewhere", "before", 7);
    failure.setErrorCode(-2147483647 - 1);
    EXPECT_THAT(failure.getMessage(), StrEq("System error: -2147483648"));
    EXPECT_THAT(failure.getDetail(), StrEq("somewhere"));
    EXPECT_EQ(failure.getCode(), 7);
    EXPECT_EQ(failure.getErrorCode(), -2147483647 - 1);
}

TEST(SystemException, TypeCode_ThroughTheRootOfTheFamily_Is44) {
    const SystemException failure(1);
    const CPPException& root = failure;
    EXPECT_EQ(root.getTypeCode(), 44u);
}

TEST(SystemException, ThrownByPointer_IsCaughtAsTheRootOfTheFamily) {
    const auto failure = test::failureOf<CPPException>([] { throw new SystemException(5); });
    ASSERT_NE(failure, nullptr);
    EXPECT_THAT(failure->getMessage(), StrEq("System error: 5"));
}

TEST(SystemException, Copy_AlsoHasTheErrorCode) {
    const SystemException original("somewhere", -36);
    const SystemException copy(original);
    EXPECT_EQ(copy.getErrorCode(), -36);
    EXPECT_THAT(copy.getMessage(), StrEq("System error: -36"));
    EXPECT_THAT(copy.getDetail(), StrEq("somewhere"));
}

}  // namespace
}  // namespace dovrel
