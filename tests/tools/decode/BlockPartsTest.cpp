#include "tools/decode/BlockParts.h"

#include <gtest/gtest.h>

#include "tests/support/library/Bytes.h"

namespace dovrel::tools {
namespace {

// Keeps the bytes as long as the parts, which refer to them.
class BlockPartsTest : public testing::Test {
  protected:
    const BlockParts& list(std::string_view digits) {
        bytes_.assign(test::arrayFromHex(digits));
        return parts_ = listBlockParts({bytes_.data(), bytes_.getSize()});
    }

    // Returns the offset and the reason of the damage.
    std::string damage(std::string_view digits) {
        const BlockParts& parts = list(digits);
        if (!parts.damage) return "none";
        return std::to_string(parts.damage->offset) + ": " + parts.damage->reason;
    }

    CPPByteArray bytes_;
    BlockParts parts_;
};

TEST_F(BlockPartsTest, HeaderAlone_IsABlockWithoutParts) {
    EXPECT_EQ(list("41 73 41 6B 00 01 00 00 01 08").typeNumber, 264u);
    EXPECT_EQ(parts_.headerLength, 10u);
    EXPECT_EQ(parts_.readableLength, 10u);
    EXPECT_TRUE(parts_.parts.empty());
    EXPECT_FALSE(parts_.damage);
}

TEST_F(BlockPartsTest, BlockWithoutTypeNumber_HasItsPartsAtOffset6) {
    EXPECT_EQ(list("41 73 41 6B 00 00 00 00 00 05 00 00 00 01 FF").typeNumber, std::nullopt);
    EXPECT_EQ(parts_.headerLength, 6u);
    ASSERT_EQ(parts_.parts.size(), 1u);
    EXPECT_EQ(parts_.parts[0].tag, 5u);
    EXPECT_EQ(parts_.parts[0].offset, 6u);
    EXPECT_EQ(parts_.parts[0].data.length, 1u);
    EXPECT_EQ(*parts_.parts[0].data.data, 0xFF);
}

TEST_F(BlockPartsTest, RepeatedAndEmptyParts_AreListedInTheirOrder) {
    list(
        "41 73 41 6B 00 01 00 00 00 01  00 00 00 07 00 00 00 00  00 00 00 02 00 00 00 01 AA  00 00 00 07 00 "
        "00 00 00");
    ASSERT_EQ(parts_.parts.size(), 3u);
    EXPECT_EQ(parts_.parts[0].offset, 10u);
    EXPECT_EQ(parts_.parts[1].offset, 18u);
    EXPECT_EQ(parts_.parts[2].offset, 27u);
    EXPECT_EQ(parts_.parts[2].tag, 7u);
}

TEST_F(BlockPartsTest, WrongMark_IsDamageAtItsFirstWrongByte) {
    EXPECT_EQ(damage("41 73 42 6B 00 01"),
              "2: the byte is 42, expected 41; a structured block begins with 41 73 41 6B");
    EXPECT_EQ(damage("41 73"), "2: the block ends inside its mark 41 73 41 6B");
    EXPECT_EQ(damage(""), "0: the block ends inside its mark 41 73 41 6B");
    EXPECT_EQ(parts_.headerLength, 0u);
}

TEST_F(BlockPartsTest, WrongFormatBytes_AreDamageAtOffset4) {
    EXPECT_EQ(damage("41 73 41 6B 00 02 00 00 00 08"),
              "4: the format bytes are 00 02, expected 00 00 or 00 01");
    EXPECT_EQ(damage("41 73 41 6B 01 01 00 00 00 08"),
              "4: the format bytes are 01 01, expected 00 00 or 00 01");
    EXPECT_EQ(damage("41 73 41 6B 00"), "5: the block ends inside its two format bytes");
    EXPECT_EQ(damage("41 73 41 6B 00 01 00 00"), "8: the block ends inside its type number");
}

TEST_F(BlockPartsTest, CutOffPartHeader_IsDamageAtTheHeader) {
    EXPECT_EQ(damage("41 73 41 6B 00 01 00 00 00 08 00 00 00"),
              "10: the header of a part has 8 bytes, but the block has only 3 bytes more");
}

TEST_F(BlockPartsTest, LengthBeyondTheBlock_IsDamageAtTheLength) {
    EXPECT_EQ(damage("41 73 41 6B 00 01 00 00 00 08  00 00 00 01 00 00 00 00  00 00 00 6B 00 00 00 05 65"),
              "22: the length of part 107 is 5 bytes, but the block has only 1 byte more");
    EXPECT_EQ(parts_.parts.size(), 1u);
    EXPECT_EQ(parts_.readableLength, 18u);
    EXPECT_EQ(damage("41 73 41 6B 00 01 00 00 00 08  00 00 00 01 FF FF FF FF"),
              "14: the length of part 1 is 4294967295 bytes, but the block has only 0 bytes more");
}

}  // namespace
}  // namespace dovrel::tools
