#include "serialization/StructuredByteArrayReader.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredByteArrayWriter.h"
#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::expectFailure;
using test::toHex;
using test::toText;

constexpr char kHeader[] = "41 73 41 6B 00 01 00 00 00 08";

std::string partText(const StructuredByteArrayReader& reader, uint32_t tag) {
    const std::unique_ptr<CPPByteArray> part(reader.getPart(tag));
    return toText(*part);
}

void expectParseFailure(std::string_view hex, const char* detail, const char* message) {
    SCOPED_TRACE(hex);
    const CPPByteArray block = arrayFromHex(hex);
    StructuredByteArrayReader reader;
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.initialize(&block); }, 2, detail,
                                                           message);
}

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

TEST(StructuredByteArrayReader, NullArray_FailsAndLeavesTheReaderWithoutABlock) {
    const CPPByteArray block = arrayFromHex(kHeader);
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.initialize(nullptr); }, 2,
                                                           "384181AA015E: ", "1");
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.getTypeNumber(); }, 2,
                                                           "384181A400BE: ", "1");
}

TEST(StructuredByteArrayReader, BlockShorterThanItsHeader_FailsTheBoundsCheck) {
    expectParseFailure("", "3841954A010E: ", "1");
    expectParseFailure("41 73 41", "3841954A010E: ", "1");
    expectParseFailure("41 73 41 6B", "3841954A010E: ", "1");
    expectParseFailure("41 73 41 6B 00", "3841954A010E: ", "1");
    expectParseFailure("41 73 41 6B 00 01", "3841954A010E: ", "1");
    expectParseFailure("41 73 41 6B 00 01 00 00 00", "3841954A010E: ", "1");
}

TEST(StructuredByteArrayReader, AnotherMagic_Fails) {
    expectParseFailure("41 73 41 6C 00 01 00 00 00 08", "384190CE01EA: ", "1");
    expectParseFailure("6B 41 73 41", "384190CE01EA: ", "1");
}

TEST(StructuredByteArrayReader, OtherFormatBytes_Fail) {
    expectParseFailure("41 73 41 6B 00 02 00 00 00 08", "384190CE01EA: ", "2");
    expectParseFailure("41 73 41 6B 01 01 00 00 00 08", "384190CE01EA: ", "2");
    expectParseFailure("41 73 41 6B 01 00", "384190CE01EA: ", "2");
    expectParseFailure("41 73 41 6B 00 FF", "384190CE01EA: ", "2");
}

TEST(StructuredByteArrayReader, TruncatedPartHeader_FailsTheBoundsCheck) {
    const std::string header = kHeader;
    expectParseFailure(header + " 00", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05 00 00 00", "3841954A010E: ", "1");
}

TEST(StructuredByteArrayReader, LastPartThatClaimsMoreThanRemains_FailsTheBoundsCheck) {
    const std::string header = kHeader;
    expectParseFailure(header + " 00 00 00 05 00 00 00 01", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05 00 00 00 03 61 62", "3841954A010E: ", "1");
}

TEST(StructuredByteArrayReader, LengthThatWrapsPast32Bits_IsRefusedSoThatParsingEnds) {
    const std::string header = kHeader;
    // In 32 bits 18 + FFFFFFEE is 0 and 18 + FFFFFFF8 is 10, a position
    // inside the data that was already read.
    expectParseFailure(header + " 00 00 00 05 FF FF FF EE", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05 FF FF FF F8", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05 FF FF FF FF", "3841954A010E: ", "1");
}

TEST(StructuredByteArrayReader, FailedParse_LeavesThePartsBeforeTheDamage) {
    const CPPByteArray block = arrayFromHex(
        "41 73 41 6B 00 01 00 00 00 09"
        "00 00 00 07 00 00 00 01 61"
        "00 00 00 05 00 00 00 01 62"
        "00 00 00 06 00 00 00 09 63");
    StructuredByteArrayReader reader;
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.initialize(&block); }, 2,
                                                           "3841954A010E: ", "1");
    EXPECT_EQ(reader.getTypeNumber(), 9u);
    EXPECT_EQ(partText(reader, 5), "b");
    EXPECT_EQ(partText(reader, 7), "a");
    EXPECT_FALSE(reader.hasPart(6));
}

TEST(StructuredByteArrayReader, FailedParseOfManyParts_LeavesThePartsBeforeTheDamage) {
    CPPExpandingByteArray block;
    StructuredByteArrayWriter writer;
    writer.initialize(block, 9);
    for (uint32_t tag = 100; tag > 0; --tag) {
        writer.writeUInt32Part(tag, tag * 3);
    }
    block.setByte(block.getSize(), 0);
    StructuredByteArrayReader reader;
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.initialize(&block); }, 2,
                                                           "3841954A010E: ", "1");
    for (uint32_t tag = 1; tag <= 100; ++tag) {
        EXPECT_EQ(reader.readUInt32Part(tag), tag * 3);
    }
}

TEST(StructuredByteArrayReader, SecondInitialize_AddsItsTagsAndKeepsTheOldEntries) {
    const CPPByteArray first = arrayFromHex(
        "41 73 41 6B 00 01 00 00 00 09"
        "00 00 00 05 00 00 00 01 61"
        "00 00 00 06 00 00 00 01 62");
    // The entry of tag 5 keeps offset 18 of the first block. This block contains "Y" there.
    const CPPByteArray second = arrayFromHex(
        "41 73 41 6B 00 01 00 00 00 0A"
        "00 00 00 07 00 00 00 02 59 5A"
        "00 00 00 05 00 00 00 02 78 79");
    StructuredByteArrayReader reader;
    reader.initialize(&first);
    reader.initialize(&second);
    EXPECT_EQ(reader.getTypeNumber(), 10u);
    EXPECT_EQ(partText(reader, 7), "YZ");
    EXPECT_EQ(partText(reader, 5), "Y");
    EXPECT_EQ(reader.getPartLength(6), 1u);
}

// The first block for two calls of initialize: tag 5 has 4 bytes at offset 18, and tag 6 has 8 bytes at
// offset 30, the end of the block. The second blocks in these tests are shorter.
constexpr char kLongBlock[] =
    "41 73 41 6B 00 01 00 00 00 09"
    "00 00 00 05 00 00 00 04 61 62 63 64"
    "00 00 00 06 00 00 00 08 65 66 67 68 69 6A 6B 6C";

TEST(StructuredByteArrayReader, SecondBlockThatIsShorter_NothingIsReadBeyondItsEnd) {
    const CPPByteArray first = arrayFromHex(kLongBlock);
    // Offset 18 has the last two bytes of this block; offset 30 is beyond its end.
    const CPPByteArray second = arrayFromHex(
        "41 73 41 6B 00 00"
        "00 00 00 07 00 00 00 06 6D 6E 6F 70 71 72");
    StructuredByteArrayReader reader;
    reader.initialize(&first);
    reader.initialize(&second);

    EXPECT_EQ(reader.getPartLength(5), 4u);
    EXPECT_EQ(toHex(*std::unique_ptr<CPPByteArray>(reader.getPart(5))), "71 72 00 00");
    char bytes[] = "....";
    reader.readPart(5, bytes);
    EXPECT_STREQ(bytes, "qr..");
    EXPECT_EQ(reader.viewPart(5).data, second.data() + 18);
    EXPECT_EQ(reader.viewPart(5).length, 2u);
    EXPECT_EQ(reader.readUInt32Part(5), 0x7271u);
    EXPECT_EQ(reader.viewNumber(5), 0x7271u);

    EXPECT_EQ(reader.getPartLength(6), 8u);
    EXPECT_EQ(toHex(*std::unique_ptr<CPPByteArray>(reader.getPart(6))), "00 00 00 00 00 00 00 00");
    char untouched[] = "........";
    reader.readPart(6, untouched);
    EXPECT_STREQ(untouched, "........");
    EXPECT_EQ(reader.viewPart(6).length, 0u);
    EXPECT_EQ(reader.readUInt32Part(6), 0u);
    EXPECT_EQ(reader.viewNumber(6), 0u);
    EXPECT_EQ(reader.readStringPart(6), std::string(8, '\0'));
}

TEST(StructuredByteArrayReader, SecondBlockThatFailsToParse_NothingIsReadBeyondItsEnd) {
    const CPPByteArray first = arrayFromHex(kLongBlock);
    const CPPByteArray second = arrayFromHex("41 73");
    const CPPByteArray empty;
    for (const CPPByteArray* damaged : {&second, &empty}) {
        StructuredByteArrayReader reader;
        reader.initialize(&first);
        expectFailure<StructuredReaderNotInitializedException>([&] { reader.initialize(damaged); }, 2,
                                                               "3841954A010E: ", "1");
        EXPECT_EQ(reader.viewPart(5).length, 0u);
        EXPECT_EQ(reader.viewNumber(5), 0u);
        EXPECT_EQ(reader.readUInt32Part(5), 0u);
        EXPECT_EQ(toHex(*std::unique_ptr<CPPByteArray>(reader.getPart(5))), "00 00 00 00");
    }
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
