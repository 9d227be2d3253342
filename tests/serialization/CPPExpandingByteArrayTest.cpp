#include "serialization/CPPExpandingByteArray.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::makeArray;
using test::makeExpandingArray;
using test::toHex;
using test::toText;

constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();

TEST(CPPExpandingByteArray, SetByte_BeyondTheEnd_GrowsExactlyAndFillsWithZero) {
    CPPExpandingByteArray array;
    array.setByte(5, 0x78);
    EXPECT_EQ(toHex(array), "00 00 00 00 00 78");
}

TEST(CPPExpandingByteArray, SetByte_BelowTheEnd_JustStores) {
    CPPExpandingByteArray array = makeExpandingArray("abc");
    array.setByte(1, 'X');
    EXPECT_EQ(toText(array), "aXc");
}

TEST(CPPExpandingByteArray, SetByte_AtTheLargestIndex_IsRefused) {
    CPPExpandingByteArray array = makeExpandingArray("abc");
    array.setByte(kLargest, 'X');
    EXPECT_EQ(toText(array), "abc");
}

TEST(CPPExpandingByteArray, WriteBytes_BeyondTheEnd_FillsTheGapWithZero) {
    CPPExpandingByteArray array = makeExpandingArray("a");
    array.writeBytes(3, "bc", 2);
    EXPECT_EQ(toHex(array), "61 00 00 62 63");
}

TEST(CPPExpandingByteArray, WriteBytes_OverTheEnd_GrowsToTheHighestByte) {
    CPPExpandingByteArray array = makeExpandingArray("abc");
    array.writeBytes(2, "XYZ", 3);
    EXPECT_EQ(toText(array), "abXYZ");
}

TEST(CPPExpandingByteArray, WriteBytes_BelowTheEnd_DoesNotShrink) {
    CPPExpandingByteArray array = makeExpandingArray("abcdef");
    array.writeBytes(1, "XY", 2);
    EXPECT_EQ(toText(array), "aXYdef");
}

TEST(CPPExpandingByteArray, WriteBytes_OfNothingBeyondTheEnd_GrowsToTheOffset) {
    CPPExpandingByteArray array = makeExpandingArray("ab");
    array.writeBytes(4, nullptr, 0);
    EXPECT_EQ(toHex(array), "61 62 00 00");
}

TEST(CPPExpandingByteArray, WriteBytes_WhoseEndWraps_IsRefused) {
    CPPExpandingByteArray array = makeExpandingArray("abc");
    array.writeBytes(2, "X", kLargest);
    array.writeBytes(kLargest, "X", 1);
    EXPECT_EQ(toText(array), "abc");
}

TEST(CPPExpandingByteArray, WriteBytes_OfItsOwnBytes_FindsThemAfterGrowing) {
    CPPExpandingByteArray array;
    array.setFilled(1, 'a');
    // Large enough that the block moves at least once while it grows.
    while (array.getSize() < 1u << 20)
        array.writeBytes(array.getSize(), array.data(), array.getSize());
    EXPECT_EQ(array.getSize(), 1u << 20);
    for (uint32_t i = 0; i < array.getSize(); ++i) {
        ASSERT_EQ(array.getByte(i), 'a') << i;
    }
}

TEST(CPPExpandingByteArray, CopyFrom_GrowsAndCopies) {
    CPPExpandingByteArray array = makeExpandingArray("ab");
    array.copyFrom(3, makeArray("uvwxyz"), 3, 2);
    EXPECT_EQ(toHex(array), "61 62 00 77 78 79");
}

TEST(CPPExpandingByteArray, CopyFrom_BeyondTheSource_StillGrowsWithZeros) {
    CPPExpandingByteArray array = makeExpandingArray("ab");
    array.copyFrom(2, makeArray("xyz"), 4, 1);
    EXPECT_EQ(toHex(array), "61 62 79 7A 00 00");
    array.copyFrom(6, makeArray("xyz"), 2, 3);
    EXPECT_EQ(toHex(array), "61 62 79 7A 00 00 00 00");
}

TEST(CPPExpandingByteArray, CopyFrom_BelowTheEnd_LeavesBytesThatTheSourceLacks) {
    CPPExpandingByteArray array = makeExpandingArray("abcdef");
    array.copyFrom(1, makeArray("xy"), 4, 1);
    EXPECT_EQ(toText(array), "aycdef");
}

TEST(CPPExpandingByteArray, CopyFrom_WhoseEndWraps_IsRefused) {
    CPPExpandingByteArray array = makeExpandingArray("abc");
    array.copyFrom(2, makeArray("xyz"), kLargest, 0);
    array.copyFrom(kLargest, makeArray("xyz"), 1, 0);
    EXPECT_EQ(toText(array), "abc");
}

TEST(CPPExpandingByteArray, CopyFrom_Itself_Appends) {
    CPPExpandingByteArray array = makeExpandingArray("abc");
    array.copyFrom(3, array, 3, 0);
    EXPECT_EQ(toText(array), "abcabc");
}

TEST(CPPExpandingByteArray, Assignment_OfAnEmptyArray_KeepsTheOldContent) {
    CPPExpandingByteArray array = makeExpandingArray("old");
    array = CPPExpandingByteArray();
    array = CPPByteArray();
    EXPECT_EQ(toText(array), "old");
    array = makeArray("new");
    EXPECT_EQ(toText(array), "new");
}

TEST(CPPExpandingByteArray, UsedThroughItsBase_Grows) {
    CPPExpandingByteArray array;
    CPPByteArray& base = array;
    base.writeBytes(0, "abc", 3);
    EXPECT_EQ(toText(base), "abc");
}

TEST(CPPExpandingByteArray, AddsNoFields) {
    EXPECT_EQ(sizeof(CPPExpandingByteArray), sizeof(CPPByteArray));
}

TEST(CPPExpandingByteArray, VirtualOperations_StandInTheSlotsOfTheBase) {
    EXPECT_EQ(test::virtualSlot(&CPPExpandingByteArray::setByte), 2u);
    EXPECT_EQ(test::virtualSlot(&CPPExpandingByteArray::writeBytes), 3u);
    EXPECT_EQ(test::virtualSlot(&CPPExpandingByteArray::copyFrom), 4u);
    EXPECT_EQ(test::VirtualSlots<CPPExpandingByteArray>::count(), 5u);
}

}  // namespace
}  // namespace dovrel
