#include "serialization/StructuredBlockEncoder.h"

#include <gtest/gtest.h>

#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::expectFailure;
using test::makeArray;
using test::toHex;
using test::toText;

TEST(StructuredBlockEncoder, Parts_FollowTheHeaderInTheirOrder) {
    const CPPByteArray array = makeArray("array");
    CPPByteArray block;
    encodeStructuredBlock(block, 9, StructuredPart::ofNumber(1, 0xA1B2C3D4),
                          StructuredPart::ofBytes(2, "bytes", 5), StructuredPart::ofArray(0x01020304, array),
                          StructuredPart::ofBytes(3, nullptr, 0));
    EXPECT_EQ(toHex(block),
              "41 73 41 6B 00 01 00 00 00 09 "
              "00 00 00 01 00 00 00 04 D4 C3 B2 A1 "
              "00 00 00 02 00 00 00 05 62 79 74 65 73 "
              "01 02 03 04 00 00 00 05 61 72 72 61 79 "
              "00 00 00 03 00 00 00 00");
}

TEST(StructuredBlockEncoder, WithoutParts_IsTheHeader) {
    CPPByteArray block;
    encodeStructuredBlock(block, 0x12345678);
    EXPECT_EQ(toHex(block), "41 73 41 6B 00 01 12 34 56 78");
}

TEST(StructuredBlockEncoder, MeasureAndStore_AndAnArrayOfParts_MakeTheSameBlock) {
    const StructuredPart parts[] = {StructuredPart::ofNumber(1, 5), StructuredPart::ofBytes(2, "bytes", 5)};
    CPPByteArray expected;
    encodeStructuredBlock(expected, 9, parts[0], parts[1]);
    CPPByteArray stored = test::plainArray(measureStructuredBlock(parts, 2) + 1);
    storeStructuredBlock(stored.setUninitialized(stored.getSize() - 1), 9, parts, 2);
    EXPECT_EQ(toHex(stored), toHex(expected));
    CPPByteArray encoded;
    encodeStructuredBlock(encoded, 9, parts, 2);
    EXPECT_EQ(toHex(encoded), toHex(expected));
}

TEST(StructuredBlockEncoder, Target_IsReplaced) {
    CPPByteArray block = makeArray("something longer than the block");
    encodeStructuredBlock(block, 8);
    EXPECT_EQ(toHex(block), "41 73 41 6B 00 01 00 00 00 08");
}

// The lengths alone decide: nothing is read from the bytes.
TEST(StructuredBlockEncoder, PartsThatAreTooLongTogether_FailAndLeaveTheTarget) {
    const uint8_t byte = 0;
    const auto failsWith = [](const auto&... parts) {
        CPPByteArray block = makeArray("old");
        const auto fails = [](const auto& encode) {
            expectFailure<StructuredWriteFailedException>(
                encode, 5, "384269E80233: ", "Byte array too small (or did not expand as expected)");
        };
        const StructuredPart array[] = {parts...};
        fails([&] { encodeStructuredBlock(block, 9, parts...); });
        fails([&] { encodeStructuredBlock(block, 9, array, sizeof...(parts)); });
        EXPECT_EQ(toText(block), "old");
    };
    failsWith(StructuredPart::ofBytes(1, &byte, 0xFFFFFFFF));
    // The sum of header, part header and data is 2^32.
    failsWith(StructuredPart::ofBytes(1, &byte, 0xFFFFFFFF - 17));
    failsWith(StructuredPart::ofBytes(1, &byte, 0x80000000), StructuredPart::ofBytes(2, &byte, 0x80000000));
}

}  // namespace
}  // namespace dovrel
