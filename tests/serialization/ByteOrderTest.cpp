#include "serialization/ByteOrder.h"

#include <gtest/gtest.h>

#include <array>

namespace dovrel {
namespace {

constexpr uint8_t kBytes[] = {0xA1, 0xB2, 0xC3, 0xD4};

TEST(ByteOrder, LoadLittleEndian_StartsWithTheLeastSignificantByte) {
    EXPECT_EQ(loadLittleEndian32(kBytes), 0xD4C3B2A1u);
    EXPECT_EQ(loadLittleEndian16(kBytes), 0xB2A1u);
}

TEST(ByteOrder, LoadBigEndian_StartsWithTheMostSignificantByte) {
    EXPECT_EQ(loadBigEndian32(kBytes), 0xA1B2C3D4u);
}

TEST(ByteOrder, Store_WritesWhatLoadReads) {
    std::array<uint8_t, 4> bytes{};
    storeLittleEndian32(bytes.data(), 0xD4C3B2A1u);
    EXPECT_EQ(bytes, (std::array<uint8_t, 4>{0xA1, 0xB2, 0xC3, 0xD4}));
    storeBigEndian32(bytes.data(), 0xD4C3B2A1u);
    EXPECT_EQ(bytes, (std::array<uint8_t, 4>{0xD4, 0xC3, 0xB2, 0xA1}));
    std::array<uint8_t, 8> eight{};
    storeBigEndian64(eight.data(), 0xD4C3B2A190807060u);
    EXPECT_EQ(eight, (std::array<uint8_t, 8>{0xD4, 0xC3, 0xB2, 0xA1, 0x90, 0x80, 0x70, 0x60}));
}

}  // namespace
}  // namespace dovrel
