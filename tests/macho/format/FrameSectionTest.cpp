#include "macho/format/FrameSection.h"

#include <gtest/gtest.h>

#include "macho/format/ByteReader.h"

namespace dovrel::macho {
namespace {

using Bytes = std::vector<uint8_t>;

// Returns a section with the common part and one function with those instructions. Their number of bytes must
// be a multiple of four, minus one.
Bytes section(const Bytes& instructions) {
    Bytes bytes = {16, 0, 0, 0, 0, 0, 0, 0, 1, 'z', 'R', 0, 1, 0x7C, 8, 1, 0x10, 0x0C, 5, 4};
    const auto size = static_cast<uint8_t>(4 + 8 + 1 + instructions.size());
    const Bytes function = {size, 0, 0, 0, 24, 0, 0, 0, 0, 0, 0, 0, 9, 0, 0, 0, 0};
    bytes.insert(bytes.end(), function.begin(), function.end());
    bytes.insert(bytes.end(), instructions.begin(), instructions.end());
    return bytes;
}

Bytes converted(const Bytes& instructions) {
    Bytes bytes = section(instructions);
    EXPECT_EQ(convertFrameSection(bytes.data(), bytes.size()), std::vector<size_t>{20});
    return {bytes.end() - static_cast<long>(instructions.size()), bytes.end()};
}

TEST(FrameSection, TheRegistersOfEveryInstruction_AreExchanged) {
    EXPECT_EQ(converted({0x0E, 8, 0x84, 2, 0x0D, 4, 0x85, 3, 0x86, 4, 0xC4}),
              (Bytes{0x0E, 8, 0x85, 2, 0x0D, 5, 0x84, 3, 0x86, 4, 0xC5}));
    EXPECT_EQ(converted({0x0C, 4, 4, 0x05, 5, 5, 0x09, 4, 5, 0x08, 4}),
              (Bytes{0x0C, 5, 4, 0x05, 4, 5, 0x09, 5, 4, 0x08, 5}));
}

TEST(FrameSection, WhatIsNotARegister_StaysAsItIs) {
    const Bytes instructions = {0x44, 0x02, 4, 0x03, 4, 5, 0x04, 4, 5, 4, 5, 0x0E, 4, 0x2E, 5};
    EXPECT_EQ(converted(instructions), instructions);
}

TEST(FrameSection, TheCommonPart_IsAlsoConverted) {
    Bytes bytes = section({0, 0, 0});
    convertFrameSection(bytes.data(), bytes.size());
    EXPECT_EQ(bytes[18], 4);
    EXPECT_EQ(bytes[19], 4) << "an offset";
}

TEST(FrameSection, AZeroSize_EndsTheSection) {
    Bytes bytes = {0, 0, 0, 0, 1, 2, 3};
    EXPECT_TRUE(convertFrameSection(bytes.data(), bytes.size()).empty());
}

TEST(FrameSection, WhatIsUnknownOrCutOff_IsRefused) {
    Bytes unknown = section({0x3F, 0, 0});
    EXPECT_THROW(convertFrameSection(unknown.data(), unknown.size()), FormatError);
    Bytes cut = section({0x0E});
    EXPECT_THROW(convertFrameSection(cut.data(), cut.size()), FormatError);
    const Bytes whole = section({0x0E, 8, 0x84});
    for (size_t size = 1; size < whole.size(); ++size) {
        if (size == 20) continue;  // the end of the common part
        Bytes part(whole.begin(), whole.begin() + static_cast<long>(size));
        EXPECT_THROW(convertFrameSection(part.data(), part.size()), FormatError) << size;
    }
}

}  // namespace
}  // namespace dovrel::macho
