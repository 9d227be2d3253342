#include "serialization/CPPByteArray.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::makeArray;
using test::toHex;
using test::toText;

TEST(CPPByteArray, GetByte_AtSizeAndBeyond_IsZero) {
    const CPPByteArray array = makeArray("ab");
    EXPECT_EQ(array.getByte(1), 'b');
    EXPECT_EQ(array.getByte(2), 0);
    EXPECT_EQ(array.getByte(0xFFFFFFFF), 0);
    EXPECT_EQ(CPPByteArray().getByte(0), 0);
}

TEST(CPPByteArray, ReadBytes_CopiesNoMoreThanThereIs) {
    const CPPByteArray array = makeArray("abcde");
    char bytes[] = "......";
    array.readBytes(3, bytes, 6);
    EXPECT_STREQ(bytes, "de....");
    array.readBytes(0, bytes, 1);
    EXPECT_STREQ(bytes, "ae....");
}

TEST(CPPByteArray, ReadBytes_FromTheEndOrBeyond_CopiesNothing) {
    const CPPByteArray array = makeArray("abc");
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
    CPPByteArray array = makeArray("ab");
    array.setByte(2, 'x');
    array.setByte(1, 'y');
    EXPECT_EQ(toText(array), "ay");
}

TEST(CPPByteArray, WriteBytes_PastTheEnd_IsClipped) {
    CPPByteArray array = makeArray(".....");
    array.writeBytes(3, "abcdef", 6);
    EXPECT_EQ(toText(array), "...ab");
}

TEST(CPPByteArray, WriteBytes_FromTheEndOrBeyond_IsIgnored) {
    CPPByteArray array = makeArray("abc");
    array.writeBytes(3, "xyz", 3);
    array.writeBytes(0xFFFFFFFF, "xyz", 3);
    EXPECT_EQ(toText(array), "abc");
}

TEST(CPPByteArray, WriteBytes_WhoseEndWraps_IsClippedToTheEnd) {
    CPPByteArray array = makeArray("abc");
    const std::string text = "vwxyz";
    array.writeBytes(1, text.data(), 0xFFFFFFFF);
    EXPECT_EQ(toText(array), "avw");
}

TEST(CPPByteArray, CopyFrom_IsClippedToBothSizes) {
    CPPByteArray array = makeArray(".....");
    array.copyFrom(1, makeArray("abcdef"), 2, 3);
    EXPECT_EQ(toText(array), ".de..");
    array.copyFrom(3, makeArray("abcdef"), 6, 0);
    EXPECT_EQ(toText(array), ".deab");
    array.copyFrom(0, makeArray("xyz"), 5, 2);
    EXPECT_EQ(toText(array), "zdeab");
}

TEST(CPPByteArray, CopyFrom_OffsetOrSourceOffsetAtTheEnd_IsIgnored) {
    CPPByteArray array = makeArray("abc");
    array.copyFrom(3, makeArray("xyz"), 1, 0);
    array.copyFrom(0, makeArray("xyz"), 1, 3);
    array.copyFrom(0, CPPByteArray(), 1, 0);
    EXPECT_EQ(toText(array), "abc");
}

TEST(CPPByteArray, CopyFrom_ItsOwnOverlappingBytes_MovesThem) {
    CPPByteArray array = makeArray("abcdef");
    array.copyFrom(1, array, 4, 0);
    EXPECT_EQ(toText(array), "aabcdf");
}

TEST(CPPByteArray, Resize_ToASmallerSize_DropsTheTail) {
    CPPByteArray array = makeArray("abcdef");
    array.resize(2, 'z');
    EXPECT_EQ(toText(array), "ab");
    array.resize(0, 'z');
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArray, Resize_ToALargerSize_AppendsTheFillByte) {
    CPPByteArray array = makeArray("ab");
    array.resize(5, 'z');
    EXPECT_EQ(toText(array), "abzzz");
    CPPByteArray empty;
    empty.resize(2, 0x7F);
    EXPECT_EQ(toHex(empty), "7F 7F");
}

TEST(CPPByteArray, Compare_ShorterPrefixIsSmaller) {
    EXPECT_EQ(makeArray("ab").compare(makeArray("abc")), -1);
    EXPECT_EQ(makeArray("abc").compare(makeArray("ab")), 1);
    EXPECT_EQ(CPPByteArray().compare(makeArray("a")), -1);
}

TEST(CPPByteArray, Compare_FirstDifferenceDecidesBeforeTheLength) {
    EXPECT_EQ(makeArray("b").compare(makeArray("abc")), 1);
    EXPECT_EQ(makeArray("abc").compare(makeArray("b")), -1);
}

TEST(CPPByteArray, Compare_BytesAreUnsigned) {
    EXPECT_EQ(arrayFromHex("80").compare(arrayFromHex("7F")), 1);
    EXPECT_EQ(arrayFromHex("00 7F").compare(arrayFromHex("00 FF")), -1);
}

TEST(CPPByteArray, Compare_EqualContent_IsZero) {
    EXPECT_EQ(makeArray("abc").compare(makeArray("abc")), 0);
    EXPECT_EQ(CPPByteArray().compare(CPPByteArray()), 0);
}

TEST(CPPByteArray, Compare_WithARawBuffer_IsTheSame) {
    EXPECT_EQ(makeArray("ab").compare("abc", 3), -1);
    EXPECT_EQ(makeArray("ab").compare("abc", 2), 0);
    EXPECT_EQ(makeArray("b").compare("abc", 3), 1);
    EXPECT_EQ(makeArray("b").compare(nullptr, 0), 1);
}

TEST(CPPByteArray, Less_OrdersSortedContainers) {
    std::set<CPPByteArray, decltype(&CPPByteArray::less)> keys(&CPPByteArray::less);
    for (const char* text : {"b", "abc", "ab", "", "ab"}) {
        keys.insert(makeArray(text));
    }
    std::vector<std::string> inOrder;
    for (const CPPByteArray& key : keys) {
        inOrder.push_back(toText(key));
    }
    EXPECT_EQ(inOrder, (std::vector<std::string>{"", "ab", "abc", "b"}));
}

TEST(CPPByteArray, VirtualOperations_StandInTheirOrder) {
    EXPECT_EQ(test::virtualSlot(&CPPByteArray::setByte), 2u);
    EXPECT_EQ(test::virtualSlot(&CPPByteArray::writeBytes), 3u);
    EXPECT_EQ(test::virtualSlot(&CPPByteArray::copyFrom), 4u);
    EXPECT_EQ(test::VirtualSlots<CPPByteArray>::count(), 5u);
}

}  // namespace
}  // namespace dovrel
