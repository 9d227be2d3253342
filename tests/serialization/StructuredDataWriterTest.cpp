#include "serialization/StructuredDataWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "serialization/StructuredByteArrayWriter.h"
#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::toHex;
using test::toText;
using testing::_;
using testing::Ref;

// A writer that shows how the base class uses the operations of a derived class.
class MockWriter : public StructuredDataWriter {
  public:
    MOCK_METHOD(void, writeArrayPart, (uint32_t, const CPPByteArray&), (override));
    MOCK_METHOD(void, writeBytesPart, (uint32_t, const void*, uint32_t), (override));
    MOCK_METHOD(void, writeStreamPart, (uint32_t, std::istream&, uint32_t), (override));
};

TEST(StructuredDataWriter, WriteUInt32Part_IsABytesPartOfFourLittleEndianBytes) {
    MockWriter writer;
    std::string bytes;
    EXPECT_CALL(writer, writeBytesPart(7, _, 4)).WillOnce([&](uint32_t, const void* data, uint32_t length) {
        bytes.assign(static_cast<const char*>(data), length);
    });
    writer.writeUInt32Part(7, 0x01020304);
    EXPECT_EQ(bytes, "\x04\x03\x02\x01");
}

TEST(StructuredDataWriter, WriteWholeStreamPart_IsAStreamPartFromTheStart) {
    MockWriter writer;
    std::istringstream stream("abcdef");
    stream.seekg(4);
    EXPECT_CALL(writer, writeStreamPart(7, Ref(stream), 6))
        .WillOnce([](uint32_t, std::istream& in, uint32_t) { EXPECT_EQ(in.get(), 'a'); });
    writer.writeWholeStreamPart(7, stream);
}

TEST(StructuredDataWriter, WriteWholeStreamPart_OfAnEmptyStream_HasLengthZero) {
    MockWriter writer;
    std::istringstream stream("");
    EXPECT_CALL(writer, writeStreamPart(7, Ref(stream), 0));
    writer.writeWholeStreamPart(7, stream);
}

TEST(StructuredDataWriter, WriteStringPart_IsAnArrayPartWithoutATerminatingZero) {
    MockWriter writer;
    std::string bytes;
    EXPECT_CALL(writer, writeArrayPart(7, _)).WillOnce([&](uint32_t, const CPPByteArray& array) {
        bytes = toText(array);
        EXPECT_NE(dynamic_cast<const CPPExpandingByteArray*>(&array), nullptr);
    });
    writer.writeStringPart(7, std::string("a\0b", 3));
    EXPECT_EQ(bytes, std::string("a\0b", 3));
}

TEST(StructuredDataWriter, WriteStringPart_OfAnEmptyString_WritesAPartOfLengthZero) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 9);
    writer.writeStringPart(5, "");
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 09 00 00 00 05 00 00 00 00");
}

TEST(StructuredDataWriter, VirtualOperations_StandInTheirOrder) {
    EXPECT_EQ(test::virtualSlot(&StructuredDataWriter::writeArrayPart), 2u);
    EXPECT_EQ(test::virtualSlot(&StructuredDataWriter::writeBytesPart), 3u);
    EXPECT_EQ(test::virtualSlot(&StructuredDataWriter::writeStreamPart), 4u);
    EXPECT_EQ(test::virtualSlot(&StructuredDataWriter::writeWholeStreamPart), 5u);
    EXPECT_EQ(test::virtualSlot(&StructuredDataWriter::writeUInt32Part), 6u);
    EXPECT_EQ(test::VirtualSlots<StructuredDataWriter>::count(), 7u);
}

}  // namespace
}  // namespace dovrel
