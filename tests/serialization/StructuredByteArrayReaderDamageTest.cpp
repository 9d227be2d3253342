// Damaged blocks, and a second block after the first one.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredByteArrayReader.h"
#include "serialization/StructuredByteArrayWriter.h"
#include "tests/serialization/ReaderBlocks.h"
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

void expectParseFailure(std::string_view hex, const char* detail, const char* message) {
    SCOPED_TRACE(hex);
    const CPPByteArray block = arrayFromHex(hex);
    StructuredByteArrayReader reader;
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.initialize(&block); }, 2, detail,
                                                           message);
}

TEST(StructuredByteArrayReaderDamage, NullArray_FailsAndLeavesTheReaderWithoutABlock) {
    const CPPByteArray block = arrayFromHex(kHeader);
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.initialize(nullptr); }, 2,
                                                           "384181AA015E: ", "1");
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.getTypeNumber(); }, 2,
                                                           "384181A400BE: ", "1");
}

TEST(StructuredByteArrayReaderDamage, BlockShorterThanItsHeader_FailsTheBoundsCheck) {
    expectParseFailure("", "3841954A010E: ", "1");
    expectParseFailure("41 73 41", "3841954A010E: ", "1");
    expectParseFailure("41 73 41 6B", "3841954A010E: ", "1");
    expectParseFailure("41 73 41 6B 00", "3841954A010E: ", "1");
    expectParseFailure("41 73 41 6B 00 01", "3841954A010E: ", "1");
    expectParseFailure("41 73 41 6B 00 01 00 00 00", "3841954A010E: ", "1");
}

TEST(StructuredByteArrayReaderDamage, AnotherMagic_Fails) {
    expectParseFailure("41 73 41 6C 00 01 00 00 00 08", "384190CE01EA: ", "1");
    expectParseFailure("6B 41 73 41", "384190CE01EA: ", "1");
}

TEST(StructuredByteArrayReaderDamage, OtherFormatBytes_Fail) {
    expectParseFailure("41 73 41 6B 00 02 00 00 00 08", "384190CE01EA: ", "2");
    expectParseFailure("41 73 41 6B 01 01 00 00 00 08", "384190CE01EA: ", "2");
    expectParseFailure("41 73 41 6B 01 00", "384190CE01EA: ", "2");
    expectParseFailure("41 73 41 6B 00 FF", "384190CE01EA: ", "2");
}

TEST(StructuredByteArrayReaderDamage, TruncatedPartHeader_FailsTheBoundsCheck) {
    const std::string header = kHeader;
    expectParseFailure(header + " 00", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05 00 00 00", "3841954A010E: ", "1");
}

TEST(StructuredByteArrayReaderDamage, LastPartThatClaimsMoreThanRemains_FailsTheBoundsCheck) {
    const std::string header = kHeader;
    expectParseFailure(header + " 00 00 00 05 00 00 00 01", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05 00 00 00 03 61 62", "3841954A010E: ", "1");
}

TEST(StructuredByteArrayReaderDamage, LengthThatWrapsPast32Bits_IsRefusedSoThatParsingEnds) {
    const std::string header = kHeader;
    // In 32 bits 18 + FFFFFFEE is 0 and 18 + FFFFFFF8 is 10, a position
    // inside the data that was already read.
    expectParseFailure(header + " 00 00 00 05 FF FF FF EE", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05 FF FF FF F8", "3841954A010E: ", "1");
    expectParseFailure(header + " 00 00 00 05 FF FF FF FF", "3841954A010E: ", "1");
}

TEST(StructuredByteArrayReaderDamage, FailedParse_LeavesThePartsBeforeTheDamage) {
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

TEST(StructuredByteArrayReaderDamage, FailedParseOfManyParts_LeavesThePartsBeforeTheDamage) {
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

TEST(StructuredByteArrayReaderDamage, SecondInitialize_AddsItsTagsAndKeepsTheOldEntries) {
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

TEST(StructuredByteArrayReaderDamage, SecondBlockThatIsShorter_NothingIsReadBeyondItsEnd) {
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

TEST(StructuredByteArrayReaderDamage, SecondBlockThatFailsToParse_NothingIsReadBeyondItsEnd) {
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

}  // namespace
}  // namespace dovrel
