#include "serialization/PartTable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>

namespace dovrel {
namespace {

TEST(PartTable, Empty_FindsNothing) {
    PartTable table;
    EXPECT_EQ(table.find(0), nullptr);
    table.finish();
    EXPECT_EQ(table.find(0xFFFFFFFF), nullptr);
}

TEST(PartTable, FewEntriesInAnyOrder_AreFound) {
    PartTable table;
    for (uint32_t tag : {7u, 3u, 0xFFFFFFFFu, 0u, 5u}) {
        table.add(tag, tag + 1, 2);
    }
    table.finish();
    for (uint32_t tag : {7u, 3u, 0xFFFFFFFFu, 0u, 5u}) {
        ASSERT_NE(table.find(tag), nullptr) << tag;
        EXPECT_EQ(table.find(tag)->offset, tag + 1);
        EXPECT_EQ(table.find(tag)->length, 2u);
    }
    for (uint32_t tag : {1u, 4u, 6u, 8u, 0xFFFFFFFEu}) {
        EXPECT_EQ(table.find(tag), nullptr) << tag;
    }
}

// Uses sizes around the number of entries that the table holds without the heap, and much larger ones.
// Compares the table with std::map, whose insert also keeps the first entry of a key.
TEST(PartTable, AnyNumberOfEntriesWithRepeatedTags_TheFirstOfEachWins) {
    for (uint32_t count : {1u, 15u, 16u, 17u, 18u, 33u, 1000u, 20000u}) {
        SCOPED_TRACE(count);
        PartTable table;
        std::map<uint32_t, uint32_t> expected;
        uint32_t random = count;
        for (uint32_t i = 0; i < count; ++i) {
            random = random * 1664525 + 1013904223;
            const uint32_t tag = (random >> 8) % (count + count / 2 + 1);
            table.add(tag, i, 1);
            expected.emplace(tag, i);
        }
        table.finish();
        for (uint32_t tag = 0; tag < count * 2; ++tag) {
            const PartTable::Entry* entry = table.find(tag);
            ASSERT_EQ(entry != nullptr, expected.count(tag) == 1) << tag;
            if (entry != nullptr) {
                ASSERT_EQ(entry->offset, expected[tag]) << tag;
            }
        }
    }
}

TEST(PartTable, AddingAfterFinish_KeepsTheOlderEntries) {
    for (uint32_t count : {4u, 16u, 40u}) {
        SCOPED_TRACE(count);
        PartTable table;
        for (uint32_t tag = count; tag > 0; --tag) {
            table.add(tag, tag, 1);
        }
        table.finish();
        for (uint32_t tag = 2 * count; tag > 0; --tag) {
            table.add(tag, tag + 1000, 1);
        }
        table.finish();
        for (uint32_t tag = 1; tag <= 2 * count; ++tag) {
            ASSERT_NE(table.find(tag), nullptr);
            EXPECT_EQ(table.find(tag)->offset, tag <= count ? tag : tag + 1000);
        }
    }
}

}  // namespace
}  // namespace dovrel
