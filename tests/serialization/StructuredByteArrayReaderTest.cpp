#include "serialization/StructuredByteArrayReader.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredByteArrayWriter.h"
#include "tests/serialization/ReaderBlocks.h"
#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::expectFailure;
using test::kHeader;
using test::partText;
using test::toHex;
using test::toText;

TEST(StructuredByteArrayReader, BlockOfTheHeaderAlone_HasItsTypeNumberAndNoParts) {
    const CPPByteArray block = arrayFromHex("41 73 41 6B 00 01 00 00 00 08");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    EXPECT_EQ(reader.getTypeNumber(), 8u);
    EXPECT_FALSE(reader.hasPart(0));
    EXPECT_FALSE(reader.hasPart(0xFFFFFFFF));
}

TEST(StructuredByteArrayReader, BlockOf6BytesWithoutATypeNumber_HasTypeNumberFFFFFFFF) {
    const CPPByteArray block = arrayFromHex("41 73 41 6B 00 00");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    EXPECT_EQ(reader.getTypeNumber(), 0xFFFFFFFF);
}

TEST(StructuredByteArrayReader, BlockWithoutATypeNumber_HasItsPartsFromOffset6) {
    const CPPByteArray block = arrayFromHex("41 73 41 6B 00 00  00 00 00 05 00 00 00 02 61 62");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    EXPECT_EQ(partText(reader, 5), "ab");
}

TEST(StructuredByteArrayReader, TypeNumber_IsBigEndian) {
    const CPPByteArray block = arrayFromHex("41 73 41 6B 00 01 12 34 56 78");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    EXPECT_EQ(reader.getTypeNumber(), 0x12345678u);
}

TEST(StructuredByteArrayReader, Parts_AreFoundInAnyOrder) {
    const CPPByteArray block = arrayFromHex(
        "41 73 41 6B 00 01 00 00 00 09"
        "00 00 00 69 00 00 00 03 78 79 7A"
        "00 00 00 05 00 00 00 00"
        "FF FF FF FE 00 00 00 01 61");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    EXPECT_EQ(partText(reader, 0xFFFFFFFE), "a");
    EXPECT_EQ(partText(reader, 0x69), "xyz");
    EXPECT_EQ(partText(reader, 5), "");
    EXPECT_EQ(partText(reader, 0x69), "xyz");
    EXPECT_EQ(reader.getPartLength(0x69), 3u);
    EXPECT_EQ(reader.getPartLength(5), 0u);
    EXPECT_TRUE(reader.hasPart(5));
    EXPECT_FALSE(reader.hasPart(6));
}

TEST(StructuredByteArrayReader, ViewPart_IsWhereTheDataAreInTheArray) {
    const CPPByteArray block =
        arrayFromHex(std::string(kHeader) + " 00 00 00 05 00 00 00 02 61 62 00 00 00 06 00 00 00 00");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    EXPECT_EQ(reader.viewPart(5).data, block.data() + 18);
    EXPECT_EQ(reader.viewPart(5).length, 2u);
    EXPECT_EQ(reader.viewPart(6).length, 0u);
}

TEST(StructuredByteArrayReader, FindPart_SetsTheViewIfThePartIsThere) {
    const CPPByteArray block = arrayFromHex(
        "41 73 41 6B 00 01 00 00 00 09"
        "00 00 00 05 00 00 00 02 61 62");
    StructuredByteArrayReader reader;
    ByteView part;
    EXPECT_FALSE(reader.findPart(5, part)) << "there is no block";
    reader.initialize(&block);
    EXPECT_FALSE(reader.findPart(6, part));
    EXPECT_EQ(part.data, nullptr);
    ASSERT_TRUE(reader.findPart(5, part));
    EXPECT_EQ(part.data, block.data() + 18);
    EXPECT_EQ(part.length, 2u);
}

TEST(StructuredByteArrayReader, ViewNumber_OfAnyLength_IsTheFirstFourBytesZeroExtended) {
    const CPPByteArray block =
        arrayFromHex(std::string(kHeader) +
                     " 00 00 00 00 00 00 00 00 00 00 00 01 00 00 00 01 F1 00 00 00 02 00 00 00 02 05 01"
                     " 00 00 00 04 00 00 00 04 01 02 03 84 00 00 00 05 00 00 00 05 01 02 03 04 05");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    EXPECT_EQ(reader.viewNumber(0), 0u);
    EXPECT_EQ(reader.viewNumber(1), 0xF1u);
    EXPECT_EQ(reader.viewNumber(2), 0x105u);
    EXPECT_EQ(reader.viewNumber(4), 0x84030201u);
    EXPECT_EQ(reader.viewNumber(5), 0x04030201u);
}

TEST(StructuredByteArrayReader, GetPart_IsACopyThatOutlivesTheBlock) {
    auto block =
        std::make_unique<CPPByteArray>(arrayFromHex("41 73 41 6B 00 00 00 00 00 05 00 00 00 02 61 62"));
    StructuredByteArrayReader reader;
    reader.initialize(block.get());
    const std::unique_ptr<CPPByteArray> part(reader.getPart(5));
    block.reset();
    EXPECT_EQ(toText(*part), "ab");
}

TEST(StructuredByteArrayReader, ReadPart_CopiesJustThePart) {
    const CPPByteArray block = arrayFromHex("41 73 41 6B 00 00 00 00 00 05 00 00 00 02 61 62");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    char bytes[] = "....";
    reader.readPart(5, bytes);
    EXPECT_STREQ(bytes, "ab..");
}

TEST(StructuredByteArrayReader, TwoPartsWithOneTag_TheFirstIsSeen) {
    const CPPByteArray block = arrayFromHex(
        "41 73 41 6B 00 01 00 00 00 09"
        "00 00 00 05 00 00 00 01 61"
        "00 00 00 05 00 00 00 02 62 63");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    EXPECT_EQ(partText(reader, 5), "a");
    EXPECT_EQ(reader.getPartLength(5), 1u);
}

TEST(StructuredByteArrayReader, NotInitialized_EveryRequestFailsWithItsOwnDetail) {
    const StructuredByteArrayReader reader;
    char bytes[4];
    using NotInitialized = StructuredReaderNotInitializedException;
    expectFailure<NotInitialized>([&] { reader.getTypeNumber(); }, 2, "384181A400BE: ", "1");
    expectFailure<NotInitialized>([&] { reader.getPart(1); }, 2, "384181A400FA: ", "1");
    expectFailure<NotInitialized>([&] { reader.viewPart(1); }, 2, "384181A400FA: ", "1");
    expectFailure<NotInitialized>([&] { reader.viewNumber(1); }, 2, "384181A400FA: ", "1");
    expectFailure<NotInitialized>([&] { reader.readPart(1, bytes); }, 2, "384181A400FC: ", "1");
    expectFailure<NotInitialized>([&] { reader.getPartLength(1); }, 2, "384181A4012C: ", "1");
    EXPECT_FALSE(reader.hasPart(1));
}

TEST(StructuredByteArrayReader, AbsentTag_EveryRequestFailsWithItsOwnTexts) {
    const CPPByteArray block = arrayFromHex(kHeader);
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    char bytes[] = "...";
    EXPECT_FALSE(reader.hasPart(1));
    expectFailure<PartNotFoundException>([&] { reader.getPart(1); }, 3, "384181A400FA: ", "2");
    expectFailure<PartNotFoundException>([&] { reader.viewPart(1); }, 3, "384181A400FA: ", "2");
    expectFailure<PartNotFoundException>([&] { reader.viewNumber(1); }, 3, "384181A400FA: ", "2");
    expectFailure<PartNotFoundException>([&] { reader.readPart(1, bytes); }, 3, "???", "???");
    expectFailure<PartNotFoundException>([&] { reader.getPartLength(1); }, 3, "384181A4012C: ", "2");
    EXPECT_STREQ(bytes, "...");
}

TEST(StructuredByteArrayReader, VirtualOperations_StandInTheSlotsOfTheBase) {
    EXPECT_EQ(test::virtualSlot(&StructuredByteArrayReader::getTypeNumber), 2u);
    EXPECT_EQ(test::virtualSlot(&StructuredByteArrayReader::getPart), 3u);
    EXPECT_EQ(test::virtualSlot(&StructuredByteArrayReader::readPart), 4u);
    EXPECT_EQ(test::virtualSlot(&StructuredByteArrayReader::getPartLength), 5u);
    EXPECT_EQ(test::VirtualSlots<StructuredByteArrayReader>::count(), 7u);
}

}  // namespace
}  // namespace dovrel
