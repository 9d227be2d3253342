#include "serialization/CPPExpandingByteArray.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::arrayOf;
using test::expandingArrayOf;
using test::hexOf;
using test::textOf;

constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();

TEST(CPPExpandingByteArray, SetByte_BeyondTheEnd_GrowsExactlyAndFillsWithZero) {
    CPPExpandingByteArray array;
    array.setByte(5, 0x78);
    EXPECT_EQ(hexOf(array), "00 00 00 00 00 78");
}

TEST(CPPExpandingByteArray, SetByte_BelowTheEnd_JustStores) {
    CPPExpandingByteArray array = expandingArrayOf("abc");
    array.setByte(1, 'X');
    EXPECT_EQ(textOf(array), "aXc");
}

TEST(CPPExpandingByteArray, SetByte_AtTheLargestIndex_IsRefused) {
    CPPExpandingByteArray array = expandingArrayOf("abc");
    array.setByte(kLargest, 'X');
    EXPECT_EQ(textOf(array), "abc");
}

TEST(CPPExpandingByteArray, WriteBytes_BeyondTheEnd_FillsTheGapWithZero) {
    CPPExpandingByteArray array = expandingArrayOf("a");
    array.writeBytes(3, "bc", 2);
    EXPECT_EQ(hexOf(array), "61 00 00 62 63");
}

TEST(CPPExpandingByteArray, WriteBytes_OverTheEnd_GrowsToTheHighestByte) {
    CPPExpandingByteArray array = expandingArrayOf("abc");
    array.writeBytes(2, "XYZ", 3);
    EXPECT_EQ(textOf(array), "abXYZ");
}

TEST(CPPExpandingByteArray, WriteBytes_BelowTheEnd_DoesNotShrink) {
    CPPExpandingByteArray array = expandingArrayOf("abcdef");
    array.writeBytes(1, "XY", 2);
    EXPECT_EQ(textOf(array), "aXYdef");
}

TEST(CPPExpandingByteArray, WriteBytes_OfNothingBeyondTheEnd_GrowsToTheOffset) {
    CPPExpandingByteArray array = expandingArrayOf("ab");
    array.writeBytes(4, nullptr, 0);
    EXPECT_EQ(hexOf(array), "61 62 00 00");
}

TEST(CPPExpandingByteArray, WriteBytes_WhoseEndWraps_IsRefused) {
    CPPExpandingByteArray array = expandingArrayOf("abc");
    array.writeBytes(2, "X", kLargest);
    array.writeBytes(kLargest, "X", 1);
    EXPECT_EQ(textOf(array), "abc");
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
    CPPExpandingByteArray array = expandingArrayOf("ab");
    array.copyFrom(3, arrayOf("uvwxyz"), 3, 2);
    EXPECT_EQ(hexOf(array), "61 62 00 77 78 79");
}

TEST(CPPExpandingByteArray, CopyFrom_BeyondTheSource_GrowsAllTheSameWithZeros) {
    CPPExpandingByteArray array = expandingArrayOf("ab");
    array.copyFrom(2, arrayOf("xyz"), 4, 1);
    EXPECT_EQ(hexOf(array), "61 62 79 7A 00 00");
    array.copyFrom(6, arrayOf("xyz"), 2, 3);
    EXPECT_EQ(hexOf(array), "61 62 79 7A 00 00 00 00");
}

TEST(CPPExpandingByteArray, CopyFrom_BelowTheEnd_LeavesBytesThatTheSourceLacks) {
    CPPExpandingByteArray array = expandingArrayOf("abcdef");
    array.copyFrom(1, arrayOf("xy"), 4, 1);
    EXPECT_EQ(textOf(array), "aycdef");
}

TEST(CPPExpandingByteArray, CopyFrom_WhoseEndWraps_IsRefused) {
    CPPExpandingByteArray array = expandingArrayOf("abc");
    array.copyFrom(2, arrayOf("xyz"), kLargest, 0);
    array.copyFrom(kLargest, arrayOf("xyz"), 1, 0);
    EXPECT_EQ(textOf(array), "abc");
}

TEST(CPPExpandingByteArray, CopyFrom_Itself_Appends) {
    CPPExpandingByteArray array = expandingArrayOf("abc");
    array.copyFrom(3, array, 3, 0);
    EXPECT_EQ(textOf(array), "abcabc");
}

TEST(CPPExpandingByteArray, Assignment_OfAnEmptyArray_KeepsTheOldContent) {
    CPPExpandingByteArray array = expandingArrayOf("old");
    array = CPPExpandingByteArray();
    array = CPPByteArray();
    EXPECT_EQ(textOf(array), "old");
    array = arrayOf("new");
    EXPECT_EQ(textOf(array), "new");
}

TEST(CPPExpandingByteArray, UsedThroughItsBase_Grows) {
    CPPExpandingByteArray array;
    CPPByteArray& base = array;
    base.writeBytes(0, "abc", 3);
    EXPECT_EQ(textOf(base), "abc");
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
