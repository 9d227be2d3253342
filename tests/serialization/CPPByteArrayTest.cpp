#include "serialization/CPPByteArray.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <utility>
#include <vector>

#include "tests/serialization/Bytes.h"
#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

using test::arrayOf;
using test::arrayOfHex;
using test::hexOf;
using test::textOf;

TEST(CPPByteArray, Default_IsEmptyAndHasNoBlock) {
    const CPPByteArray array;
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArray, Copy_HasItsOwnBlock) {
    CPPByteArray original = arrayOf("abc");
    const CPPByteArray copy(original);
    original.setByte(0, 'X');
    EXPECT_EQ(textOf(copy), "abc");
}

TEST(CPPByteArray, CopyOfEmpty_IsEmptyAndHasNoBlock) {
    const CPPByteArray original;
    const CPPByteArray copy(original);
    EXPECT_EQ(copy.getSize(), 0u);
    EXPECT_EQ(copy.data(), nullptr);
}

TEST(CPPByteArray, Move_TakesTheBlockAndLeavesTheOtherEmpty) {
    CPPByteArray original = arrayOf("abc");
    const uint8_t* const block = original.data();
    const CPPByteArray moved(std::move(original));
    EXPECT_EQ(moved.data(), block);
    EXPECT_EQ(textOf(moved), "abc");
    EXPECT_EQ(original.getSize(), 0u);
    EXPECT_EQ(original.data(), nullptr);
}

TEST(CPPByteArray, Assignment_CopiesANonEmptyArray) {
    CPPByteArray original = arrayOf("abc");
    CPPByteArray target = arrayOf("a longer text");
    target = original;
    original.setByte(0, 'X');
    EXPECT_EQ(textOf(target), "abc");
}

TEST(CPPByteArray, Assignment_OfAnEmptyArray_KeepsTheOldContent) {
    CPPByteArray target = arrayOf("old");
    target = CPPByteArray();
    EXPECT_EQ(textOf(target), "old");
}

TEST(CPPByteArray, Assignment_OfItself_KeepsTheContent) {
    CPPByteArray array = arrayOf("same");
    const uint8_t* const block = array.data();
    const CPPByteArray& same = array;
    array = same;
    EXPECT_EQ(textOf(array), "same");
    EXPECT_EQ(array.data(), block);
}

TEST(CPPByteArray, Assign_OfAnEmptyArray_Empties) {
    CPPByteArray target = arrayOf("old");
    target.assign(CPPByteArray());
    EXPECT_EQ(target.getSize(), 0u);
    EXPECT_EQ(target.data(), nullptr);
}

TEST(CPPByteArray, Assign_CopiesAndMayNameItself) {
    CPPByteArray target = arrayOf("old");
    target.assign(arrayOf("newer"));
    EXPECT_EQ(textOf(target), "newer");
    target.assign(target);
    EXPECT_EQ(textOf(target), "newer");
}

TEST(CPPByteArray, Set_ReplacesTheContent) {
    CPPByteArray array = arrayOf("old");
    array.set("newer", 5);
    EXPECT_EQ(textOf(array), "newer");
}

TEST(CPPByteArray, Set_OfLengthZero_LeavesNoBlock) {
    CPPByteArray array = arrayOf("old");
    array.set(nullptr, 0);
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArray, Set_FromItsOwnBytes_KeepsThem) {
    CPPByteArray array = arrayOf("abcdef");
    array.set(array.data() + 2, 3);
    EXPECT_EQ(textOf(array), "cde");
}

TEST(CPPByteArray, SetFilled_RepeatsTheByte) {
    CPPByteArray array = arrayOf("old");
    array.setFilled(5, 0xA5);
    EXPECT_EQ(hexOf(array), "A5 A5 A5 A5 A5");
    array.setFilled(0, 0xA5);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArray, SetFromPart_CopiesARangeOfTheSource) {
    CPPByteArray array = arrayOf("old");
    array.setFromPart(arrayOf("abcdef"), 2, 3);
    EXPECT_EQ(textOf(array), "cde");
}

TEST(CPPByteArray, SetFromPart_BeyondTheSource_HasTheLengthAllTheSame) {
    CPPByteArray array;
    array.setFromPart(arrayOf("abcdef"), 4, 5);
    ASSERT_EQ(array.getSize(), 5u);
    EXPECT_EQ(array.getByte(0), 'e');
    EXPECT_EQ(array.getByte(1), 'f');
    array.setFromPart(arrayOf("abcdef"), 6, 2);
    EXPECT_EQ(array.getSize(), 2u);
    array.setFromPart(CPPByteArray(), 0xFFFFFFFF, 1);
    EXPECT_EQ(array.getSize(), 1u);
}

TEST(CPPByteArray, SetFromPart_BytesThatTheSourceLacks_CarryNothingFromTheHeap) {
    CPPByteArray array = arrayOf("secret");
    array.setFromPart(arrayOf("ab"), 0, 6);
    EXPECT_EQ(hexOf(array), "61 62 00 00 00 00");
}

TEST(CPPByteArray, SetFromPart_OfItself_TakesTheRange) {
    CPPByteArray array = arrayOf("abcdef");
    array.setFromPart(array, 1, 2);
    EXPECT_EQ(textOf(array), "bc");
}

TEST(CPPByteArray, GetByte_AtSizeAndBeyond_IsZero) {
    const CPPByteArray array = arrayOf("ab");
    EXPECT_EQ(array.getByte(1), 'b');
    EXPECT_EQ(array.getByte(2), 0);
    EXPECT_EQ(array.getByte(0xFFFFFFFF), 0);
    EXPECT_EQ(CPPByteArray().getByte(0), 0);
}

TEST(CPPByteArray, ReadBytes_CopiesNoMoreThanThereIs) {
    const CPPByteArray array = arrayOf("abcde");
    char bytes[] = "......";
    array.readBytes(3, bytes, 6);
    EXPECT_STREQ(bytes, "de....");
    array.readBytes(0, bytes, 1);
    EXPECT_STREQ(bytes, "ae....");
}

TEST(CPPByteArray, ReadBytes_FromTheEndOrBeyond_CopiesNothing) {
    const CPPByteArray array = arrayOf("abc");
    char bytes[] = "..";
    array.readBytes(3, bytes, 1);
    array.readBytes(0xFFFFFFFF, bytes, 2);
    array.readBytes(0, nullptr, 0);
    EXPECT_STREQ(bytes, "..");
}

TEST(CPPByteArray, SetByte_BeyondTheEnd_ChangesNothing) {
    CPPByteArray empty;
    empty.setByte(5, 'x');
    EXPECT_EQ(empty.getSize(), 0u);
    CPPByteArray array = arrayOf("ab");
    array.setByte(2, 'x');
    array.setByte(1, 'y');
    EXPECT_EQ(textOf(array), "ay");
}

TEST(CPPByteArray, WriteBytes_PastTheEnd_IsClipped) {
    CPPByteArray array = arrayOf(".....");
    array.writeBytes(3, "abcdef", 6);
    EXPECT_EQ(textOf(array), "...ab");
}

TEST(CPPByteArray, WriteBytes_FromTheEndOrBeyond_IsIgnored) {
    CPPByteArray array = arrayOf("abc");
    array.writeBytes(3, "xyz", 3);
    array.writeBytes(0xFFFFFFFF, "xyz", 3);
    EXPECT_EQ(textOf(array), "abc");
}

TEST(CPPByteArray, WriteBytes_WhoseEndWraps_IsClippedToTheEnd) {
    CPPByteArray array = arrayOf("abc");
    const std::string text = "vwxyz";
    array.writeBytes(1, text.data(), 0xFFFFFFFF);
    EXPECT_EQ(textOf(array), "avw");
}

TEST(CPPByteArray, CopyFrom_IsClippedToBothSizes) {
    CPPByteArray array = arrayOf(".....");
    array.copyFrom(1, arrayOf("abcdef"), 2, 3);
    EXPECT_EQ(textOf(array), ".de..");
    array.copyFrom(3, arrayOf("abcdef"), 6, 0);
    EXPECT_EQ(textOf(array), ".deab");
    array.copyFrom(0, arrayOf("xyz"), 5, 2);
    EXPECT_EQ(textOf(array), "zdeab");
}

TEST(CPPByteArray, CopyFrom_OffsetOrSourceOffsetAtTheEnd_IsIgnored) {
    CPPByteArray array = arrayOf("abc");
    array.copyFrom(3, arrayOf("xyz"), 1, 0);
    array.copyFrom(0, arrayOf("xyz"), 1, 3);
    array.copyFrom(0, CPPByteArray(), 1, 0);
    EXPECT_EQ(textOf(array), "abc");
}

TEST(CPPByteArray, CopyFrom_ItsOwnOverlappingBytes_MovesThem) {
    CPPByteArray array = arrayOf("abcdef");
    array.copyFrom(1, array, 4, 0);
    EXPECT_EQ(textOf(array), "aabcdf");
}

TEST(CPPByteArray, Resize_ToASmallerSize_DropsTheTail) {
    CPPByteArray array = arrayOf("abcdef");
    array.resize(2, 'z');
    EXPECT_EQ(textOf(array), "ab");
    array.resize(0, 'z');
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArray, Resize_ToALargerSize_AppendsTheFillByte) {
    CPPByteArray array = arrayOf("ab");
    array.resize(5, 'z');
    EXPECT_EQ(textOf(array), "abzzz");
    CPPByteArray empty;
    empty.resize(2, 0x7F);
    EXPECT_EQ(hexOf(empty), "7F 7F");
}

TEST(CPPByteArray, Compare_ShorterPrefixIsSmaller) {
    EXPECT_EQ(arrayOf("ab").compare(arrayOf("abc")), -1);
    EXPECT_EQ(arrayOf("abc").compare(arrayOf("ab")), 1);
    EXPECT_EQ(CPPByteArray().compare(arrayOf("a")), -1);
}

TEST(CPPByteArray, Compare_FirstDifferenceDecidesBeforeTheLength) {
    EXPECT_EQ(arrayOf("b").compare(arrayOf("abc")), 1);
    EXPECT_EQ(arrayOf("abc").compare(arrayOf("b")), -1);
}

TEST(CPPByteArray, Compare_BytesAreUnsigned) {
    EXPECT_EQ(arrayOfHex("80").compare(arrayOfHex("7F")), 1);
    EXPECT_EQ(arrayOfHex("00 7F").compare(arrayOfHex("00 FF")), -1);
}

TEST(CPPByteArray, Compare_EqualContent_IsZero) {
    EXPECT_EQ(arrayOf("abc").compare(arrayOf("abc")), 0);
    EXPECT_EQ(CPPByteArray().compare(CPPByteArray()), 0);
}

TEST(CPPByteArray, Compare_WithARawBuffer_IsTheSame) {
    EXPECT_EQ(arrayOf("ab").compare("abc", 3), -1);
    EXPECT_EQ(arrayOf("ab").compare("abc", 2), 0);
    EXPECT_EQ(arrayOf("b").compare("abc", 3), 1);
    EXPECT_EQ(arrayOf("b").compare(nullptr, 0), 1);
}

TEST(CPPByteArray, Less_OrdersSortedContainers) {
    std::set<CPPByteArray, decltype(&CPPByteArray::less)> keys(&CPPByteArray::less);
    for (const char* text : {"b", "abc", "ab", "", "ab"}) {
        keys.insert(arrayOf(text));
    }
    std::vector<std::string> inOrder;
    for (const CPPByteArray& key : keys) {
        inOrder.push_back(textOf(key));
    }
    EXPECT_EQ(inOrder, (std::vector<std::string>{"", "ab", "abc", "b"}));
}

TEST(CPPByteArray, LoadFromStream_TakesTheWholeStreamFromItsStart) {
    std::istringstream stream("whole text");
    stream.seekg(4);
    CPPByteArray array = arrayOf("old");
    array.loadFromStream(stream);
    EXPECT_EQ(textOf(array), "whole text");
}

TEST(CPPByteArray, LoadFromStream_OfAnEmptyStream_Empties) {
    std::istringstream stream("");
    CPPByteArray array = arrayOf("old");
    array.loadFromStream(stream);
    EXPECT_EQ(array.getSize(), 0u);
}

TEST(CPPByteArray, LoadFromStream_ThatCannotBeMeasured_ChangesNothing) {
    std::istringstream stream("text");
    stream.setstate(std::ios::badbit);
    CPPByteArray array = arrayOf("old");
    array.loadFromStream(stream);
    EXPECT_EQ(textOf(array), "old");
}

TEST(CPPByteArray, LoadFromStream_WithALength_TakesTheNextBytes) {
    std::istringstream stream("abcdef");
    CPPByteArray array;
    array.loadFromStream(stream, 2);
    EXPECT_EQ(textOf(array), "ab");
    array.loadFromStream(stream, 3);
    EXPECT_EQ(textOf(array), "cde");
    array.loadFromStream(stream, 0);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArray, LoadFromStream_OfAShortStream_HasTheLengthAllTheSame) {
    std::istringstream stream("ab");
    CPPByteArray array;
    array.loadFromStream(stream, 4);
    ASSERT_EQ(array.getSize(), 4u);
    EXPECT_EQ(array.getByte(0), 'a');
    EXPECT_EQ(array.getByte(1), 'b');
    EXPECT_TRUE(stream.eof());
}

TEST(CPPByteArray, VirtualOperations_StandInTheirOrder) {
    EXPECT_EQ(test::virtualSlot(&CPPByteArray::setByte), 2u);
    EXPECT_EQ(test::virtualSlot(&CPPByteArray::writeBytes), 3u);
    EXPECT_EQ(test::virtualSlot(&CPPByteArray::copyFrom), 4u);
    EXPECT_EQ(test::VirtualSlots<CPPByteArray>::count(), 5u);
}

}  // namespace
}  // namespace dovrel
