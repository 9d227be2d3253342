#include "serialization/StructuredByteArrayWriter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::makeArray;
using test::plainArray;
using test::toHex;

// Records which of the target's operations the writer uses.
class WatchedArray : public CPPExpandingByteArray {
  public:
    void setByte(uint32_t index, uint8_t value) override {
        calls.push_back("setByte " + std::to_string(index));
        CPPExpandingByteArray::setByte(index, value);
    }
    void writeBytes(uint32_t offset, const void* source, uint32_t length) override {
        calls.push_back("writeBytes " + std::to_string(offset) + " " + std::to_string(length));
        CPPExpandingByteArray::writeBytes(offset, source, length);
    }
    void copyFrom(uint32_t offset, const CPPByteArray& source, uint32_t length,
                  uint32_t sourceOffset) override {
        calls.push_back("copyFrom " + std::to_string(offset) + " " + std::to_string(length));
        CPPExpandingByteArray::copyFrom(offset, source, length, sourceOffset);
    }

    std::vector<std::string> calls;
};

TEST(StructuredByteArrayWriter, Initialize_WritesTheHeader) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08");
}

TEST(StructuredByteArrayWriter, Initialize_WritesTheTypeNumberBigEndian) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 0x12345678);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 12 34 56 78");
}

TEST(StructuredByteArrayWriter, ContinueBlock_AppendsToTheBlock) {
    CPPExpandingByteArray array = test::makeExpandingArray("block");
    StructuredByteArrayWriter writer;
    writer.continueBlock(array);
    writer.writeBytesPart(1, "ab", 2);
    EXPECT_EQ(toHex(array), "62 6C 6F 63 6B 00 00 00 01 00 00 00 02 61 62");
}

TEST(StructuredByteArrayWriter, WriteUInt32Part_AppendsFramingBigEndianAndTheValueLittleEndian) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    writer.writeUInt32Part(0, 3);
    writer.writeUInt32Part(0x01020304, 0xA1B2C3D4);
    EXPECT_EQ(toHex(array),
              "41 73 41 6B 00 01 00 00 00 08 "
              "00 00 00 00 00 00 00 04 03 00 00 00 "
              "01 02 03 04 00 00 00 04 D4 C3 B2 A1");
}

TEST(StructuredByteArrayWriter, WriteArrayPart_AppendsItsBytesUnchanged) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 9);
    writer.writeArrayPart(5, makeArray("ab"));
    writer.writeArrayPart(7, CPPByteArray());
    EXPECT_EQ(toHex(array),
              "41 73 41 6B 00 01 00 00 00 09 "
              "00 00 00 05 00 00 00 02 61 62 "
              "00 00 00 07 00 00 00 00");
}

TEST(StructuredByteArrayWriter, WriteArrayPart_OfItsOwnTarget_TakesTheBytesWrittenSoFar) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 1);
    writer.writeArrayPart(2, array);
    EXPECT_EQ(toHex(array),
              "41 73 41 6B 00 01 00 00 00 01 "
              "00 00 00 02 00 00 00 0A 41 73 41 6B 00 01 00 00 00 01");
}

TEST(StructuredByteArrayWriter, WriteBytesPart_AppendsTheBuffer) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 9);
    writer.writeBytesPart(0xFFFFFFFF, "xyz", 3);
    writer.writeBytesPart(1, nullptr, 0);
    EXPECT_EQ(toHex(array),
              "41 73 41 6B 00 01 00 00 00 09 "
              "FF FF FF FF 00 00 00 03 78 79 7A "
              "00 00 00 01 00 00 00 00");
}

TEST(StructuredByteArrayWriter, SameTagTwice_IsWrittenTwice) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 9);
    writer.writeBytesPart(5, "a", 1);
    writer.writeBytesPart(5, "b", 1);
    EXPECT_EQ(toHex(array),
              "41 73 41 6B 00 01 00 00 00 09 "
              "00 00 00 05 00 00 00 01 61 "
              "00 00 00 05 00 00 00 01 62");
}

// The first store of a part reaches its last byte, so that the target grows only once.
TEST(StructuredByteArrayWriter, EveryStore_GoesThroughTheTargetsOperations) {
    WatchedArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 9);
    std::vector<std::string> header;
    for (int i = 9; i >= 0; --i) {
        header.push_back("setByte " + std::to_string(i));
    }
    EXPECT_EQ(array.calls, header);

    array.calls.clear();
    writer.writeArrayPart(1, makeArray("abc"));
    EXPECT_EQ(array.calls, (std::vector<std::string>{"setByte 20", "writeBytes 10 8", "copyFrom 18 3"}));

    array.calls.clear();
    writer.writeBytesPart(2, "ab", 2);
    EXPECT_EQ(array.calls, (std::vector<std::string>{"setByte 30", "writeBytes 21 8", "writeBytes 29 2"}));

    array.calls.clear();
    std::istringstream stream("xy");
    writer.writeStreamPart(3, stream, 2);
    EXPECT_EQ(array.calls, (std::vector<std::string>{"writeBytes 31 8", "setByte 39", "setByte 40"}));
}

TEST(StructuredByteArrayWriter, TargetOfADerivedClass_ReceivesTheSameBytes) {
    const auto write = [](CPPByteArray& target) {
        StructuredByteArrayWriter writer;
        writer.initialize(target, 0x01020304);
        writer.writeUInt32Part(1, 0xA1B2C3D4);
        writer.writeArrayPart(2, makeArray("abc"));
        writer.writeArrayPart(3, target);
        writer.writeBytesPart(4, nullptr, 0);
        writer.writeBytesPart(5, "123456789", 9);
    };
    WatchedArray watched;
    CPPExpandingByteArray plain;
    write(watched);
    write(plain);
    EXPECT_EQ(toHex(plain), toHex(watched));
    EXPECT_EQ(plain.getSize(), 10u + 12 + 11 + 41 + 8 + 17);
}

TEST(StructuredByteArrayWriter, TargetWithRoomForThePart_ReceivesNoStoreBeforeTheHeader) {
    WatchedArray array;
    array.setFilled(20, 'x');
    StructuredByteArrayWriter writer;
    writer.initialize(array, 9);
    array.calls.clear();
    writer.writeBytesPart(1, "ab", 2);
    EXPECT_EQ(array.calls, (std::vector<std::string>{"writeBytes 10 8", "writeBytes 18 2"}));
}

TEST(StructuredByteArrayWriter, Initialize_OverAnotherTarget_LeavesTheFirst) {
    CPPExpandingByteArray first;
    CPPByteArray second = plainArray(19);
    StructuredByteArrayWriter writer;
    writer.initialize(first, 1);
    writer.initialize(second, 2);
    writer.writeBytesPart(3, "x", 1);
    EXPECT_EQ(toHex(first), "41 73 41 6B 00 01 00 00 00 01");
    EXPECT_EQ(toHex(second), "41 73 41 6B 00 01 00 00 00 02 00 00 00 03 00 00 00 01 78");
}

TEST(StructuredByteArrayWriter, ExpandingArrayThatIsLargerAlready_IsOverwrittenInPlace) {
    CPPExpandingByteArray array;
    array.setFilled(24, 0xEE);
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    writer.writeBytesPart(1, "ab", 2);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08 00 00 00 01 00 00 00 02 61 62 EE EE EE EE");
    writer.writeBytesPart(2, "c", 1);
    EXPECT_EQ(array.getSize(), 29u);
}

TEST(StructuredByteArrayWriter, Initialize_OverALargerArray_StartsAtItsBeginning) {
    CPPByteArray array = plainArray(12);
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08 EE EE");
}

TEST(StructuredByteArrayWriter, PlainArrayOfTheExactSize_TakesTheBlock) {
    CPPByteArray array = plainArray(22);
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    writer.writeUInt32Part(0, 3);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08 00 00 00 00 00 00 00 04 03 00 00 00");
}

TEST(StructuredByteArrayWriter, Destruction_LeavesTheTarget) {
    CPPExpandingByteArray array;
    {
        StructuredByteArrayWriter writer;
        writer.initialize(array, 8);
    }
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08");
}

TEST(StructuredByteArrayWriter, VirtualOperations_StandInTheSlotsOfTheBase) {
    EXPECT_EQ(test::virtualSlot(&StructuredByteArrayWriter::writeArrayPart), 2u);
    EXPECT_EQ(test::virtualSlot(&StructuredByteArrayWriter::writeBytesPart), 3u);
    EXPECT_EQ(test::virtualSlot(&StructuredByteArrayWriter::writeStreamPart), 4u);
    EXPECT_EQ(test::VirtualSlots<StructuredByteArrayWriter>::count(), 7u);
}

}  // namespace
}  // namespace dovrel
