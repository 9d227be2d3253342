#include "server/Misbehaviour.h"

#include <gtest/gtest.h>

namespace merrowd::test {
namespace {

TEST(Misbehaviour, WithoutAFault_NeverStrikes) {
    EXPECT_FALSE(Misbehaviour().strikes(14));
}

TEST(Misbehaviour, WithAFault_StrikesAlwaysAndInEveryCommand) {
    Misbehaviour misbehaviour;
    misbehaviour.fault = Fault::late;
    for (const uint32_t command : {10u, 14u, 14u, 0u})
        EXPECT_TRUE(misbehaviour.strikes(command));
}

TEST(Misbehaviour, OfACommand_StrikesInThatOneOnly) {
    Misbehaviour misbehaviour;
    misbehaviour.fault = Fault::late;
    misbehaviour.command = 14;
    EXPECT_FALSE(misbehaviour.strikes(10));
    EXPECT_TRUE(misbehaviour.strikes(14));
}

TEST(Misbehaviour, WithSkipAndTimes_LetsSoManyPassAndStrikesSoOften) {
    Misbehaviour misbehaviour;
    misbehaviour.fault = Fault::late;
    misbehaviour.command = 14;
    misbehaviour.skip = 2;
    misbehaviour.times = 1;
    EXPECT_FALSE(misbehaviour.strikes(10)) << "another command does not count";
    EXPECT_FALSE(misbehaviour.strikes(14));
    EXPECT_FALSE(misbehaviour.strikes(14));
    EXPECT_TRUE(misbehaviour.strikes(14));
    EXPECT_FALSE(misbehaviour.strikes(14));
    EXPECT_FALSE(misbehaviour.strikes(14));
}

}  // namespace
}  // namespace merrowd::test
