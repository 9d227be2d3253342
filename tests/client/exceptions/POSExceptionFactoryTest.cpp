#include "client/exceptions/POSExceptionFactory.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

namespace dovrel {
namespace {

template <class Exception>
bool makes(uint32_t code) {
    const std::unique_ptr<CPPException> failure(newPOSExceptionForCode(code, "text"));
    return dynamic_cast<Exception*>(failure.get()) != nullptr;
}

TEST(POSExceptionFactory, ListedCode_MakesTheClassThatBelongsToIt) {
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

TEST(POSExceptionFactory, EveryOtherCode_MakesNothing) {
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

TEST(POSExceptionFactory, Code36_LibraryNotFound_IsNeverMadeFromAnAnswer) {
    EXPECT_EQ(newPOSExceptionForCode(36, "text"), nullptr);
}

TEST(POSExceptionFactory, Codes0And3_AreLeftToTheCheckOfTheAnswer) {
    EXPECT_EQ(newPOSExceptionForCode(0, "text"), nullptr);
    EXPECT_EQ(newPOSExceptionForCode(3, "text"), nullptr);
}

TEST(POSExceptionFactory, Made_CarriesTheMessageAndCodeZero) {
    const std::unique_ptr<CPPException> failure(newPOSExceptionForCode(145, "executer says 7"));
    EXPECT_STREQ(failure->getMessage(), "executer says 7");
    EXPECT_STREQ(failure->getDetail(), "???");
    EXPECT_EQ(failure->getCode(), 0);
}

TEST(POSExceptionFactory, NullMessage_MakesAnExceptionWithoutOne) {
    const std::unique_ptr<CPPException> failure(newPOSExceptionForCode(24, nullptr));
    EXPECT_EQ(failure->getMessage(), nullptr);
}

}  // namespace
}  // namespace dovrel
