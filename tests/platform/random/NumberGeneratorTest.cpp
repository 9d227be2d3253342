#include "platform/random/NumberGenerator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>
#include <vector>

#include "platform/time/Clock.h"

namespace dovrel {
namespace {

// Returns the generator's words after the seeding of 1998.
std::vector<uint32_t> seedWords(uint32_t seed) {
    std::vector<uint32_t> words{seed};
    while (words.size() < 624)
        words.push_back(words.back() * 69069);
    return words;
}

// A direct implementation of the recurrence and the tempering, one word at a time, for comparison.
class PlainTwister {
  public:
    explicit PlainTwister(uint32_t seed) : words_(seedWords(seed)) {}

    uint32_t next() {
        const size_t n = words_.size() - 624;
        const uint32_t y = (words_[n] & 0x80000000) | (words_[n + 1] & 0x7FFFFFFF);
        uint32_t x = words_[n + 397] ^ (y >> 1);
        if (y % 2 == 1) x ^= 0x9908B0DF;
        words_.push_back(x);
        x ^= x >> 11;
        x ^= (x << 7) & 0x9D2C5680;
        x ^= (x << 15) & 0xEFC60000;
        return x ^ (x >> 18);
    }

  private:
    std::vector<uint32_t> words_;
};

// Sets the state of the standard library's engine, whose own seeding is different, to these words.
class SeedWords {
  public:
    using result_type = uint32_t;
    explicit SeedWords(uint32_t seed) : words_(seedWords(seed)) {}

    template <class Iterator>
    void generate(Iterator first, Iterator last) {
        ASSERT_EQ(last - first, 624);
        std::copy(words_.begin(), words_.end(), first);
    }

  private:
    std::vector<uint32_t> words_;
};

// Checks that the first draws of a process are those of the seed 4357.
void drawFirstNumbers() {
    // The first outputs that were published with the generator of 1998.
    for (const uint32_t expected : {3510405877u, 4290933890u, 2191955339u, 564929546u, 152112058u,
                                    4262624192u, 2687398418u, 268830360u, 1763988213u, 578848526u}) {
        if (NumberGenerator::next() != expected) std::exit(1);
    }
    std::exit(0);
}

TEST(NumberGenerator, UsedBeforeAnySeeding_SeedsItselfWith4357) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a new process without any seeding
    EXPECT_EXIT(drawFirstNumbers(), testing::ExitedWithCode(0), "");
}

TEST(NumberGenerator, SeededWith4357_ReturnsTheOutputsOfThePlainRecurrence) {
    for (const uint32_t seed : {4357u, 1u, 0xFFFFFFFFu, 0u}) {
        NumberGenerator::seed(seed);
        PlainTwister plain(seed);
        for (int i = 0; i < 3000; ++i)
            ASSERT_EQ(NumberGenerator::next(), plain.next()) << seed << ' ' << i;
    }
}

TEST(NumberGenerator, SeededWith4357_ReturnsTheOutputsOfTheStandardEngineInTheSameState) {
    for (const uint32_t seed : {4357u, 12345u}) {
        SeedWords words(seed);
        std::mt19937 engine(words);
        NumberGenerator::seed(seed);
        for (int i = 0; i < 3000; ++i)
            ASSERT_EQ(NumberGenerator::next(), engine()) << seed << ' ' << i;
    }
}

TEST(NumberGenerator, Seed_WithOneValueTwice_StartsAgain) {
    NumberGenerator::seed(5);
    const uint32_t first = NumberGenerator::next();
    NumberGenerator::next();
    NumberGenerator::seed(5);
    EXPECT_EQ(NumberGenerator::next(), first);
}

TEST(NumberGenerator, NextNumber_NeverLeavesItsRange) {
    NumberGenerator::seed(4357);
    PlainTwister plain(4357);
    for (int i = 0; i < 200000; ++i) {
        const uint32_t number = NumberGenerator::nextNumber();
        ASSERT_GE(number, 1000u);
        ASSERT_LE(number, 100998u);
        ASSERT_EQ(number, plain.next() % 99999 + 1000);
    }
}

TEST(NumberGenerator, ConstructorSeed_AddsTheRemainderOfTimeAndWord) {
    EXPECT_EQ(NumberGenerator::constructorSeed(7, 99998, 0), 7u + 99998u + 120u);
    EXPECT_EQ(NumberGenerator::constructorSeed(7, 99990, 9), 7u + 0u + 120u);
    EXPECT_EQ(NumberGenerator::constructorSeed(7, 99990, 19), 7u + 10u + 120u);
}

TEST(NumberGenerator, ConstructorSeed_WithALargeWord_TakesASignedRemainder) {
    // As a signed number the word is -5: 3 - 5 = -2.
    EXPECT_EQ(NumberGenerator::constructorSeed(0, 3, 0xFFFFFFFFFFFFFFFB), 118u);
    // The sum wraps to -2^63, and 2^63 is 90782 more than a multiple of 99999.
    EXPECT_EQ(NumberGenerator::constructorSeed(200000, 1, 0x7FFFFFFFFFFFFFFF), 200000u - 90782u + 120u);
}

TEST(NumberGenerator, ConstructorSeed_IsCutTo32BitsAndNeverZero) {
    EXPECT_EQ(NumberGenerator::constructorSeed(0xFFFFFFFF, 0, 0), 119u);
    EXPECT_EQ(NumberGenerator::constructorSeed(0xFFFFFF88, 0, 0), 45678u);
    EXPECT_EQ(NumberGenerator::constructorSeed(0xFFFFFF88, 99999, 0), 45678u);
}

TEST(NumberGenerator, Construction_ReseedsTheOneSharedState) {
    setTimeSource([] { return std::time_t{1789012345}; });
    std::set<uint32_t> firsts;
    for (int i = 0; i < 20; ++i) {
        NumberGenerator::seed(5);
        const NumberGenerator generator(17);
        firsts.insert(generator.next());
    }
    setTimeSource(nullptr);
    EXPECT_GT(firsts.size(), 1u) << "the arbitrary word varies within one second";
    NumberGenerator::seed(5);
    EXPECT_EQ(firsts.count(NumberGenerator::next()), 0u) << "17 + 120 or more is never the seed 5";
}

}  // namespace
}  // namespace dovrel
