#include "platform/random/StdLibRandom.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace dovrel {
namespace {

std::vector<uint32_t> drawRand(unsigned seed, int count) {
    std::srand(seed);
    std::vector<uint32_t> values;
    for (int i = 0; i < count; ++i)
        values.push_back(static_cast<uint32_t>(std::rand()));
    return values;
}

TEST(StdLibRandom, NextBit_CallsRandOnceEveryFifteenBits) {
    const std::vector<uint32_t> values = drawRand(5, 4);
    StdLibRandom random;
    random.seed(5);
    for (size_t value = 0; value < 3; ++value) {
        for (uint32_t bit = 0; bit < 15; ++bit) {
            EXPECT_EQ(random.nextBit(), values[value] >> bit & 1u) << value << ' ' << bit;
        }
    }
    EXPECT_EQ(static_cast<uint32_t>(std::rand()), values[3]) << "three calls for 45 bits";
}

TEST(StdLibRandom, Next32_JoinsThreeValuesFifteenBitsApart) {
    const std::vector<uint32_t> values = drawRand(77, 7);
    StdLibRandom random;
    random.seed(77);
    EXPECT_EQ(random.next32(), values[0] | values[1] << 15 | values[2] << 30);
    EXPECT_EQ(random.next32(), values[3] | values[4] << 15 | values[5] << 30);
    EXPECT_EQ(static_cast<uint32_t>(std::rand()), values[6]);
}

TEST(StdLibRandom, Next32_BetweenBits_LeavesTheKeptValueUnchanged) {
    const std::vector<uint32_t> values = drawRand(3, 5);
    StdLibRandom random;
    random.seed(3);
    EXPECT_EQ(random.nextBit(), values[0] & 1u);
    random.next32();
    for (uint32_t bit = 1; bit < 15; ++bit)
        EXPECT_EQ(random.nextBit(), values[0] >> bit & 1u);
    EXPECT_EQ(random.nextBit(), values[4] & 1u);
}

TEST(StdLibRandom, Seed_WithOneValueTwice_ReturnsTheSameDrawsAgain) {
    StdLibRandom random;
    random.seed(1234567890);
    const uint32_t first = random.next32();
    random.seed(1234567890);
    EXPECT_EQ(random.next32(), first);
}

}  // namespace
}  // namespace dovrel
