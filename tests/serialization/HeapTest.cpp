// The allocations of byte arrays, and their behaviour when an allocation fails.

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <sstream>
#include <utility>
#include <vector>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/ByteArrayList.h"
#include "serialization/CPPExpandingByteArray.h"
#include "serialization/Identifiers.h"
#include "serialization/StructuredBlockEncoder.h"
#include "serialization/StructuredByteArrayWriter.h"
#include "serialization/StructuredCharArrayReader.h"
#include "tests/support/HeapWatch.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::expectFailure;
using test::HeapWatch;
using test::makeArray;
using test::makeExpandingArray;
using test::toHex;
using test::toText;

constexpr char kTooSmall[] = "Byte array too small (or did not expand as expected)";

TEST(Heap, PlainArray_AsksForExactlyItsSize) {
    HeapWatch watch;
    CPPByteArray array;
    array.set("abcde", 5);
    const CPPByteArray copy(array);
    array.setFilled(3, 'x');
    array.setFromPart(copy, 1, 2);
    array.resize(7, 'x');
    array.assign(copy);
    EXPECT_EQ(watch.requests(), (std::vector<size_t>{5, 5, 3, 2, 7, 5}));
}

TEST(Heap, EmptyArrays_AskForNothing) {
    HeapWatch watch;
    CPPByteArray array;
    const CPPByteArray copy(array);
    array.set(nullptr, 0);
    array.setFilled(0, 'x');
    array.setFromPart(copy, 0, 0);
    array.resize(0, 'x');
    array.assign(copy);
    EXPECT_TRUE(watch.requests().empty());
}

TEST(Heap, ExpandingArray_GrowsToExactlyTheHighestByteWritten) {
    HeapWatch watch;
    CPPExpandingByteArray array;
    array.setByte(0, 'a');
    array.setByte(5, 'b');
    array.writeBytes(6, "cde", 3);
    array.writeBytes(2, "x", 1);
    array.copyFrom(9, array, 4, 0);
    EXPECT_EQ(watch.requests(), (std::vector<size_t>{1, 6, 9, 13}));
}

// Runs every operation that allocates on arrays that contain "old". If the allocation fails, they still do.
TEST(Heap, OutOfMemory_LeavesContentAndSizeAsTheyWere) {
    const CPPByteArray other = makeArray("other");
    const auto keepsContent = [](const char* name, auto operation) {
        SCOPED_TRACE(name);
        CPPExpandingByteArray array = makeExpandingArray("old");
        HeapWatch watch;
        watch.failFrom(1);
        operation(array);
        EXPECT_EQ(watch.requests().size(), 1u);
        EXPECT_EQ(toText(array), "old");
    };
    std::istringstream stream("stream");
    keepsContent("operator=", [&](CPPExpandingByteArray& array) { array = other; });
    keepsContent("assign", [&](CPPExpandingByteArray& array) { array.assign(other); });
    keepsContent("set", [](CPPExpandingByteArray& array) { array.set("new", 3); });
    keepsContent("setUninitialized",
                 [](CPPExpandingByteArray& array) { EXPECT_EQ(array.setUninitialized(3), nullptr); });
    keepsContent("setOrThrow", [](CPPExpandingByteArray& array) {
        EXPECT_THROW(array.setOrThrow("new", 3), std::bad_alloc);
    });
    keepsContent("setFilled", [](CPPExpandingByteArray& array) { array.setFilled(9, 'x'); });
    keepsContent("setFromPart", [&](CPPExpandingByteArray& array) { array.setFromPart(other, 0, 2); });
    keepsContent("resize up", [](CPPExpandingByteArray& array) { array.resize(100, 'x'); });
    keepsContent("resize down", [](CPPExpandingByteArray& array) { array.resize(1, 'x'); });
    keepsContent("setByte", [](CPPExpandingByteArray& array) { array.setByte(3, 'x'); });
    keepsContent("writeBytes", [](CPPExpandingByteArray& array) { array.writeBytes(1, "xyz", 3); });
    keepsContent("copyFrom", [&](CPPExpandingByteArray& array) { array.copyFrom(1, other, 5, 0); });
    keepsContent("whole stream", [&](CPPExpandingByteArray& array) { array.loadFromStream(stream); });
    keepsContent("stream", [&](CPPExpandingByteArray& array) { array.loadFromStream(stream, 4); });
}

TEST(Heap, OutOfMemory_CopyIsEmpty) {
    const CPPByteArray original = makeArray("abc");
    HeapWatch watch;
    watch.failFrom(1);
    const CPPByteArray copy(original);
    EXPECT_EQ(copy.getSize(), 0u);
    EXPECT_EQ(copy.data(), nullptr);
}

void writeSmallBlock(CPPByteArray& block, const CPPByteArray& part) {
    StructuredByteArrayWriter writer;
    writer.initialize(block, 9);
    writer.writeUInt32Part(1, 5);
    writer.writeArrayPart(2, part);
    writer.writeBytesPart(3, "defg", 4);
    std::istringstream stream("hi");
    writer.writeWholeStreamPart(4, stream);
}

// The writer must treat a derived class as it treats its base class.
class DerivedArray : public CPPExpandingByteArray {};

TEST(Heap, WriterOverAnExpandingArray_GrowsItOncePerPart) {
    const CPPByteArray part = makeArray("abc");
    HeapWatch watch;
    CPPExpandingByteArray block;
    StructuredByteArrayWriter writer;
    writer.initialize(block, 9);
    writer.writeUInt32Part(1, 5);
    writer.writeArrayPart(2, part);
    writer.writeBytesPart(3, nullptr, 0);
    EXPECT_EQ(watch.requests(), (std::vector<size_t>{10, 22, 33, 41}));
}

void encodeSmallBlock(CPPByteArray& block) {
    encodeStructuredBlock(block, 9, StructuredPart::ofNumber(1, 5), StructuredPart::ofBytes(2, "abc", 3),
                          StructuredPart::ofBytes(3, nullptr, 0));
}

TEST(Heap, Encoder_AsksOnceForTheWholeBlock) {
    HeapWatch watch;
    CPPExpandingByteArray block;
    encodeSmallBlock(block);
    EXPECT_EQ(watch.requests(), (std::vector<size_t>{41}));
}

TEST(Heap, OutOfMemoryInTheEncoder_FailsAndLeavesTheTarget) {
    CPPExpandingByteArray block = makeExpandingArray("old");
    HeapWatch watch;
    watch.failAt({1});
    expectFailure<StructuredWriteFailedException>([&] { encodeSmallBlock(block); }, 5,
                                                  "384269E80233: ", kTooSmall);
    EXPECT_EQ(toText(block), "old");
}

TEST(Heap, ByteArrayList_GrowsTheTargetOnceForAllElements) {
    const std::vector<CPPByteArray> list = {makeArray("ab"), CPPByteArray(), makeArray("c")};
    HeapWatch watch;
    CPPExpandingByteArray block;
    writeByteArrayList(list, block);
    EXPECT_EQ(watch.requests(), (std::vector<size_t>{10, 10 + 12 + 10 + 8 + 9}));
}

TEST(Heap, OutOfMemoryForAWholeList_WritesItPartByPart) {
    const std::vector<CPPByteArray> list = {makeArray("ab"), makeArray("c")};
    CPPExpandingByteArray whole;
    writeByteArrayList(list, whole);
    CPPExpandingByteArray block;
    HeapWatch watch;
    watch.failAt({2});
    writeByteArrayList(list, block);
    EXPECT_EQ(toHex(block), toHex(whole));
}

// Makes each growth fail, alone or with all later ones. The writer must either throw, or complete the block.
// Returns the number of growths that a complete block takes.
template <class Target>
size_t failEachGrowth(bool once) {
    const CPPByteArray part = makeArray("abc");
    CPPExpandingByteArray whole;
    writeSmallBlock(whole, part);
    for (size_t nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        Target block;
        std::unique_ptr<CPPException> failure;
        bool exhausted = false;
        {
            HeapWatch watch;
            once ? watch.failAt({nth}) : watch.failFrom(nth);
            failure = test::failureOf([&] { writeSmallBlock(block, part); });
            exhausted = watch.requests().size() < nth;
        }
        if (failure == nullptr) {
            EXPECT_EQ(toHex(block), toHex(whole));
        } else {
            EXPECT_EQ(failure->getTypeCode(), 5u);
            EXPECT_STREQ(failure->getMessage(), kTooSmall);
        }
        EXPECT_TRUE(failure == nullptr || !exhausted);
        EXPECT_TRUE(failure != nullptr || exhausted || once);
        if (exhausted || testing::Test::HasFailure()) return nth - 1;
    }
}

TEST(Heap, OutOfMemoryFromTheNthGrowthOn_FailsTheWrite) {
    EXPECT_GE(failEachGrowth<CPPExpandingByteArray>(false), 5u);
    EXPECT_GE(failEachGrowth<DerivedArray>(false), 5u);
}

TEST(Heap, OutOfMemoryAtTheNthGrowthOnly_FailsTheWriteOrLosesNothing) {
    EXPECT_GE(failEachGrowth<CPPExpandingByteArray>(true), 5u);
    EXPECT_GE(failEachGrowth<DerivedArray>(true), 5u);
}

template <class Target>
void expectInitializeFails() {
    Target block;
    StructuredByteArrayWriter writer;
    HeapWatch watch;
    watch.failFrom(1);
    expectFailure<StructuredWriteFailedException>([&] { writer.initialize(block, 8); }, 5,
                                                  "3842674A03C0: ", kTooSmall);
    EXPECT_EQ(block.getSize(), 0u);
}

TEST(Heap, OutOfMemoryInInitialize_FailsTheWriter) {
    expectInitializeFails<CPPExpandingByteArray>();
    expectInitializeFails<DerivedArray>();
}

TEST(Heap, OutOfMemoryForTheDataOfAPart_LeavesItsHeaderAsEveryPartlyWrittenPart) {
    CPPExpandingByteArray block;
    StructuredByteArrayWriter writer;
    writer.initialize(block, 8);
    HeapWatch watch;
    // The growth for the whole part fails, the one for its header succeeds, the one for its data fails.
    watch.failAt({1, 3});
    expectFailure<StructuredWriteFailedException>([&] { writer.writeBytesPart(1, "abc", 3); }, 5,
                                                  "384269E80233: ", kTooSmall);
    EXPECT_EQ(toHex(block), "41 73 41 6B 00 01 00 00 00 08 00 00 00 01 00 00 00 03");
}

TEST(Heap, OutOfMemoryForAString_IsNotWrittenAsAnEmptyPart) {
    CPPExpandingByteArray block;
    StructuredByteArrayWriter writer;
    writer.initialize(block, 8);
    HeapWatch watch;
    watch.failAt({1});
    EXPECT_THROW(writer.writeStringPart(1, "text"), std::bad_alloc);
    EXPECT_EQ(block.getSize(), 10u);
}

TEST(Heap, OutOfMemoryForAPart_IsNotReturnedAsAnEmptyPart) {
    const CPPByteArray block = arrayFromHex("41 73 41 6B 00 00 00 00 00 05 00 00 00 02 61 62");
    StructuredByteArrayReader reader;
    reader.initialize(&block);
    HeapWatch watch;
    watch.failAt({1});
    EXPECT_THROW(reader.getPart(5), std::bad_alloc);
}

TEST(Heap, OutOfMemoryForTheReadersCopy_IsNotADamagedBlock) {
    const CPPByteArray block = arrayFromHex("41 73 41 6B 00 00");
    StructuredCharArrayReader reader;
    HeapWatch watch;
    watch.failAt({1});
    EXPECT_THROW(reader.setBuffer(block.data(), block.getSize()), std::bad_alloc);
    EXPECT_FALSE(reader.hasPart(0));
}

template <class Identifier>
void expectThatMovingAsksForNothing() {
    Identifier original(makeArray("0123456789abcdef"));
    HeapWatch watch;
    Identifier moved(std::move(original));
    const Identifier taken(static_cast<CPPByteArray&&>(moved));
    EXPECT_TRUE(watch.requests().empty());
    EXPECT_EQ(toText(taken), "0123456789abcdef");
}

TEST(Heap, MovedIdentifiers_AskForNothing) {
    expectThatMovingAsksForNothing<CPPKey>();
    expectThatMovingAsksForNothing<CPPClassID>();
    expectThatMovingAsksForNothing<CPPObjectID>();
    expectThatMovingAsksForNothing<ProtectedExecuterID>();
}

}  // namespace
}  // namespace dovrel
