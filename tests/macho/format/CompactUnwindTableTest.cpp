#include "macho/format/CompactUnwindTable.h"

#include <gtest/gtest.h>

#include "macho/format/DwarfBytes.h"

namespace dovrel::macho {
namespace {

// A table with one encoding for all pages, one personality, one page of each kind and one table of handlers.
std::vector<uint8_t> table() {
    DwarfBytes bytes;
    for (const uint32_t word : {1u, 28u, 1u, 32u, 1u, 36u, 3u})  // header
        bytes.put(word);
    bytes.put<uint32_t>(0x01000000);  // the encoding of all pages
    bytes.put<uint32_t>(0x2000);      // the position of the personality's address
    for (const uint32_t word : {0x100u, 80u, 72u, 0x200u, 100u, 80u, 0x300u, 0u, 80u})  // index
        bytes.put(word);
    bytes.put<uint32_t>(0x110);  // handlers of that function
    bytes.put<uint32_t>(0x3000);
    bytes.put<uint32_t>(3);  // compressed page
    for (const uint16_t half : {uint16_t{12}, uint16_t{1}, uint16_t{16}, uint16_t{1}})
        bytes.put(half);
    bytes.put<uint32_t>(0x00000000);
    bytes.put<uint32_t>(0x02000000);  // the page's own encoding
    bytes.put<uint32_t>(2);           // regular page
    for (const uint16_t half : {uint16_t{8}, uint16_t{2}})
        bytes.put(half);
    for (const uint32_t word : {0x200u, 0x01010000u, 0x280u, 0u})
        bytes.put(word);
    return bytes.take();
}

std::vector<CompactUnwindEntry> entries(const std::vector<uint8_t>& bytes) {
    return compactUnwindEntries(ByteReader(bytes.data(), bytes.size()));
}

void set(std::vector<uint8_t>& bytes, size_t position, uint32_t word) {
    std::memcpy(&bytes[position], &word, sizeof word);
}

TEST(CompactUnwindTable, EachFunction_EndsWhereTheNextBegins) {
    const std::vector<CompactUnwindEntry> all = entries(table());
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[0].begin, 0x100u);
    EXPECT_EQ(all[0].end, 0x200u);
    EXPECT_EQ(all[0].encoding, 0x01000000u);
    EXPECT_EQ(all[1].end, 0x280u);
    EXPECT_EQ(all[1].encoding, 0x01010000u);
    EXPECT_EQ(all[2].end, 0x300u);
    EXPECT_EQ(all[2].encoding, 0u);
}

TEST(CompactUnwindTable, AnEncodingOfThePage_ComesAfterThoseOfAll) {
    std::vector<uint8_t> bytes = table();
    set(bytes, 92, 0x01000000);  // the second encoding, distance 0
    EXPECT_EQ(entries(bytes)[0].encoding, 0x02000000u);
}

TEST(CompactUnwindTable, PersonalityAndHandlers_AreThoseOfTheFunction) {
    std::vector<uint8_t> bytes = table();
    set(bytes, 28, 0x51000000);
    set(bytes, 72, 0x100);
    const CompactUnwindEntry entry = entries(bytes)[0];
    EXPECT_EQ(entry.personality, 0x2000u);
    EXPECT_EQ(entry.handlers, 0x3000u);
}

TEST(CompactUnwindTable, HandlersThatAreMissing_AreRefused) {
    std::vector<uint8_t> bytes = table();
    set(bytes, 28, 0x51000000);
    EXPECT_THROW(entries(bytes), FormatError);
    set(bytes, 28, 0x21000000);
    EXPECT_THROW(entries(bytes), FormatError) << "a second personality";
}

TEST(CompactUnwindTable, WhatIsUnknownOrOutOfOrder_IsRefused) {
    for (const auto& [position, word] :
         {std::pair<size_t, uint32_t>{0, 2}, {80, 4}, {40, 5000}, {108, 0x400}}) {
        std::vector<uint8_t> bytes = table();
        set(bytes, position, word);
        EXPECT_THROW(entries(bytes), FormatError) << position;
    }
}

TEST(CompactUnwindTable, ATableThatEndsAnywhere_IsRefused) {
    const std::vector<uint8_t> whole = table();
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_THROW(entries({whole.begin(), whole.begin() + static_cast<long>(size)}), FormatError) << size;
}

}  // namespace
}  // namespace dovrel::macho
