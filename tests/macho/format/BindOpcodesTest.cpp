#include "macho/format/BindOpcodes.h"

#include <gtest/gtest.h>

#include "tests/macho/format/FileBuilder.h"

namespace dovrel::macho {
namespace {

std::vector<Binding> bound(std::vector<uint8_t> code) {
    FileBuilder builder;
    builder.bindings = std::move(code);
    return ordinaryBindings(builder.file());
}

TEST(BindOpcodes, ABinding_HasWhatTheInstructionsBeforeItSay) {
    const std::vector<Binding> bindings = bound(
        {0x11, 0x41, '_', 'a', 0, 0x51, 0x60, 0x7C, 0x70, 0x10, 0x90, 0x40, '_', 'b', 0, 0x60, 0x00, 0x91});
    ASSERT_EQ(bindings.size(), 2u);
    EXPECT_EQ(bindings[0].symbol, "_a");
    EXPECT_EQ(bindings[0].library, 1);
    EXPECT_EQ(bindings[0].address, 0x1010u);
    EXPECT_EQ(bindings[0].addend, -4);
    EXPECT_TRUE(bindings[0].isOptional);
    EXPECT_EQ(bindings[1].symbol, "_b");
    EXPECT_EQ(bindings[1].address, 0x1018u);
    EXPECT_FALSE(bindings[1].isOptional);
}

TEST(BindOpcodes, TheBindingsThatMove_GoOnFromThere) {
    const std::vector<Binding> bindings =
        bound({0x40, 'a', 0, 0x70, 0x00, 0xA0, 0x08, 0xB1, 0xC0, 0x02, 0x08, 0x80, 0x08, 0x90});
    std::vector<uint64_t> addresses;
    for (const Binding& binding : bindings)
        addresses.push_back(binding.address);
    EXPECT_EQ(addresses, (std::vector<uint64_t>{0x1000, 0x1010, 0x1020, 0x1030, 0x1048}));
}

TEST(BindOpcodes, LibraryNumbers_AreShortLongOrSpecial) {
    EXPECT_EQ(bound({0x70, 0x00, 0x20, 0x90, 0x01, 0x90})[0].library, 0x90);
    EXPECT_EQ(bound({0x70, 0x00, 0x3E, 0x90})[0].library, kAnyLibrary);
    EXPECT_EQ(bound({0x70, 0x00, 0x30, 0x90})[0].library, kThisImage);
}

TEST(BindOpcodes, AnEnd_EndsOnlyAnEntryInTheLazyList) {
    FileBuilder builder;
    builder.bindings = builder.weakBindings =
        builder.lazyBindings = {0x40, 'a', 0, 0x70, 0x00, 0x90, 0x00, 0x40, 'b', 0, 0x70, 0x08, 0x90, 0x00};
    const MachOFile file = builder.file();
    EXPECT_EQ(ordinaryBindings(file).size(), 1u);
    EXPECT_EQ(weakBindings(file).size(), 1u);
    EXPECT_EQ(lazyBindings(file).size(), 2u);
}

TEST(BindOpcodes, WhatIsUnknownOrOutside_IsRefused) {
    EXPECT_THROW(bound({0xD0}), FormatError);
    EXPECT_THROW(bound({0x50}), FormatError);
    EXPECT_THROW(bound({0x54}), FormatError);
    EXPECT_THROW(bound({0x40, 'a'}), FormatError);
    EXPECT_THROW(bound({0x90}), FormatError);
    EXPECT_THROW(bound({0x70, 0x80, 0x02, 0x90}), FormatError);
}

}  // namespace
}  // namespace dovrel::macho
