#include "client/exceptions/POSException.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <type_traits>

#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

// The numbers are shared with the server. They are repeated here on purpose.
template <class Exception>
void expectServerFailure(uint32_t typeCode) {
    SCOPED_TRACE(typeCode);
    const std::unique_ptr<CPPException> failure(new Exception("from the server"));
    EXPECT_EQ(failure->getTypeCode(), typeCode);
    EXPECT_STREQ(failure->getMessage(), "from the server");
    EXPECT_STREQ(failure->getDetail(), "???");
    EXPECT_EQ(failure->getCode(), 0);
    EXPECT_EQ(Exception("with a code", 9).getCode(), 9);
    static_assert(std::is_base_of_v<CPPException, Exception>);
    static_assert(sizeof(Exception) == sizeof(CPPException), "adds nothing but its type code");
}

TEST(POSException, TypeCodesOfTheFamily_AreThoseSharedWithTheServer) {
    expectServerFailure<POSException>(23);
    expectServerFailure<POSClassNotFoundException>(24);
    expectServerFailure<POSObjectNotFoundException>(25);
    expectServerFailure<POSObjectInstantiationException>(26);
    expectServerFailure<POSMethodNotFoundException>(27);
    expectServerFailure<POSMethodExecutionException>(28);
    expectServerFailure<POSParameterFormatException>(30);
    expectServerFailure<POSRegistrationException>(32);
    expectServerFailure<POSClassPackageNotProcessedException>(33);
    expectServerFailure<POSApplicationNotRegisteredException>(34);
    expectServerFailure<POSLibraryNotFoundException>(36);
    expectServerFailure<POSClassPackageNotFoundException>(43);
    expectServerFailure<POSExecuterReturnedErrorCodeException>(145);
    expectServerFailure<POSCommandNotExecutedException>(146);
}

TEST(POSException, Subclass_IsCaughtAsPOSExceptionAndAsCPPException) {
    try {
        throw new POSRegistrationException("refused");
    } catch (POSException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        EXPECT_EQ(failure->getTypeCode(), 32u);
    }
    try {
        throw new POSRegistrationException("refused");
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        EXPECT_EQ(failure->getTypeCode(), 32u);
    }
}

TEST(POSException, VirtualOperations_AreThoseOfTheRoot) {
    EXPECT_EQ(test::VirtualSlots<POSException>::count(), 3u);
    EXPECT_EQ(test::VirtualSlots<POSCommandNotExecutedException>::count(), 3u);
}

template <class Exception>
bool makes(uint32_t code) {
    const std::unique_ptr<CPPException> failure(newPOSExceptionForCode(code, "text"));
    return dynamic_cast<Exception*>(failure.get()) != nullptr;
}

TEST(POSException, NewForCode_Listed_IsTheClassThatBelongsToIt) {
    EXPECT_TRUE(makes<POSException>(23));
    EXPECT_TRUE(makes<POSClassNotFoundException>(24));
    EXPECT_TRUE(makes<POSObjectNotFoundException>(25));
    EXPECT_TRUE(makes<POSObjectInstantiationException>(26));
    EXPECT_TRUE(makes<POSMethodNotFoundException>(27));
    EXPECT_TRUE(makes<POSMethodExecutionException>(28));
    EXPECT_TRUE(makes<POSParameterFormatException>(30));
    EXPECT_TRUE(makes<POSRegistrationException>(32));
    EXPECT_TRUE(makes<POSClassPackageNotProcessedException>(33));
    EXPECT_TRUE(makes<POSApplicationNotRegisteredException>(34));
    EXPECT_TRUE(makes<POSClassPackageNotFoundException>(43));
    EXPECT_TRUE(makes<POSExecuterReturnedErrorCodeException>(145));
    EXPECT_TRUE(makes<POSCommandNotExecutedException>(146));
}

TEST(POSException, NewForCode_EveryOther_IsNull) {
    const std::set<uint32_t> listed = {23, 24, 25, 26, 27, 28, 30, 32, 33, 34, 43, 145, 146};
    for (uint32_t code = 0; code < 300; ++code) {
        const std::unique_ptr<CPPException> failure(newPOSExceptionForCode(code, "text"));
        EXPECT_EQ(failure != nullptr, listed.count(code) == 1) << code;
        if (failure) {
            EXPECT_EQ(failure->getTypeCode(), code);
        }
    }
    EXPECT_EQ(newPOSExceptionForCode(0xFFFFFFFF, "text"), nullptr);
    EXPECT_EQ(newPOSExceptionForCode(0x80000018, "text"), nullptr);
}

TEST(POSException, NewForCode_LibraryNotFound36_IsNeverMade) {
    EXPECT_EQ(newPOSExceptionForCode(36, "text"), nullptr);
}

TEST(POSException, NewForCode_0And3_AreLeftToTheCheckOfTheReply) {
    EXPECT_EQ(newPOSExceptionForCode(0, "text"), nullptr);
    EXPECT_EQ(newPOSExceptionForCode(3, "text"), nullptr);
}

TEST(POSException, NewForCode_HasTheMessageAndCodeZero) {
    const std::unique_ptr<CPPException> failure(newPOSExceptionForCode(145, "executer says 7"));
    EXPECT_STREQ(failure->getMessage(), "executer says 7");
    EXPECT_STREQ(failure->getDetail(), "???");
    EXPECT_EQ(failure->getCode(), 0);
}

TEST(POSException, NewForCode_NullMessage_IsAnExceptionWithoutOne) {
    const std::unique_ptr<CPPException> failure(newPOSExceptionForCode(24, nullptr));
    EXPECT_EQ(failure->getMessage(), nullptr);
}

}  // namespace
}  // namespace dovrel
