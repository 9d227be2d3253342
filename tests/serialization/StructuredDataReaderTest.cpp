#include "serialization/StructuredDataReader.h"

#include <gtest/gtest.h>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredByteArrayReader.h"
#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::expectFailure;

class StructuredDataReaderTest : public testing::Test {
  protected:
    StructuredDataReaderTest() { reader_.initialize(&block_); }

    const CPPByteArray block_ = arrayFromHex(
        "41 73 41 6B 00 01 00 00 00 09"
        "00 00 00 01 00 00 00 04 D4 C3 B2 A1"
        "00 00 00 02 00 00 00 02 05 01"
        "00 00 00 03 00 00 00 06 01 02 03 04 05 06"
        "00 00 00 04 00 00 00 00"
        "00 00 00 05 00 00 00 03 61 00 FF");
    StructuredByteArrayReader reader_;
};

TEST_F(StructuredDataReaderTest, ReadUInt32Part_IsLittleEndian) {
    EXPECT_EQ(reader_.readUInt32Part(1), 0xA1B2C3D4);
}

TEST_F(StructuredDataReaderTest, ReadUInt32Part_OfAShorterPart_TakesMissingBytesAsZero) {
    EXPECT_EQ(reader_.readUInt32Part(2), 0x105u);
    EXPECT_EQ(reader_.readUInt32Part(4), 0u);
}

TEST_F(StructuredDataReaderTest, ReadUInt32Part_OfALongerPart_TakesTheFirstFourBytes) {
    EXPECT_EQ(reader_.readUInt32Part(3), 0x04030201u);
}

TEST_F(StructuredDataReaderTest, ReadUInt32Part_FailsAsReadPartDoes) {
    expectFailure<PartNotFoundException>([&] { reader_.readUInt32Part(99); }, 3, "???", "???");
    const StructuredByteArrayReader empty;
    expectFailure<StructuredReaderNotInitializedException>([&] { empty.readUInt32Part(1); }, 2,
                                                           "384181A400FC: ", "1");
}

TEST_F(StructuredDataReaderTest, ReadStringPart_HasOneCharacterPerByte) {
    EXPECT_EQ(reader_.readStringPart(5), std::string("a\0\xFF", 3));
    EXPECT_EQ(reader_.readStringPart(4), "");
}

TEST_F(StructuredDataReaderTest, ReadStringPart_FailsAsGetPartDoes) {
    expectFailure<PartNotFoundException>([&] { reader_.readStringPart(99); }, 3, "384181A400FA: ", "2");
    const StructuredByteArrayReader empty;
    expectFailure<StructuredReaderNotInitializedException>([&] { empty.readStringPart(1); }, 2,
                                                           "384181A400FA: ", "1");
}

TEST_F(StructuredDataReaderTest, ReadMaskedStringPart_UsesTheLow8BitsOfTheMask) {
    EXPECT_EQ(reader_.readMaskedStringPart(5, 0x12345620), std::string("A\x20\xDF", 3));
    EXPECT_EQ(reader_.readMaskedStringPart(5, 0xFFFFFF00), std::string("a\0\xFF", 3));
    EXPECT_EQ(reader_.readMaskedStringPart(4, 0x55), "");
}

TEST(StructuredDataReader, VirtualOperations_StandInTheirOrder) {
    EXPECT_EQ(test::virtualSlot(&StructuredDataReader::getTypeNumber), 2u);
    EXPECT_EQ(test::virtualSlot(&StructuredDataReader::getPart), 3u);
    EXPECT_EQ(test::virtualSlot(&StructuredDataReader::readPart), 4u);
    EXPECT_EQ(test::virtualSlot(&StructuredDataReader::getPartLength), 5u);
    EXPECT_EQ(test::virtualSlot(&StructuredDataReader::readUInt32Part), 6u);
    EXPECT_EQ(test::VirtualSlots<StructuredDataReader>::count(), 7u);
}

}  // namespace
}  // namespace dovrel
