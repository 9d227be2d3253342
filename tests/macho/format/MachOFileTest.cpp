#include "macho/format/MachOFile.h"

#include <gtest/gtest.h>

#include "tests/macho/format/FileBuilder.h"

namespace dovrel::macho {
namespace {

TEST(MachOFile, SegmentsSectionsAndLibraries_AreThoseOfTheCommands) {
    const MachOFile file = FileBuilder().file();
    ASSERT_EQ(file.segments().size(), 1u);
    EXPECT_EQ(file.segments()[0].name, "__DATA");
    EXPECT_EQ(file.bytes(file.segments()[0]).size(), 0x20u);
    ASSERT_NE(file.section("__DATA", "__data"), nullptr);
    EXPECT_EQ(file.section("__DATA", "__data")->address, 0x1010u);
    EXPECT_EQ(file.section("__TEXT", "__data"), nullptr);
    EXPECT_EQ(file.libraries(), std::vector<std::string>{"/usr/lib/one.dylib"});
    EXPECT_EQ(file.memorySize(), 0x1100u);
}

TEST(MachOFile, AUniversalFile_IsReadAtTheSliceOfTheProcessor) {
    const std::vector<uint8_t> content = universal(FileBuilder().build(), Processor::kX86_64);
    EXPECT_EQ(MachOFile(content, Processor::kX86_64).segments().size(), 1u);
    EXPECT_THROW(MachOFile(content, Processor::kI386), FormatError);
}

TEST(MachOFile, ASliceThatReachesBeyondTheFile_IsRefused) {
    std::vector<uint8_t> content = universal(FileBuilder().build(), Processor::kX86_64);
    content.pop_back();
    EXPECT_THROW(MachOFile(content, Processor::kX86_64), FormatError);
}

TEST(MachOFile, WhatIsNotABundleForTheProcessor_IsRefused) {
    FileBuilder builder;
    builder.magic = 0x464C457F;
    EXPECT_THROW(builder.file(), FormatError);
    builder = FileBuilder();
    builder.processor = static_cast<uint32_t>(Processor::kI386);
    EXPECT_THROW(builder.file(), FormatError);
    builder = FileBuilder();
    builder.type = 2;
    EXPECT_THROW(builder.file(), FormatError);
}

TEST(MachOFile, AFileThatEndsAnywhereInItsCommands_IsRefused) {
    const std::vector<uint8_t> whole = FileBuilder().build();
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_THROW(MachOFile({whole.begin(), whole.begin() + static_cast<long>(size)}, Processor::kX86_64),
                     FormatError)
            << size;
}

TEST(MachOFile, ASegmentOutsideTheFileOrLargerThanItsMemory_IsRefused) {
    FileBuilder builder;
    builder.segmentFileOffset = 0x10000;
    EXPECT_THROW(builder.file(), FormatError);
    builder = FileBuilder();
    builder.segmentFileSize = builder.segmentMemory + 1;
    EXPECT_THROW(builder.file(), FormatError);
    builder = FileBuilder();
    builder.segmentMemory = ~uint64_t{0};
    EXPECT_THROW(builder.file(), FormatError);
}

TEST(MachOFile, ASectionOutsideItsSegment_IsRefused) {
    FileBuilder builder;
    builder.sectionAddress = 0xFFF;
    EXPECT_THROW(builder.file(), FormatError);
    builder.sectionAddress = 0x10F1;
    EXPECT_THROW(builder.file(), FormatError);
    builder.sectionSize = ~uint64_t{0};
    EXPECT_THROW(builder.file(), FormatError);
}

TEST(MachOFile, AFileForANewerSystemOrWithoutFixups_IsRefused) {
    FileBuilder builder;
    builder.extraCommand = kChainedFixups;
    EXPECT_THROW(builder.file(), FormatError);
    builder = FileBuilder();
    builder.hasFixups = false;
    EXPECT_THROW(builder.file(), FormatError);
}

TEST(MachOFile, AnUnknownCommand_IsPassedOver) {
    FileBuilder builder;
    builder.extraCommand = 0x1B;
    EXPECT_EQ(builder.file().libraries().size(), 1u);
}

TEST(MachOFile, AFileThatCannotBeOpened_IsRefused) {
    EXPECT_THROW(MachOFile::read("/nonexistent/file"), FormatError);
}

}  // namespace
}  // namespace dovrel::macho
