#include "platform/random/RandomSource.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/random/MD5Random.h"
#include "platform/time/Clock.h"

namespace dovrel {
namespace {

class RandomSource : public testing::Test {
  protected:
    void TearDown() override {
        setTimeSource(nullptr);
        selectRandomSource(true);
    }
};

TEST_F(RandomSource, First_IsTheMD5Source) {
    MD5Random expected;
    expected.seed(42);
    seedRandom(42);
    EXPECT_EQ(nextRandom32(), expected.next32());
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(nextRandomBit(), expected.nextBit());
}

// Checks that the first bits that a process draws are those of the first digest.
void drawFirstBits() {
    MD5Random expected;
    expected.seed(7);
    seedRandom(7);
    for (int i = 0; i < 130; ++i) {
        if (nextRandomBit() != expected.nextBit()) std::exit(1);
    }
    std::exit(0);
}

TEST_F(RandomSource, FirstBit_OfTheProcess_ProducesANewPool) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a new process without any draw
    EXPECT_EXIT(drawFirstBits(), testing::ExitedWithCode(0), "");
}

bool drawsAtExit = false;

void drawLate() {
    if (!drawsAtExit) return;
    for (const bool useMD5 : {true, false}) {
        selectRandomSource(useMD5);
        seedRandom(7);
        nextRandomBit();
        nextRandom32();
    }
    std::_Exit(0);
}

// Runs before the library's objects are constructed, so that the handler runs after they are destroyed.
[[gnu::constructor(101)]] void registerDrawLate() {
    std::atexit(drawLate);
}

[[noreturn]] void exitAndDraw() {
    drawsAtExit = true;
    std::exit(1);
}

TEST_F(RandomSource, ExitHandlerThatIsOlderThanTheLibrary_StillDraws) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(exitAndDraw(), testing::ExitedWithCode(0), "");
}

TEST_F(RandomSource, SelectWithFalse_DrawsFromRand) {
    std::srand(9);
    const auto first = static_cast<uint32_t>(std::rand());
    const auto second = static_cast<uint32_t>(std::rand());
    const auto third = static_cast<uint32_t>(std::rand());
    selectRandomSource(false);
    seedRandom(9);
    EXPECT_EQ(nextRandom32(), first | second << 15 | third << 30);
}

TEST_F(RandomSource, Select_KeepsTheStateOfEachSource) {
    MD5Random expected;
    expected.seed(42);
    seedRandom(42);
    EXPECT_EQ(nextRandom32(), expected.next32());
    selectRandomSource(false);
    seedRandom(1);
    nextRandom32();
    selectRandomSource(true);
    EXPECT_EQ(nextRandom32(), expected.next32());
}

TEST_F(RandomSource, SeedFromTime_SeedsWithTheSecondsCutTo32Bits) {
    setTimeSource([] { return std::time_t{1789012345}; });
    seedFromTime();
    MD5Random expected;
    expected.seed(1789012345);
    EXPECT_EQ(nextRandom32(), expected.next32());
}

}  // namespace
}  // namespace dovrel
