// The sources of a byte array's content: other arrays, buffers and fills.

#include "serialization/CPPByteArray.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <utility>

#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::makeArray;
using test::toHex;
using test::toText;

TEST(CPPByteArrayContent, Default_IsEmptyAndHasNoBlock) {
    const CPPByteArray array;
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArrayContent, Copy_HasItsOwnBlock) {
    CPPByteArray original = makeArray("abc");
    const CPPByteArray copy(original);
    original.setByte(0, 'X');
    EXPECT_EQ(toText(copy), "abc");
}

TEST(CPPByteArrayContent, CopyOfEmpty_IsEmptyAndHasNoBlock) {
    const CPPByteArray original;
    const CPPByteArray copy(original);
    EXPECT_EQ(copy.getSize(), 0u);
    EXPECT_EQ(copy.data(), nullptr);
}

TEST(CPPByteArrayContent, Move_TakesTheBlockAndLeavesTheOtherEmpty) {
    CPPByteArray original = makeArray("abc");
    const uint8_t* const block = original.data();
    const CPPByteArray moved(std::move(original));
    EXPECT_EQ(moved.data(), block);
    EXPECT_EQ(toText(moved), "abc");
    EXPECT_EQ(original.getSize(), 0u);
    EXPECT_EQ(original.data(), nullptr);
}

TEST(CPPByteArrayContent, Assignment_CopiesANonEmptyArray) {
    CPPByteArray original = makeArray("abc");
    CPPByteArray target = makeArray("a longer text");
    target = original;
    original.setByte(0, 'X');
    EXPECT_EQ(toText(target), "abc");
}

TEST(CPPByteArrayContent, Assignment_OfAnEmptyArray_KeepsTheOldContent) {
    CPPByteArray target = makeArray("old");
    target = CPPByteArray();
    EXPECT_EQ(toText(target), "old");
}

TEST(CPPByteArrayContent, Assignment_OfItself_KeepsTheContent) {
    CPPByteArray array = makeArray("same");
    const uint8_t* const block = array.data();
    const CPPByteArray& same = array;
    array = same;
    EXPECT_EQ(toText(array), "same");
    EXPECT_EQ(array.data(), block);
}

TEST(CPPByteArrayContent, Assign_OfAnEmptyArray_Empties) {
    CPPByteArray target = makeArray("old");
    target.assign(CPPByteArray());
    EXPECT_EQ(target.getSize(), 0u);
    EXPECT_EQ(target.data(), nullptr);
}

TEST(CPPByteArrayContent, Assign_CopiesAndMayNameItself) {
    CPPByteArray target = makeArray("old");
    target.assign(makeArray("newer"));
    EXPECT_EQ(toText(target), "newer");
    target.assign(target);
    EXPECT_EQ(toText(target), "newer");
}

TEST(CPPByteArrayContent, Set_ReplacesTheContent) {
    CPPByteArray array = makeArray("old");
    array.set("newer", 5);
    EXPECT_EQ(toText(array), "newer");
}

TEST(CPPByteArrayContent, Set_OfLengthZero_LeavesNoBlock) {
    CPPByteArray array = makeArray("old");
    array.set(nullptr, 0);
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArrayContent, Set_FromItsOwnBytes_KeepsThem) {
    CPPByteArray array = makeArray("abcdef");
    array.set(array.data() + 2, 3);
    EXPECT_EQ(toText(array), "cde");
}

TEST(CPPByteArrayContent, SetFilled_RepeatsTheByte) {
    CPPByteArray array = makeArray("old");
    array.setFilled(5, 0xA5);
    EXPECT_EQ(toHex(array), "A5 A5 A5 A5 A5");
    array.setFilled(0, 0xA5);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArrayContent, SetFromPart_CopiesARangeOfTheSource) {
    CPPByteArray array = makeArray("old");
    array.setFromPart(makeArray("abcdef"), 2, 3);
    EXPECT_EQ(toText(array), "cde");
}

TEST(CPPByteArrayContent, SetFromPart_BeyondTheSource_StillHasTheLength) {
    CPPByteArray array;
    array.setFromPart(makeArray("abcdef"), 4, 5);
    ASSERT_EQ(array.getSize(), 5u);
    EXPECT_EQ(array.getByte(0), 'e');
    EXPECT_EQ(array.getByte(1), 'f');
    array.setFromPart(makeArray("abcdef"), 6, 2);
    EXPECT_EQ(array.getSize(), 2u);
    array.setFromPart(CPPByteArray(), 0xFFFFFFFF, 1);
    EXPECT_EQ(array.getSize(), 1u);
}

TEST(CPPByteArrayContent, SetFromPart_BytesThatTheSourceLacks_CarryNothingFromTheHeap) {
    CPPByteArray array = makeArray("secret");
    array.setFromPart(makeArray("ab"), 0, 6);
    EXPECT_EQ(toHex(array), "61 62 00 00 00 00");
}

TEST(CPPByteArrayContent, SetFromPart_OfItself_TakesTheRange) {
    CPPByteArray array = makeArray("abcdef");
    array.setFromPart(array, 1, 2);
    EXPECT_EQ(toText(array), "bc");
}

TEST(CPPByteArrayContent, SetOrThrow_ReplacesTheContent) {
    CPPByteArray array = makeArray("old content");
    array.setOrThrow("new", 3);
    EXPECT_EQ(toText(array), "new");
    array.setOrThrow(array.data() + 1, 2);
    EXPECT_EQ(toText(array), "ew") << "the source may be in the array";
    array.setOrThrow(nullptr, 0);
    EXPECT_EQ(array.getSize(), 0u);
}

TEST(CPPByteArrayContent, SetUninitialized_ReturnsThePlaceOfTheNewContent) {
    CPPByteArray array = makeArray("old");
    uint8_t* const place = array.setUninitialized(5);
    ASSERT_EQ(array.getSize(), 5u);
    EXPECT_EQ(place, array.data());
    std::memcpy(place, "fresh", 5);
    EXPECT_EQ(toText(array), "fresh");
    EXPECT_EQ(array.setUninitialized(0), nullptr);
    EXPECT_EQ(array.getSize(), 0u);
}

TEST(CPPByteArrayContent, RequireSize_ThrowsForEveryOtherSize) {
    const CPPByteArray array = makeArray("abc");
    EXPECT_NO_THROW(array.requireSize(3));
    EXPECT_THROW(array.requireSize(2), std::bad_alloc);
    EXPECT_THROW(array.requireSize(4), std::bad_alloc);
}

TEST(CPPByteArrayContent, Array_HoldsItsSizeAndItsBlockOnly) {
    struct Fields {
        virtual ~Fields() = default;
        uint32_t size;
        uint8_t* data;
    };
    EXPECT_EQ(sizeof(CPPByteArray), sizeof(Fields));
}

TEST(CPPByteArrayContent, KeepPart_UsesTheSameBlock) {
    CPPByteArray array = makeArray("a part of it");
    const uint8_t* const block = array.data();
    array.keepPart(2, 4);
    EXPECT_EQ(toText(array), "part");
    EXPECT_EQ(array.data(), block);
    array.resize(6, '!');
    EXPECT_EQ(toText(array), "part!!");
    EXPECT_TRUE(array.insertAtStart("third ", 6));
    EXPECT_EQ(toText(array), "third part!!");
    EXPECT_TRUE(array.insertAtStart("now longer than the block: ", 27));
    EXPECT_EQ(toText(array), "now longer than the block: third part!!");
    array.resize(3, 0);
    EXPECT_EQ(toText(array), "now");
}

TEST(CPPByteArrayContent, ArrayAfterKeepPart_IsCopiedMovedSwappedShrunkAndReplacedLikeAnother) {
    const auto makePart = [] {
        CPPByteArray array = makeArray("a part of it");
        array.keepPart(2, 4);
        return array;
    };
    CPPByteArray array = makePart();
    CPPByteArray other = makeArray("other");
    array.swap(other);
    EXPECT_EQ(toText(array), "other");
    EXPECT_EQ(toText(other), "part");
    const CPPByteArray copy = other;
    EXPECT_EQ(toText(copy), "part");
    other.resize(3, 0);
    EXPECT_EQ(toText(other), "par");
    other.resize(100, '!');
    EXPECT_EQ(toText(other), "par" + std::string(97, '!'));
    other = makePart();
    other.assign(array);
    EXPECT_EQ(toText(other), "other");
    array = makePart();
    array.resize(0, 0);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArrayContent, KeepPart_OfNothing_IsEmptyAndHasNoBlock) {
    CPPByteArray array = makeArray("text");
    array.keepPart(4, 0);
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArrayContent, InsertAtStart_MovesTheContent) {
    CPPByteArray array = makeArray("content");
    EXPECT_TRUE(array.insertAtStart("more ", 5));
    EXPECT_EQ(toText(array), "more content");
    EXPECT_TRUE(array.insertAtStart(nullptr, 0));
    EXPECT_EQ(toText(array), "more content");
    CPPByteArray empty;
    EXPECT_TRUE(empty.insertAtStart("first", 5));
    EXPECT_EQ(toText(empty), "first");
}

TEST(CPPByteArrayContent, InsertAtStart_OfMoreThanAnArrayHolds_ChangesNothing) {
    CPPByteArray array = makeArray("x");
    EXPECT_FALSE(array.insertAtStart("", 0xFFFFFFFF));
    EXPECT_EQ(toText(array), "x");
}

TEST(CPPByteArrayContent, Swap_ExchangesTheBlocks) {
    CPPByteArray one = makeArray("one");
    CPPByteArray other;
    one.swap(other);
    EXPECT_EQ(one.getSize(), 0u);
    EXPECT_EQ(toText(other), "one");
}

}  // namespace
}  // namespace dovrel
