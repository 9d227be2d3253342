#include "macho/format/CompactFrame.h"

#include <gtest/gtest.h>

#include "macho/format/ByteReader.h"

namespace dovrel::macho {
namespace {

using Bytes = std::vector<uint8_t>;

// DWARF: 0x0C defines the frame by a register and an offset. 0x80 + register means that the register was
// saved at that number of words below the frame.
constexpr uint8_t kRbx = 0x83, kRbp = 0x86, kR12 = 0x8C, kR14 = 0x8E, kR15 = 0x8F, kReturn = 0x90;

TEST(CompactFrame, WithABasePointer_TheRegistersAreBelowIt) {
    EXPECT_EQ(callFrameInstructions(0x01000000, {}), (Bytes{0x0C, 6, 16, kReturn, 1, kRbp, 2}));
    // pushq %r15; pushq %r14; pushq %rbx: the numbers 5, 4 and 1, starting at the lowest address.
    EXPECT_EQ(callFrameInstructions(0x01030000 | 1 | 4 << 3 | 5 << 6, {}),
              (Bytes{0x0C, 6, 16, kReturn, 1, kRbp, 2, kRbx, 5, kR14, 4, kR15, 3}));
}

TEST(CompactFrame, OfKnownSize_TheRegistersFollowTheReturnAddress) {
    EXPECT_EQ(callFrameInstructions(0x02030000, {}), (Bytes{0x0C, 7, 24, kReturn, 1}));
    // Two of six registers: rbx is the first of all six, r12 the first of the remaining ones.
    EXPECT_EQ(callFrameInstructions(0x02030000 | 2 << 10, {}),
              (Bytes{0x0C, 7, 24, kReturn, 1, kRbx, 3, kR12, 2}));
    EXPECT_EQ(callFrameInstructions(0x02020000 | 1 << 10 | 5, {}), (Bytes{0x0C, 7, 16, kReturn, 1, kRbp, 2}));
}

TEST(CompactFrame, OfASizeInTheCode_TheInstructionThereTellsIt) {
    // subq $0x100, %rsp after one push
    const Bytes code = {0x53, 0x48, 0x81, 0xEC, 0x00, 0x01, 0x00, 0x00};
    EXPECT_EQ(callFrameInstructions(0x03040000 | 2 << 13 | 1 << 10, code),
              (Bytes{0x0C, 7, 0x90, 0x02, kReturn, 1, kRbx, 2}));
    EXPECT_THROW(callFrameInstructions(0x03050000, code), FormatError);
}

TEST(CompactFrame, ImpossibleEncodings_AreRefused) {
    EXPECT_THROW(callFrameInstructions(0x00000000, {}), FormatError);
    EXPECT_THROW(callFrameInstructions(0x05000000, {}), FormatError);
    EXPECT_THROW(callFrameInstructions(0x01010007, {}), FormatError);           // no such register
    EXPECT_THROW(callFrameInstructions(0x01000000 | 1 << 3, {}), FormatError);  // above the base pointer
    EXPECT_THROW(callFrameInstructions(0x02000000 | 7 << 10, {}), FormatError);
    EXPECT_THROW(callFrameInstructions(0x02000000 | 1 << 10 | 6, {}), FormatError);
}

}  // namespace
}  // namespace dovrel::macho
