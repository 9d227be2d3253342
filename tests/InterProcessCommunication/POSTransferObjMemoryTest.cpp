// Whose memory the bytes of a transfer object are in, and when they are copied.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "InterProcessCommunication/POSTransferObj.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::blockText;
using test::expectFailure;
using test::toHex;
using test::toText;

ByteBlock makeBlock(const CPPByteArray& bytes) {
    ByteBlock block;
    block.data.reset(new uint8_t[bytes.getSize()]);
    block.length = bytes.getSize();
    bytes.readBytes(0, block.data.get(), block.length);
    return block;
}

// Returns the wire form of an object with this field.
CPPByteArray wireWith(uint32_t id, const std::string& field) {
    POSTransferObj sent(1, 11, 14);
    sent.writeString(id, field);
    return sent.takeBytes();
}

// An object that refers to its fields until they are needed.
struct DeferredObject : POSTransferObj {
    explicit DeferredObject(const std::string& field)
        : fields{StructuredPart::ofNumber(1, 10),
                 StructuredPart::ofBytes(110, field.data(), static_cast<uint32_t>(field.size()))} {
        deferFields(fields, 2);
    }
    StructuredPart fields[2];
};

TEST(POSTransferObjMemory, Received_OwnsItsBytesAndReadsLikeTheOneSent) {
    const CPPByteArray wire = wireWith(111, "result");
    ByteBlock block = makeBlock(wire);
    const uint8_t* const place = block.data.get();
    POSTransferObj received(std::move(block));
    EXPECT_EQ(received.bytes().data(), place);
    EXPECT_EQ(toHex(received.bytes()), toHex(wire));
    EXPECT_EQ(received.getCommand(), 14u);
    EXPECT_EQ(received.readString(111), "result");
    EXPECT_EQ(toHex(received.takeBytes()), toHex(wire));
}

TEST(POSTransferObjMemory, ReceivedWithoutBytes_IsNotABlock) {
    POSTransferObj received{ByteBlock()};
    EXPECT_EQ(received.bytes().getSize(), 0u);
    expectFailure<StructuredReaderNotInitializedException>([&] { received.getMessageKind(); }, 2,
                                                           "3841954A010E: ", "1");
}

TEST(POSTransferObjMemory, AdoptBytes_ReplacesWhatWasWritten) {
    POSTransferObj block(1, 10, 13);
    block.adoptBytes(makeBlock(wireWith(111, "block")));
    EXPECT_EQ(block.getCommand(), 14u);
    POSTransferObj array(1, 10, 13);
    array.adoptBytes(wireWith(111, "array"));
    EXPECT_EQ(array.readString(111), "array");
}

TEST(POSTransferObjMemory, TakeBlock_OfTheGreaterPartOfTheBytes_UsesTheirMemory) {
    const std::string large(100000, 'r');
    ByteBlock received = makeBlock(wireWith(111, large));
    const uint8_t* const place = received.data.get();
    POSTransferObj object(std::move(received));
    const ByteBlock block = object.takeBlock(111);
    EXPECT_EQ(block.data.get(), place);
    EXPECT_TRUE(blockText(block) == large);
}

TEST(POSTransferObjMemory, TakeBlock_OfASmallPart_IsACopy) {
    POSTransferObj sent(1, 11, 14);
    sent.writeString(111, "small");
    sent.writeString(120, std::string(10000, 'm'));
    ByteBlock received = makeBlock(sent.bytes());
    const uint8_t* const place = received.data.get();
    POSTransferObj object(std::move(received));
    const ByteBlock block = object.takeBlock(111);
    EXPECT_NE(block.data.get(), place);
    EXPECT_EQ(blockText(block), "small");
}

// Returns the wire form of an object with a field of that size, and with so many other bytes.
CPPByteArray wireWithSpare(uint32_t fieldSize, uint32_t spare) {
    const auto wireWithOther = [fieldSize](uint32_t other) {
        POSTransferObj sent(1, 11, 14);
        sent.writeString(111, std::string(fieldSize, 'f'));
        sent.writeString(120, std::string(other, 'o'));
        return sent.takeBytes();
    };
    const uint32_t least = wireWithOther(0).getSize();
    return wireWithOther(fieldSize + spare - least);
}

// The host keeps the whole block, so what it keeps in vain is limited: to 512 bytes, or an eighth of a large field.
TEST(POSTransferObjMemory, TakeBlock_AtTheLimitOfOtherBytes_UsesTheirMemoryAndBeyondItIsACopy) {
    for (const auto& [size, limit] : {std::pair<uint32_t, uint32_t>{100, 512}, {80000, 10000}}) {
        for (const uint32_t spare : {limit, limit + 1}) {
            ByteBlock received = makeBlock(wireWithSpare(size, spare));
            const uint8_t* const place = received.data.get();
            POSTransferObj object(std::move(received));
            const ByteBlock block = object.takeBlock(111);
            EXPECT_EQ(block.data.get() == place, spare == limit) << size << ", " << spare;
            EXPECT_TRUE(blockText(block) == std::string(size, 'f'));
        }
    }
}

TEST(POSTransferObjMemory, TakeBlock_OfAnEmptyField_HasNoData) {
    POSTransferObj object(makeBlock(wireWith(111, "")));
    const ByteBlock block = object.takeBlock(111);
    EXPECT_EQ(block.data, nullptr);
    EXPECT_EQ(block.length, 0u);
}

TEST(POSTransferObjMemory, TakeBlock_OfAnObjectThatWasWritten_IsACopy) {
    POSTransferObj object(1, 11, 14);
    object.writeString(111, "written");
    EXPECT_EQ(blockText(object.takeBlock(111)), "written");
}

TEST(POSTransferObjMemory, TakeBlock_OfAMissingField_FailsAsReadingIt) {
    POSTransferObj object(makeBlock(wireWith(120, "")));
    expectFailure<PartNotFoundException>([&] { object.takeBlock(111); }, 3, "384181A400FA: ", "2");
}

TEST(POSTransferObjMemory, DeferredFields_AreThoseAtTheTimeOfTheCopy) {
    std::string field = "first";
    const DeferredObject object(field);
    EXPECT_EQ(blockText(object.copyWireForm()).substr(30), "first");
    field = "later";
    const ByteBlock copy = object.copyWireForm();
    EXPECT_EQ(blockText(copy).substr(30), "later");
    EXPECT_EQ(blockText(copy), toText(object.bytes()));
    EXPECT_EQ(blockText(object.copyWireForm()), toText(object.bytes()));
}

TEST(POSTransferObjMemory, DeferredFields_CanBeReadAndWrittenTo) {
    const std::string field = "field";
    DeferredObject read(field);
    EXPECT_EQ(read.getMessageKind(), 10u);
    EXPECT_EQ(read.readString(110), "field");
    DeferredObject written(field);
    written.writeUInt32(3, 14);
    EXPECT_EQ(written.getCommand(), 14u);
    EXPECT_EQ(written.readString(110), "field");
}

TEST(POSTransferObjMemory, WriteByteArray_OfALargeTemporary_UsesItsMemory) {
    for (const uint32_t size : {10u, 4096u, 100000u}) {
        POSTransferObj expected(1, 11, 14);
        POSTransferObj object(1, 11, 14);
        CPPByteArray array;
        array.setFilled(size, 0x5A);
        expected.writeByteArray(111, array);
        object.writeByteArray(111, std::move(array));
        expected.writeUInt32(120, 7);
        object.writeUInt32(120, 7);
        EXPECT_TRUE(object.bytes().compare(expected.bytes()) == 0) << size;
    }
}

}  // namespace
}  // namespace dovrel
