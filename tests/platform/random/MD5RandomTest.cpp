#include "platform/random/MD5Random.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dovrel {
namespace {

std::vector<uint32_t> drawWords(BaseRandom& random, int count) {
    std::vector<uint32_t> words;
    for (int i = 0; i < count; ++i)
        words.push_back(random.next32());
    return words;
}

// Returns the 128 bits of a pool in the order in which they must be drawn.
std::string toBits(const std::vector<uint8_t>& pool) {
    std::string bits;
    for (const uint8_t byte : pool) {
        for (int bit = 0; bit < 8; ++bit)
            bits += (byte >> bit & 1) != 0 ? '1' : '0';
    }
    return bits;
}

std::string drawBits(BaseRandom& random, int count) {
    std::string bits;
    for (int i = 0; i < count; ++i)
        bits += static_cast<char>('0' + random.nextBit());
    return bits;
}

// The pools after seeding with 1, computed with another implementation of MD5: the digest of the seeded pool,
// and the digest of the seeded pool followed by the first digest.
const std::vector<uint8_t> kFirstPool = {0x0a, 0x66, 0xa1, 0x66, 0xd4, 0xca, 0x78, 0x0c,
                                         0xd3, 0x5f, 0xfb, 0x16, 0x96, 0x4a, 0x1a, 0x12};
const std::vector<uint8_t> kSecondPool = {0x1b, 0xf3, 0x76, 0xfc, 0xfe, 0xb1, 0x35, 0xca,
                                          0xfd, 0xce, 0xf5, 0x06, 0x0a, 0x72, 0x51, 0xcb};

TEST(MD5Random, Next32_AfterSeeding_ReturnsTheFirstBytesOfTheDigestChain) {
    // Computed with another implementation of MD5.
    MD5Random random;
    random.seed(0);
    EXPECT_EQ(drawWords(random, 6), (std::vector<uint32_t>{0xe6b0eae9, 0x9a2a0b80, 0xbc70a351, 0xee2ecf70,
                                                           0x4333b7ab, 0xe9fe111c}));
    random.seed(0x12345678);
    EXPECT_EQ(drawWords(random, 6), (std::vector<uint32_t>{0xd4e5bfcf, 0xf5b4f393, 0xd3750a7c, 0x01a28617,
                                                           0xdff77ff2, 0x50148ce2}));
}

TEST(MD5Random, Seed_WithOneValueTwice_ReturnsTheSameDrawsAgain) {
    MD5Random random;
    random.seed(99);
    const std::vector<uint32_t> first = drawWords(random, 10);
    random.seed(98);
    EXPECT_NE(drawWords(random, 10), first);
    random.seed(99);
    EXPECT_EQ(drawWords(random, 10), first);
}

TEST(MD5Random, NextBit_FirstOfAFreshSource_ProducesANewPool) {
    MD5Random random;
    random.seed(1);
    EXPECT_EQ(drawBits(random, 128), toBits(kFirstPool)) << "not the bits of the seeded pool";
}

TEST(MD5Random, NextBit_After128Bits_GoesOnWithANewPool) {
    MD5Random random;
    random.seed(1);
    drawBits(random, 128);
    EXPECT_EQ(drawBits(random, 128), toBits(kSecondPool));
}

TEST(MD5Random, NextBit_AfterNext32_IsBit32OfTheSamePool) {
    MD5Random random;
    random.seed(1);
    EXPECT_EQ(random.next32(), 0x66a1660au);
    EXPECT_EQ(drawBits(random, 96), toBits(kFirstPool).substr(32));
    EXPECT_EQ(drawBits(random, 128), toBits(kSecondPool));
}

TEST(MD5Random, Next32_BetweenBits_TakesANewPool) {
    MD5Random random;
    random.seed(1);
    drawBits(random, 5);
    EXPECT_EQ(random.next32(), 0xfc76f31bu);
    EXPECT_EQ(drawBits(random, 96), toBits(kSecondPool).substr(32));
}

TEST(MD5Random, Seed_BetweenBits_LeavesTheBitIndexAsItIs) {
    MD5Random random;
    random.seed(1);
    random.next32();
    random.seed(0x01020304);
    // Bits 32 to 127 of the seeded pool, whose bytes from the fourth on are 0xA5.
    EXPECT_EQ(drawBits(random, 96), toBits(std::vector<uint8_t>(12, 0xA5)));
}

}  // namespace
}  // namespace dovrel
