#include "settings/ReplaceAll.h"

#include <gtest/gtest.h>

namespace dovrel {
namespace {

TEST(ReplaceAll, EveryOccurrence_FromLeftToRight) {
    EXPECT_EQ(replaceAll("aXbXX", "X", "--"), "a--b----");
    EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
}

TEST(ReplaceAll, WhatWasPutIn_IsNotSearchedAgain) {
    EXPECT_EQ(replaceAll("ab", "ab", "abab"), "abab");
}

TEST(ReplaceAll, NothingToReplace_IsACopy) {
    EXPECT_EQ(replaceAll("abc", "x", "y"), "abc");
    EXPECT_EQ(replaceAll("", "x", "y"), "");
}

TEST(ReplaceAll, TextOfTenMegabytesFullOfOccurrences_IsDoneInOnePass) {
    std::string text;
    for (int i = 0; i < 2'500'000; ++i)
        text += "SDNL";
    EXPECT_EQ(replaceAll(text, "SDNL", "\r"), std::string(2'500'000, '\r'));
}

}  // namespace
}  // namespace dovrel
