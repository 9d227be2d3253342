#include "client/exceptions/CPPException.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

TEST(CPPException, Default_HasNoMessageTheDetailQuestionMarksAndCodeZero) {
    const CPPException failure;
    EXPECT_EQ(failure.getMessage(), nullptr);
    EXPECT_STREQ(failure.getDetail(), "???");
    EXPECT_EQ(failure.getCode(), 0);
    EXPECT_EQ(failure.getTypeCode(), 0u);
}

TEST(CPPException, FromMessageAndCode_CopiesTheMessageAndKeepsTheDetail) {
    char text[] = "no server";
    const CPPException failure(text, -5);
    text[0] = 'X';
    EXPECT_STREQ(failure.getMessage(), "no server");
    EXPECT_STREQ(failure.getDetail(), "???");
    EXPECT_EQ(failure.getCode(), -5);
}

TEST(CPPException, FromMessageAlone_HasCodeZero) {
    EXPECT_EQ(CPPException("no server").getCode(), 0);
}

TEST(CPPException, FromEmptyOrNullMessage_HasNone) {
    EXPECT_EQ(CPPException("", 1).getMessage(), nullptr);
    EXPECT_EQ(CPPException(nullptr, 1).getMessage(), nullptr);
}

TEST(CPPException, Code_Holds64Bits) {
    CPPException failure("far", INT64_MIN);
    EXPECT_EQ(failure.getCode(), INT64_MIN);
    failure.setCode(INT64_MAX);
    EXPECT_EQ(failure.getCode(), INT64_MAX);
}

TEST(CPPException, SetMessage_Replaces) {
    CPPException failure("first");
    failure.setMessage("second");
    EXPECT_STREQ(failure.getMessage(), "second");
}

TEST(CPPException, SetMessageAndDetail_OfNullChangeNothing) {
    CPPException failure("first");
    failure.setDetail("place");
    failure.setMessage(nullptr);
    failure.setDetail(nullptr);
    EXPECT_STREQ(failure.getMessage(), "first");
    EXPECT_STREQ(failure.getDetail(), "place");
}

TEST(CPPException, SetMessageAndDetail_OfEmptyTextLeaveNull) {
    CPPException failure("first");
    failure.setMessage("");
    failure.setDetail("");
    EXPECT_EQ(failure.getMessage(), nullptr);
    EXPECT_EQ(failure.getDetail(), nullptr);
}

TEST(CPPException, SetMessage_OfItsOwnMessage_KeepsIt) {
    CPPException failure("itself");
    failure.setMessage(failure.getMessage());
    EXPECT_STREQ(failure.getMessage(), "itself");
}

TEST(CPPException, Copy_HasItsOwnTextsAndTheCode) {
    auto original = std::make_unique<CPPException>("message", 77);
    original->setDetail("detail");
    const CPPException copy(*original);
    original.reset();
    EXPECT_STREQ(copy.getMessage(), "message");
    EXPECT_STREQ(copy.getDetail(), "detail");
    EXPECT_EQ(copy.getCode(), 77);
}

TEST(CPPException, Copy_OfAnExceptionWithoutTexts_HasNone) {
    CPPException original;
    original.setDetail("");
    const CPPException copy(original);
    EXPECT_EQ(copy.getMessage(), nullptr);
    EXPECT_EQ(copy.getDetail(), nullptr);
}

TEST(CPPException, Assignment_CopiesEverything) {
    CPPException original("message", 77);
    original.setDetail("detail");
    CPPException target("other", 1);
    target = original;
    original.setMessage("changed");
    EXPECT_STREQ(target.getMessage(), "message");
    EXPECT_STREQ(target.getDetail(), "detail");
    EXPECT_EQ(target.getCode(), 77);
}

TEST(CPPException, Assignment_OfItself_ChangesNothing) {
    CPPException failure("message", 77);
    const CPPException& same = failure;
    failure = same;
    EXPECT_STREQ(failure.getMessage(), "message");
    EXPECT_EQ(failure.getCode(), 77);
}

TEST(CPPException, ThrownByPointer_IsOwnedByTheCatcher) {
    try {
        throw new CPPException("thrown", 3);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        EXPECT_STREQ(failure->getMessage(), "thrown");
        return;
    }
    FAIL() << "not caught";
}

TEST(CPPException, VirtualOperations_AreTheDestructorsAndTheTypeCode) {
    EXPECT_EQ(test::virtualSlot(&CPPException::getTypeCode), 2u);
    EXPECT_EQ(test::VirtualSlots<CPPException>::count(), 3u);
}

}  // namespace
}  // namespace dovrel
