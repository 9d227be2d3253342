#include "macho/format/ExportTrie.h"

#include <gtest/gtest.h>

namespace dovrel::macho {
namespace {

std::map<std::string, uint64_t> exported(const std::vector<uint8_t>& trie) {
    return exportedSymbols(ByteReader(trie.data(), trie.size()));
}

// "_a" is at 0x1000, "_ab" at 0x20.
const std::vector<uint8_t> kTwo = {0, 1, '_', 'a', 0, 6, 3, 0, 0x80, 0x20, 1, 'b', 0, 14, 2, 0, 0x20, 0};

TEST(ExportTrie, Symbols_AreTheWaysToTheirNodes) {
    EXPECT_EQ(exported(kTwo), (std::map<std::string, uint64_t>{{"_a", 0x1000}, {"_ab", 0x20}}));
}

TEST(ExportTrie, NoBytes_ContainNoSymbols) {
    EXPECT_TRUE(exported({}).empty());
}

TEST(ExportTrie, ALoop_IsRefused) {
    EXPECT_THROW(exported({0, 1, 'a', 0, 0}), FormatError);
}

TEST(ExportTrie, ASymbolThatIsHandedOn_IsRefused) {
    EXPECT_THROW(exported({2, 8, 0, 0}), FormatError);
}

TEST(ExportTrie, WhatLeavesTheBytes_IsRefused) {
    EXPECT_THROW(exported({0, 1, 'a', 0, 9}), FormatError);
    EXPECT_THROW(exported({0x7F, 0}), FormatError);
    for (size_t size = 1; size < kTwo.size(); ++size)
        EXPECT_THROW(exported({kTwo.begin(), kTwo.begin() + static_cast<long>(size)}), FormatError) << size;
}

}  // namespace
}  // namespace dovrel::macho
