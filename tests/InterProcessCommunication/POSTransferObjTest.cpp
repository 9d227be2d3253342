#include "InterProcessCommunication/POSTransferObj.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "client/exceptions/ExceptionTypeCodes.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::blockText;
using test::expectFailure;
using test::makeArray;
using test::toHex;
using test::toText;

constexpr char kHeader[] = "41 73 41 6B 00 01 00 00 00 09";

std::string withHeader(const std::string& parts) {
    return std::string(kHeader) + " " + parts;
}

// Fills the object as if these parts had been received.
void receive(POSTransferObj& object, const std::string& parts) {
    object.copyBytesFrom(arrayFromHex(withHeader(parts)));
}

static_assert(!std::is_polymorphic_v<POSTransferObj>, "a plain class");

TEST(POSTransferObj, New_IsTheBlockHeaderOfVersion9AndNoField) {
    const POSTransferObj object;
    EXPECT_EQ(toHex(object.bytes()), kHeader);
}

TEST(POSTransferObj, NewWithHeader_HasTheFields0And1And3InThisOrder) {
    const POSTransferObj object(1, 10, 14);
    EXPECT_EQ(toHex(object.bytes()), withHeader("00 00 00 00 00 00 00 04 01 00 00 00 "
                                                "00 00 00 01 00 00 00 04 0A 00 00 00 "
                                                "00 00 00 03 00 00 00 04 0E 00 00 00"));
}

TEST(POSTransferObj, NewWithFields_HasThemAfterTheHeaderFieldsAndCanGoOn) {
    POSTransferObj object(1, 10, 14, StructuredPart::ofNumber(103, 0xA1B2C3D4),
                          StructuredPart::ofBytes(110, "ab", 2));
    object.writeBytes(104, nullptr, 0);
    EXPECT_EQ(
        toHex(object.bytes()),
        toHex(POSTransferObj(1, 10, 14).bytes()) +
            " 00 00 00 67 00 00 00 04 D4 C3 B2 A1 00 00 00 6E 00 00 00 02 61 62 00 00 00 68 00 00 00 00");
}

TEST(POSTransferObj, Setters_WriteTheirHeaderFields) {
    POSTransferObj object;
    object.setCommand(0x01020304);
    object.setMessageKind(20);
    object.setTransferKind(1);
    EXPECT_EQ(toHex(object.bytes()), withHeader("00 00 00 03 00 00 00 04 04 03 02 01 "
                                                "00 00 00 01 00 00 00 04 14 00 00 00 "
                                                "00 00 00 00 00 00 00 04 01 00 00 00"));
}

TEST(POSTransferObj, WriteUInt32_IsFourBytesLeastSignificantFirst) {
    POSTransferObj object;
    object.writeUInt32(103, 0xA1B2C3D4);
    EXPECT_EQ(toHex(object.bytes()), withHeader("00 00 00 67 00 00 00 04 D4 C3 B2 A1"));
}

TEST(POSTransferObj, WriteBytes_IsTheBytesAsTheyAre) {
    POSTransferObj object;
    object.writeBytes(110, "a\0b", 3);
    EXPECT_EQ(toHex(object.bytes()), withHeader("00 00 00 6E 00 00 00 03 61 00 62"));
}

TEST(POSTransferObj, WriteByteArray_OfAnEmptyArray_IsAFieldOfLength0) {
    POSTransferObj object;
    object.writeByteArray(116, CPPByteArray());
    object.writeByteArray(110, makeArray("xy"));
    EXPECT_EQ(toHex(object.bytes()), withHeader("00 00 00 74 00 00 00 00 00 00 00 6E 00 00 00 02 78 79"));
}

TEST(POSTransferObj, WriteString_HasNoTerminator) {
    POSTransferObj object;
    object.writeString(150, "no");
    EXPECT_EQ(toHex(object.bytes()), withHeader("00 00 00 96 00 00 00 02 6E 6F"));
}

TEST(POSTransferObj, Write_ThatTheBytesCannotGrowBy_IsTheWritersFailure) {
    POSTransferObj object;
    expectFailure<StructuredWriteFailedException>(
        [&] { object.writeBytes(110, nullptr, 0xFFFFFFFF); }, exceptionTypeCode::kStructuredWriteFailed,
        "384269E80233: ", "Byte array too small (or did not expand as expected)");
}

TEST(POSTransferObj, ReadUInt32_OfTheTwoBytes05And01_Is0x105) {
    POSTransferObj object;
    receive(object, "00 00 00 67 00 00 00 02 05 01");
    EXPECT_EQ(object.readUInt32(103), 0x105u);
}

TEST(POSTransferObj, ReadUInt32_OfAnEmptyField_IsZero) {
    POSTransferObj object;
    receive(object, "00 00 00 67 00 00 00 00");
    EXPECT_EQ(object.readUInt32(103), 0u);
}

TEST(POSTransferObj, ReadUInt32_OfALongerField_IsItsFirstFourBytes) {
    POSTransferObj object;
    receive(object, "00 00 00 67 00 00 00 06 01 02 03 04 05 06");
    EXPECT_EQ(object.readUInt32(103), 0x04030201u);
}

TEST(POSTransferObj, HeaderField_OfALongerField_IsItsFirstFourBytes) {
    POSTransferObj object;
    receive(object,
            "00 00 00 01 00 00 00 09 14 00 00 00 FF FF FF FF FF 00 00 00 03 00 00 00 05 0A 0B 0C 0D EE");
    EXPECT_EQ(object.getMessageKind(), 20u);
    EXPECT_EQ(object.getCommand(), 0x0D0C0B0Au);
}

TEST(POSTransferObj, HeaderField_OfAShorterField_IsZeroExtended) {
    POSTransferObj object;
    receive(object, "00 00 00 01 00 00 00 01 14");
    EXPECT_EQ(object.getMessageKind(), 20u);
}

TEST(POSTransferObj, MissingHeaderField_IsTheFailureWithDefaultTexts) {
    POSTransferObj object;
    receive(object, "00 00 00 00 00 00 00 04 01 00 00 00");
    expectFailure<PartNotFoundException>([&] { object.getMessageKind(); }, exceptionTypeCode::kPartNotFound,
                                         "???", "???");
    expectFailure<PartNotFoundException>([&] { object.getCommand(); }, exceptionTypeCode::kPartNotFound,
                                         "???", "???");
}

TEST(POSTransferObj, MissingPayloadField_IsReportedAsByGetPart) {
    POSTransferObj object(1, 10, 17);
    const auto expectMissing = [](auto read) {
        expectFailure<PartNotFoundException>(read, exceptionTypeCode::kPartNotFound, "384181A400FA: ", "2");
    };
    expectMissing([&] { object.readUInt32(118); });
    expectMissing([&] { object.readByteArray(118); });
    expectMissing([&] { object.readString(118); });
    expectMissing([&] { object.readBlock(118); });
}

TEST(POSTransferObj, ReadOfNoBytes_IsTheReadersFailureEachTime) {
    POSTransferObj object;
    object.copyBytesFrom(CPPByteArray());
    const auto expectUnreadable = [](auto read) {
        expectFailure<StructuredReaderNotInitializedException>(
            read, exceptionTypeCode::kStructuredReaderNotInitialized, "3841954A010E: ", "1");
    };
    expectUnreadable([&] { object.getMessageKind(); });
    expectUnreadable([&] { object.getCommand(); });
    expectUnreadable([&] { object.readUInt32(103); });
    expectUnreadable([&] { object.readByteArray(103); });
    expectUnreadable([&] { object.readString(103); });
    expectUnreadable([&] { object.readBlock(103); });
    expectUnreadable([&] { object.hasField(103); });
}

TEST(POSTransferObj, ReadOfBytesThatAreNotABlock_IsTheReadersFailure) {
    POSTransferObj object;
    object.copyBytesFrom(makeArray("no structured block"));
    expectFailure<StructuredReaderNotInitializedException>([&] { object.getMessageKind(); },
                                                           exceptionTypeCode::kStructuredReaderNotInitialized,
                                                           "384190CE01EA: ", "1");
}

TEST(POSTransferObj, Bytes_MayBeWrittenUntilTheFirstReadAndAreParsedOnce) {
    POSTransferObj object(1, 10, 11);
    object.writeUInt32(103, 5);
    EXPECT_EQ(object.readUInt32(103), 5u);
    object.writeUInt32(118, 7);
    EXPECT_FALSE(object.hasField(118));
    EXPECT_EQ(object.getCommand(), 11u);
}

TEST(POSTransferObj, FieldWrittenTwice_ReadsAsTheFirst) {
    POSTransferObj object(1, 10, 11);
    object.setMessageKind(20);
    EXPECT_EQ(object.getMessageKind(), 10u);
}

TEST(POSTransferObj, ReadByteArrayAndString_GiveAllBytesOfTheField) {
    POSTransferObj object;
    receive(object, "00 00 00 6F 00 00 00 03 61 00 62 00 00 00 78 00 00 00 00");
    EXPECT_EQ(toHex(*object.readByteArray(111)), "61 00 62");
    EXPECT_EQ(object.readString(111), std::string("a\0b", 3));
    EXPECT_EQ(object.readByteArray(120)->getSize(), 0u);
    EXPECT_EQ(object.readString(120), "");
}

TEST(POSTransferObj, ReadBlock_ReturnsTheBytesAndTheirNumber) {
    POSTransferObj object;
    receive(object, "00 00 00 6F 00 00 00 03 61 00 62");
    EXPECT_EQ(blockText(object.readBlock(111)), std::string("a\0b", 3));
}

TEST(POSTransferObj, ReadBlock_OfAnEmptyField_IsNull) {
    POSTransferObj object;
    receive(object, "00 00 00 6F 00 00 00 00");
    const ByteBlock block = object.readBlock(111);
    EXPECT_EQ(block.data, nullptr);
    EXPECT_EQ(block.length, 0u);
}

TEST(POSTransferObj, CopyBytesTo_ReplacesWhateverTheArrayHeld) {
    CPPByteArray array = makeArray("something longer than the block");
    POSTransferObj().copyBytesTo(array);
    EXPECT_EQ(toHex(array), kHeader);
    POSTransferObj empty;
    empty.copyBytesFrom(CPPByteArray());
    empty.copyBytesTo(array);
    EXPECT_EQ(array.getSize(), 0u);
}

TEST(POSTransferObj, CopyBytesFrom_RebuildsAnObjectThatReadsLikeTheOneSent) {
    POSTransferObj sent(1, 10, 13);
    sent.writeUInt32(103, 42);
    CPPByteArray wire;
    sent.copyBytesTo(wire);

    POSTransferObj fromArray;
    fromArray.copyBytesFrom(wire);
    POSTransferObj fromMemory;
    fromMemory.copyBytesFrom(wire.data(), wire.getSize());
    for (POSTransferObj* received : {&fromArray, &fromMemory}) {
        EXPECT_EQ(toHex(received->bytes()), toHex(wire));
        EXPECT_EQ(received->getCommand(), 13u);
        EXPECT_EQ(received->readUInt32(103), 42u);
    }
}

}  // namespace
}  // namespace dovrel
