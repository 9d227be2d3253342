#include "Percentiles.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace dovrel::benchmarks {

namespace {

// The last one first.
std::vector<double> numbersDownFrom(int last) {
    std::vector<double> numbers(static_cast<size_t>(last));
    std::iota(numbers.rbegin(), numbers.rend(), 1);
    return numbers;
}

TEST(PercentilesTest, Median_OddNumberOfValues_IsTheOneInTheMiddle) {
    EXPECT_EQ(median({9, 1, 5}), 5);
    EXPECT_EQ(median({7}), 7);
}

TEST(PercentilesTest, Median_EvenNumberOfValues_IsTheMeanOfTheTwoInTheMiddle) {
    EXPECT_EQ(median({9, 1, 4, 6}), 5);
}

TEST(PercentilesTest, Percentile99_FewerThanAHundredValues_IsTheLargest) {
    EXPECT_EQ(percentile99({3, 8, 5}), 8);
    EXPECT_EQ(percentile99(numbersDownFrom(99)), 99);
}

TEST(PercentilesTest, Percentile99_ManyValues_IsTheSmallestThatNinetyNineInAHundredDoNotExceed) {
    EXPECT_EQ(percentile99(numbersDownFrom(100)), 99);
    EXPECT_EQ(percentile99(numbersDownFrom(101)), 100);
    EXPECT_EQ(percentile99(numbersDownFrom(1000)), 990);
}

TEST(PercentilesTest, NoValues_GiveZero) {
    EXPECT_EQ(median({}), 0);
    EXPECT_EQ(percentile99({}), 0);
}

}  // namespace

}  // namespace dovrel::benchmarks
