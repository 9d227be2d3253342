// The sources of a byte array's content: other arrays, buffers and fills.

#include "serialization/CPPByteArray.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <utility>

#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::arrayOf;
using test::arrayOfHex;
using test::hexOf;
using test::textOf;

TEST(CPPByteArrayContent, Default_IsEmptyAndHasNoBlock) {
    const CPPByteArray array;
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArrayContent, Copy_HasItsOwnBlock) {
    CPPByteArray original = arrayOf("abc");
    const CPPByteArray copy(original);
    original.setByte(0, 'X');
    EXPECT_EQ(textOf(copy), "abc");
}

TEST(CPPByteArrayContent, CopyOfEmpty_IsEmptyAndHasNoBlock) {
    const CPPByteArray original;
    const CPPByteArray copy(original);
    EXPECT_EQ(copy.getSize(), 0u);
    EXPECT_EQ(copy.data(), nullptr);
}

TEST(CPPByteArrayContent, Move_TakesTheBlockAndLeavesTheOtherEmpty) {
    CPPByteArray original = arrayOf("abc");
    const uint8_t* const block = original.data();
    const CPPByteArray moved(std::move(original));
    EXPECT_EQ(moved.data(), block);
    EXPECT_EQ(textOf(moved), "abc");
    EXPECT_EQ(original.getSize(), 0u);
    EXPECT_EQ(original.data(), nullptr);
}

TEST(CPPByteArrayContent, Assignment_CopiesANonEmptyArray) {
    CPPByteArray original = arrayOf("abc");
    CPPByteArray target = arrayOf("a longer text");
    target = original;
    original.setByte(0, 'X');
    EXPECT_EQ(textOf(target), "abc");
}

TEST(CPPByteArrayContent, Assignment_OfAnEmptyArray_KeepsTheOldContent) {
    CPPByteArray target = arrayOf("old");
    target = CPPByteArray();
    EXPECT_EQ(textOf(target), "old");
}

TEST(CPPByteArrayContent, Assignment_OfItself_KeepsTheContent) {
    CPPByteArray array = arrayOf("same");
    const uint8_t* const block = array.data();
    const CPPByteArray& same = array;
    array = same;
    EXPECT_EQ(textOf(array), "same");
    EXPECT_EQ(array.data(), block);
}

TEST(CPPByteArrayContent, Assign_OfAnEmptyArray_Empties) {
    CPPByteArray target = arrayOf("old");
    target.assign(CPPByteArray());
    EXPECT_EQ(target.getSize(), 0u);
    EXPECT_EQ(target.data(), nullptr);
}

TEST(CPPByteArrayContent, Assign_CopiesAndMayNameItself) {
    CPPByteArray target = arrayOf("old");
    target.assign(arrayOf("newer"));
    EXPECT_EQ(textOf(target), "newer");
    target.assign(target);
    EXPECT_EQ(textOf(target), "newer");
}

TEST(CPPByteArrayContent, Set_ReplacesTheContent) {
    CPPByteArray array = arrayOf("old");
    array.set("newer", 5);
    EXPECT_EQ(textOf(array), "newer");
}

TEST(CPPByteArrayContent, Set_OfLengthZero_LeavesNoBlock) {
    CPPByteArray array = arrayOf("old");
    array.set(nullptr, 0);
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArrayContent, Set_FromItsOwnBytes_KeepsThem) {
    CPPByteArray array = arrayOf("abcdef");
    array.set(array.data() + 2, 3);
    EXPECT_EQ(textOf(array), "cde");
}

TEST(CPPByteArrayContent, SetFilled_RepeatsTheByte) {
    CPPByteArray array = arrayOf("old");
    array.setFilled(5, 0xA5);
    EXPECT_EQ(hexOf(array), "A5 A5 A5 A5 A5");
    array.setFilled(0, 0xA5);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArrayContent, SetFromPart_CopiesARangeOfTheSource) {
    CPPByteArray array = arrayOf("old");
    array.setFromPart(arrayOf("abcdef"), 2, 3);
    EXPECT_EQ(textOf(array), "cde");
}

TEST(CPPByteArrayContent, SetFromPart_BeyondTheSource_HasTheLengthAllTheSame) {
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

TEST(CPPByteArrayContent, SetFromPart_BytesThatTheSourceLacks_CarryNothingFromTheHeap) {
    CPPByteArray array = arrayOf("secret");
    array.setFromPart(arrayOf("ab"), 0, 6);
    EXPECT_EQ(hexOf(array), "61 62 00 00 00 00");
}

TEST(CPPByteArrayContent, SetFromPart_OfItself_TakesTheRange) {
    CPPByteArray array = arrayOf("abcdef");
    array.setFromPart(array, 1, 2);
    EXPECT_EQ(textOf(array), "bc");
}

TEST(CPPByteArrayContent, SetOrThrow_ReplacesTheContent) {
    CPPByteArray array = arrayOf("old content");
    array.setOrThrow("new", 3);
    EXPECT_EQ(textOf(array), "new");
    array.setOrThrow(array.data() + 1, 2);
    EXPECT_EQ(textOf(array), "ew") << "the source may be in the array";
    array.setOrThrow(nullptr, 0);
    EXPECT_EQ(array.getSize(), 0u);
}

TEST(CPPByteArrayContent, SetUninitialized_ReturnsThePlaceOfTheNewContent) {
    CPPByteArray array = arrayOf("old");
    uint8_t* const place = array.setUninitialized(5);
    ASSERT_EQ(array.getSize(), 5u);
    EXPECT_EQ(place, array.data());
    std::memcpy(place, "fresh", 5);
    EXPECT_EQ(textOf(array), "fresh");
    EXPECT_EQ(array.setUninitialized(0), nullptr);
    EXPECT_EQ(array.getSize(), 0u);
}

TEST(CPPByteArrayContent, RequireSize_ThrowsForEveryOtherSize) {
    const CPPByteArray array = arrayOf("abc");
    EXPECT_NO_THROW(array.requireSize(3));
    EXPECT_THROW(array.requireSize(2), std::bad_alloc);
    EXPECT_THROW(array.requireSize(4), std::bad_alloc);
}

}  // namespace
}  // namespace dovrel
