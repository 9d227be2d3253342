#include "client/exceptions/ExceptionTypeNames.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "client/exceptions/POSException.h"

namespace dovrel {
namespace {

TEST(ExceptionTypeNames, EveryClass_HasAMeaningOfItsOwn) {
    std::set<std::string> names;
    for (const uint32_t code :
         {0, 2, 3, 4, 5, 23, 24, 25, 26, 27, 28, 30, 32, 33, 34, 36, 43, 44, 145, 146}) {
        ASSERT_NE(exceptionTypeName(code), nullptr) << code;
        EXPECT_TRUE(names.insert(exceptionTypeName(code)).second) << code;
    }
}

TEST(ExceptionTypeNames, NumbersWithoutAClass_HaveNone) {
    for (const uint32_t code : {1u, 6u, 22u, 29u, 31u, 35u, 37u, 42u, 45u, 144u, 147u, 0xFFFFFFFFu})
        EXPECT_EQ(exceptionTypeName(code), nullptr) << code;
}

TEST(ExceptionTypeNames, ErrorCodesThatBecomeAClass_AndNumber36_HaveTheMeaningOfTheType) {
    for (uint32_t code = 4; code < 300; ++code) {
        const std::unique_ptr<CPPException> failure(newPOSExceptionForCode(code, ""));
        const char* const name = serverErrorName(code);
        if (failure || code == 36)
            EXPECT_STREQ(name, exceptionTypeName(code)) << code;
        else
            EXPECT_EQ(name, nullptr) << code;
    }
}

TEST(ExceptionTypeNames, NumberWithTwoMeanings_IsReadByItsKind) {
    EXPECT_STREQ(exceptionTypeName(3), "missing field");
    EXPECT_STREQ(serverErrorName(3), "unknown interface, format or command");
    EXPECT_EQ(serverErrorName(2), nullptr);
    EXPECT_STREQ(serverErrorName(0), "no code of its own");
}

}  // namespace
}  // namespace dovrel
