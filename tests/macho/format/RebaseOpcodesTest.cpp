#include "macho/format/RebaseOpcodes.h"

#include <gtest/gtest.h>

#include "tests/macho/format/FileBuilder.h"

namespace dovrel::macho {
namespace {

std::vector<uint64_t> rebased(std::vector<uint8_t> code) {
    FileBuilder builder;
    builder.rebases = std::move(code);
    return rebasedWords(builder.file());
}

using Words = std::vector<uint64_t>;

TEST(RebaseOpcodes, EachInstruction_MovesAsItSays) {
    EXPECT_EQ(rebased({0x11, 0x20, 0x10, 0x52, 0x00}), (Words{0x1010, 0x1018}));
    EXPECT_EQ(rebased({0x20, 0x00, 0x30, 0x20, 0x51}), (Words{0x1020}));
    EXPECT_EQ(rebased({0x20, 0x00, 0x42, 0x51}), (Words{0x1010}));
    EXPECT_EQ(rebased({0x20, 0x00, 0x60, 0x02}), (Words{0x1000, 0x1008}));
    EXPECT_EQ(rebased({0x20, 0x00, 0x70, 0x08, 0x51}), (Words{0x1000, 0x1010}));
    EXPECT_EQ(rebased({0x20, 0x00, 0x80, 0x02, 0x10}), (Words{0x1000, 0x1018}));
}

TEST(RebaseOpcodes, NothingAfterTheEnd_IsRead) {
    EXPECT_EQ(rebased({0x20, 0x00, 0x51, 0x00, 0xF0}), (Words{0x1000}));
}

TEST(RebaseOpcodes, PlacesOutsideTheSegment_AreRefused) {
    EXPECT_THROW(rebased({0x51}), FormatError);
    EXPECT_THROW(rebased({0x21, 0x00, 0x51}), FormatError);
    EXPECT_THROW(rebased({0x20, 0xF9, 0x01, 0x51}), FormatError);
    EXPECT_EQ(rebased({0x20, 0xF8, 0x01, 0x51}), (Words{0x10F8}));
}

TEST(RebaseOpcodes, UnknownOrEndlessInstructions_AreRefused) {
    EXPECT_THROW(rebased({0x13}), FormatError);
    EXPECT_THROW(rebased({0x90}), FormatError);
    EXPECT_THROW(rebased({0x20}), FormatError);
    // The gap wraps around to the same word.
    EXPECT_THROW(rebased({0x20, 0x00, 0x80, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 0xF8, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                          0xFF, 0xFF, 0xFF, 0x01}),
                 FormatError);
}

}  // namespace
}  // namespace dovrel::macho
