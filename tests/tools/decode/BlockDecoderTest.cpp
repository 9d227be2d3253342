#include "tools/decode/BlockDecoder.h"

#include <gtest/gtest.h>

#include "tests/tools/decode/DecodedInput.h"

namespace dovrel::tools {
namespace {

TEST(BlockDecoder, BlockOfAnotherType_HasItsPartsByNumber) {
    EXPECT_EQ(DecodedInput("41 73 41 6B 00 01 00 00 00 07  00 00 00 64 00 00 00 02 61 00").text(),
              "structured block, 20 bytes: type number 7\n"
              "0000  header = structured block, type number 7\n"
              "000A  100 part = 2 bytes: 61 00 \"a.\"\n");
}

TEST(BlockDecoder, BlockWithoutTypeNumber_SaysSo) {
    EXPECT_EQ(DecodedInput("41 73 41 6B 00 00  00 00 00 64 00 00 00 00").text(),
              "structured block, 14 bytes: no type number\n"
              "0000  header = structured block, no type number\n"
              "0006  100 part = 0 bytes\n");
}

TEST(BlockDecoder, RepeatedPart_IsANoteAndNotAProblem) {
    const DecodedInput input(
        "41 73 41 6B 00 01 00 00 00 07  00 00 00 05 00 00 00 00  00 00 00 05 00 00 00 01 31");
    EXPECT_EQ(input.findings(), "note at 0012: part 5 occurs again; readers use the first one\n");
    EXPECT_FALSE(input.decoded().hasProblems());
}

TEST(BlockDecoder, BlockInAPart_HasOffsetsOfTheWholeInput) {
    EXPECT_EQ(DecodedInput("41 73 41 6B 00 01 00 00 00 07  00 00 00 01 00 00 00 0E  "
                           "41 73 41 6B 00 00  00 00 00 02 00 00 00 00")
                  .text(),
              "structured block, 32 bytes: type number 7\n"
              "0000  header = structured block, type number 7\n"
              "000A  1 part = 14 bytes: structured block, no type number\n"
              "0012    header = structured block, no type number\n"
              "0018    2 part = 0 bytes\n");
}

TEST(BlockDecoder, DamagedBlockInAPart_IsData) {
    const DecodedInput input("41 73 41 6B 00 01 00 00 00 07  00 00 00 01 00 00 00 07  41 73 41 6B 00 00 01");
    EXPECT_EQ(input.text(),
              "structured block, 25 bytes: type number 7\n"
              "0000  header = structured block, type number 7\n"
              "000A  1 part = 7 bytes: 41 73 41 6B 00 00 01 \"AsAk...\"\n");
}

TEST(BlockDecoder, DamagedBlock_ShowsThePartsBeforeAndTheRest) {
    EXPECT_EQ(
        DecodedInput("41 73 41 6B 00 01 00 00 00 07  00 00 00 01 00 00 00 01 31  00 00 00 02 00 00 00 05 32")
            .text(),
        "structured block, 28 bytes: type number 7\n"
        "0000  header = structured block, type number 7\n"
        "000A  1 part = 1 byte: 31 \"1\"\n"
        "0013  unreadable rest = 9 bytes: 00 00 00 02 00 00 00 05 32 \"........2\"\n"
        "problem at 0017: the length of part 2 is 5 bytes, but the block has only 1 byte more\n");
}

// Writes a block that contains `inner` in a part.
std::string blockAround(const std::string& inner) {
    std::string block("AsAk\0\0\0\0\0\1", 10);
    for (int shift = 24; shift >= 0; shift -= 8)
        block += static_cast<char>(inner.size() >> shift);
    return block + inner;
}

TEST(BlockDecoder, BlocksInBlocks_AreDecodedDownToADepthOf8) {
    std::string block;
    for (int i = 0; i < 12; ++i)
        block = blockAround(block);
    const Decoded decoded =
        decode({reinterpret_cast<const uint8_t*>(block.data()), static_cast<uint32_t>(block.size())},
               std::nullopt, 64);
    const std::vector<DecodedItem>* items = &decoded.items;
    int depth = 0;
    for (; !items->empty(); items = &items->back().items)
        ++depth;
    EXPECT_EQ(depth, 8);
    EXPECT_FALSE(decoded.hasProblems());
}

}  // namespace
}  // namespace dovrel::tools
