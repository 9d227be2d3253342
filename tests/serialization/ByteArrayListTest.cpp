#include "serialization/ByteArrayList.h"

#include <gtest/gtest.h>

#include <string>

#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayOf;
using test::arrayOfHex;
using test::expectFailure;
using test::hexOf;
using test::textOf;

constexpr char kEmptyList[] = "41 73 41 6B 00 01 00 00 00 08 00 00 00 00 00 00 00 04 00 00 00 00";

TEST(ByteArrayList, OfAbAndAnEmptyArray_HasTheGoldenBytes) {
    CPPExpandingByteArray block;
    writeByteArrayList({arrayOf("ab"), CPPByteArray()}, block);
    EXPECT_EQ(hexOf(block),
              "41 73 41 6B 00 01 00 00 00 08 "
              "00 00 00 00 00 00 00 04 02 00 00 00 "
              "00 00 00 05 00 00 00 02 61 62 "
              "00 00 00 07 00 00 00 00");
}

TEST(ByteArrayList, Empty_IsTheCountAlone) {
    CPPExpandingByteArray block;
    writeByteArrayList(std::vector<CPPByteArray>(), block);
    EXPECT_EQ(hexOf(block), kEmptyList);
}

TEST(ByteArrayList, ReadBack_HasTheElementsInTheirOrder) {
    const CPPByteArray block = arrayOfHex(
        "41 73 41 6B 00 01 00 00 00 08"
        "00 00 00 00 00 00 00 04 03 00 00 00"
        "00 00 00 07 00 00 00 00"
        "00 00 00 05 00 00 00 02 61 62"
        "00 00 00 09 00 00 00 01 63");
    std::vector<CPPByteArray> list(5, arrayOf("old"));
    readByteArrayList(block, list);
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(textOf(list[0]), "ab");
    EXPECT_EQ(textOf(list[1]), "");
    EXPECT_EQ(textOf(list[2]), "c");
}

TEST(ByteArrayList, CountZero_YieldsAnEmptyListAndReadsNoElements) {
    const CPPByteArray block = arrayOfHex(std::string(kEmptyList) + "00 00 00 05 00 00 00 02 61 62");
    std::vector<CPPByteArray> list(1, arrayOf("old"));
    readByteArrayList(block, list);
    EXPECT_TRUE(list.empty());
}

TEST(ByteArrayList, CountThatNoPartBacks_FailsAtTheFirstMissingPart) {
    const CPPByteArray block = arrayOfHex(
        "41 73 41 6B 00 01 00 00 00 08"
        "00 00 00 00 00 00 00 04 FF FF FF FF"
        "00 00 00 05 00 00 00 02 61 62");
    std::vector<CPPByteArray> list;
    expectFailure<PartNotFoundException>([&] { readByteArrayList(block, list); }, 3, "384181A400FA: ", "2");
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(textOf(list[0]), "ab");
    EXPECT_LT(list.capacity(), 100u);
}

TEST(ByteArrayList, WithoutACount_FailsAndClearsTheList) {
    const CPPByteArray block = arrayOfHex("41 73 41 6B 00 01 00 00 00 08");
    std::vector<CPPByteArray> list(1, arrayOf("old"));
    expectFailure<PartNotFoundException>([&] { readByteArrayList(block, list); }, 3, "???", "???");
    EXPECT_TRUE(list.empty());
}

TEST(ByteArrayList, FromBytesThatAreNoBlock_FailsAndClearsTheList) {
    std::vector<CPPByteArray> list(1, arrayOf("old"));
    expectFailure<StructuredReaderNotInitializedException>(
        [&] { readByteArrayList(arrayOf("no block"), list); }, 2, "384190CE01EA: ", "1");
    EXPECT_TRUE(list.empty());
}

TEST(ByteArrayList, IntoAPlainArrayThatIsTooSmall_Fails) {
    CPPByteArray target;
    target.setFilled(30, 0);
    expectFailure<StructuredWriteFailedException>(
        [&] {
            writeByteArrayList({arrayOf("ab"), arrayOf("cd")}, target);
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
