#include "serialization/ByteArrayList.h"

#include <gtest/gtest.h>

#include <string>

#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::expectFailure;
using test::makeArray;
using test::toHex;
using test::toText;

constexpr char kEmptyList[] = "41 73 41 6B 00 01 00 00 00 08 00 00 00 00 00 00 00 04 00 00 00 00";

TEST(ByteArrayList, OfAbAndAnEmptyArray_HasTheGoldenBytes) {
    CPPExpandingByteArray block;
    writeByteArrayList({makeArray("ab"), CPPByteArray()}, block);
    EXPECT_EQ(toHex(block),
              "41 73 41 6B 00 01 00 00 00 08 "
              "00 00 00 00 00 00 00 04 02 00 00 00 "
              "00 00 00 05 00 00 00 02 61 62 "
              "00 00 00 07 00 00 00 00");
}

TEST(ByteArrayList, Empty_IsOnlyTheCount) {
    CPPExpandingByteArray block;
    writeByteArrayList(std::vector<CPPByteArray>(), block);
    EXPECT_EQ(toHex(block), kEmptyList);
}

TEST(ByteArrayList, ReadBack_HasTheElementsInTheirOrder) {
    const CPPByteArray block = arrayFromHex(
        "41 73 41 6B 00 01 00 00 00 08"
        "00 00 00 00 00 00 00 04 03 00 00 00"
        "00 00 00 07 00 00 00 00"
        "00 00 00 05 00 00 00 02 61 62"
        "00 00 00 09 00 00 00 01 63");
    std::vector<CPPByteArray> list(5, makeArray("old"));
    readByteArrayList(block, list);
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(toText(list[0]), "ab");
    EXPECT_EQ(toText(list[1]), "");
    EXPECT_EQ(toText(list[2]), "c");
}

TEST(ByteArrayList, CountZero_YieldsAnEmptyListAndReadsNoElements) {
    const CPPByteArray block = arrayFromHex(std::string(kEmptyList) + "00 00 00 05 00 00 00 02 61 62");
    std::vector<CPPByteArray> list(1, makeArray("old"));
    readByteArrayList(block, list);
    EXPECT_TRUE(list.empty());
}

TEST(ByteArrayList, CountThatNoPartBacks_FailsAtTheFirstMissingPart) {
    const CPPByteArray block = arrayFromHex(
        "41 73 41 6B 00 01 00 00 00 08"
        "00 00 00 00 00 00 00 04 FF FF FF FF"
        "00 00 00 05 00 00 00 02 61 62");
    std::vector<CPPByteArray> list;
    expectFailure<PartNotFoundException>([&] { readByteArrayList(block, list); }, 3, "384181A400FA: ", "2");
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(toText(list[0]), "ab");
    EXPECT_LT(list.capacity(), 100u);
}

TEST(ByteArrayList, WithoutACount_FailsAndClearsTheList) {
    const CPPByteArray block = arrayFromHex("41 73 41 6B 00 01 00 00 00 08");
    std::vector<CPPByteArray> list(1, makeArray("old"));
    expectFailure<PartNotFoundException>([&] { readByteArrayList(block, list); }, 3, "???", "???");
    EXPECT_TRUE(list.empty());
}

TEST(ByteArrayList, FromBytesThatAreNoBlock_FailsAndClearsTheList) {
    std::vector<CPPByteArray> list(1, makeArray("old"));
    expectFailure<StructuredReaderNotInitializedException>(
        [&] { readByteArrayList(makeArray("no block"), list); }, 2, "384190CE01EA: ", "1");
    EXPECT_TRUE(list.empty());
}

TEST(ByteArrayList, IntoAPlainArrayThatIsTooSmall_Fails) {
    CPPByteArray target;
    target.setFilled(30, 0);
    expectFailure<StructuredWriteFailedException>(
        [&] {
            writeByteArrayList({makeArray("ab"), makeArray("cd")}, target);
        },
        5, "384269E80230: ", "Byte array too small (or did not expand as expected)");
}

TEST(ByteArrayList, ManyElements_ComeBackUnchanged) {
    constexpr uint32_t kCount = 5000;
    std::vector<CPPByteArray> list(kCount);
    for (uint32_t i = 0; i < kCount; ++i) {
        list[i].set(&i, i % 5);
    }
    CPPExpandingByteArray block;
    writeByteArrayList(list, block);
    std::vector<CPPByteArray> back;
    readByteArrayList(block, back);
    ASSERT_EQ(back.size(), kCount);
    for (uint32_t i = 0; i < kCount; ++i) {
        ASSERT_EQ(back[i].compare(list[i]), 0) << i;
    }
}

}  // namespace
}  // namespace dovrel
