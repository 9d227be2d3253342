#include "macho/imports/ErrorNumber.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace dovrel::macho {
namespace {

TEST(ErrorNumber, NumbersThatBothSystemsShare_StayAsTheyAre) {
    EXPECT_EQ(platformErrorNumber(ENOENT), 2);
    EXPECT_EQ(platformErrorNumber(ENOMEM), 12);
    EXPECT_EQ(platformErrorNumber(ERANGE), 34);
}

TEST(ErrorNumber, NumbersThatDiffer_BecomeThoseOfMacOS) {
    EXPECT_EQ(platformErrorNumber(EDEADLK), 11);
    EXPECT_EQ(platformErrorNumber(EAGAIN), 35);
    EXPECT_EQ(platformErrorNumber(ETIMEDOUT), 60);
    EXPECT_EQ(platformErrorNumber(ENAMETOOLONG), 63);
    EXPECT_EQ(platformErrorNumber(EILSEQ), 92);
}

TEST(ErrorNumber, AFailedCall_IsSeenUntilTheNextOneFails) {
    errno = EAGAIN;
    EXPECT_EQ(*errorNumber(), 35);
    EXPECT_EQ(*errorNumber(), 35);
    errno = ENOENT;
    EXPECT_EQ(*errorNumber(), 2);
}

TEST(ErrorNumber, ClearedByTheBundle_StaysClearedUntilACallFails) {
    errno = EAGAIN;
    *errorNumber() = 0;
    EXPECT_EQ(*errorNumber(), 0);
    errno = EAGAIN;
    EXPECT_EQ(*errorNumber(), 35);
}

}  // namespace
}  // namespace dovrel::macho
