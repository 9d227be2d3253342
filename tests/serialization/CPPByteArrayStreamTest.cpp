// Byte arrays that are filled from streams: whole, in pieces, after errors, and from streams that throw.

#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <sstream>

#include "serialization/CPPByteArray.h"
#include "tests/serialization/Streams.h"
#include "tests/support/HeapInUse.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::BrokenBuffer;
using test::makeArray;
using test::PipeBuffer;
using test::readPastItsEnd;
using test::toHex;
using test::toText;

TEST(CPPByteArrayStream, WholeStream_IsTakenFromItsStart) {
    std::istringstream stream("whole text");
    stream.seekg(4);
    CPPByteArray array = makeArray("old");
    array.loadFromStream(stream);
    EXPECT_EQ(toText(array), "whole text");
}

TEST(CPPByteArrayStream, WholeStreamThatIsEmpty_EmptiesTheArray) {
    std::istringstream stream("");
    CPPByteArray array = makeArray("old");
    array.loadFromStream(stream);
    EXPECT_EQ(array.getSize(), 0u);
}

TEST(CPPByteArrayStream, WholeStreamThatWasReadPastItsEnd_IsTakenFromItsStart) {
    std::istringstream stream = readPastItsEnd("whole text");
    ASSERT_TRUE(stream.fail());
    CPPByteArray array = makeArray("old");
    array.loadFromStream(stream);
    EXPECT_EQ(toText(array), "whole text");
}

TEST(CPPByteArrayStream, WholeStreamWithTheBadBit_IsTakenFromItsStart) {
    std::istringstream stream("text");
    stream.setstate(std::ios::badbit);
    CPPByteArray array = makeArray("old");
    array.loadFromStream(stream);
    EXPECT_EQ(toText(array), "text");
}

TEST(CPPByteArrayStream, WholeStreamThatCannotBePositioned_EmptiesTheArray) {
    PipeBuffer buffer("text");
    std::istream stream(&buffer);
    CPPByteArray array = makeArray("old");
    array.loadFromStream(stream);
    EXPECT_EQ(array.getSize(), 0u);
    EXPECT_EQ(array.data(), nullptr);
    EXPECT_TRUE(stream.fail());
}

TEST(CPPByteArrayStream, FileThatIsNotOpen_EmptiesTheArray) {
    std::ifstream missing("/there is no such file");
    CPPByteArray array = makeArray("old");
    array.loadFromStream(missing);
    EXPECT_EQ(array.getSize(), 0u);
}

TEST(CPPByteArrayStream, Length_TakesTheNextBytes) {
    std::istringstream stream("abcdef");
    CPPByteArray array;
    array.loadFromStream(stream, 2);
    EXPECT_EQ(toText(array), "ab");
    array.loadFromStream(stream, 3);
    EXPECT_EQ(toText(array), "cde");
    array.loadFromStream(stream, 0);
    EXPECT_EQ(array.data(), nullptr);
}

TEST(CPPByteArrayStream, LengthBeyondTheEnd_IsStillTheSize) {
    std::istringstream stream("ab");
    CPPByteArray array;
    array.loadFromStream(stream, 4);
    ASSERT_EQ(array.getSize(), 4u);
    EXPECT_EQ(array.getByte(0), 'a');
    EXPECT_EQ(array.getByte(1), 'b');
    EXPECT_TRUE(stream.eof());
}

// Otherwise the array would contain old heap data, which might be sent to the server.
TEST(CPPByteArrayStream, LengthBeyondTheEnd_FillsTheMissingBytesWithZeros) {
    constexpr uint32_t kLength = 100;
    std::istringstream stream("ab");
    {
        CPPByteArray old;  // leaves a freed block that the next array of this size normally receives
        old.setFilled(kLength, 0xEE);
    }
    CPPByteArray array;
    array.loadFromStream(stream, kLength);
    ASSERT_EQ(array.getSize(), kLength);
    for (uint32_t i = 2; i < kLength; ++i)
        EXPECT_EQ(array.getByte(i), 0) << i;
}

TEST(CPPByteArrayStream, LengthAfterAWordThatIsNotANumber_TakesTheBytesThatWereNotRead) {
    std::istringstream stream("12 cde");
    int number = 0;
    stream >> number >> number;
    ASSERT_TRUE(stream.fail());
    CPPByteArray array;
    array.loadFromStream(stream, 2);
    EXPECT_EQ(toText(array), "cd");
}

TEST(CPPByteArrayStream, LengthOfAStreamReadPastItsEnd_KeepsNothingFromBefore) {
    std::istringstream stream = readPastItsEnd("text");
    CPPByteArray array = makeArray("old");
    array.loadFromStream(stream, 3);
    EXPECT_EQ(toHex(array), "00 00 00");
}

TEST(CPPByteArrayStream, LengthOfAStreamThatCannotBePositioned_TakesTheNextBytes) {
    PipeBuffer buffer("text");
    std::istream stream(&buffer);
    CPPByteArray array = makeArray("old");
    array.loadFromStream(stream, 3);
    EXPECT_EQ(toText(array), "tex");
}

// Repeatedly loads 1 MiB from a stream that throws halfway. A leak in each load would exceed the limit.
template <class Load>
void expectThatNothingStaysBehind(const Load& load) {
    constexpr int kRepetitions = 8;
    constexpr size_t kSize = 1 << 20;
    BrokenBuffer buffer(std::string(kSize, 'x'), kSize / 2);
    std::istream stream(&buffer);
    stream.exceptions(std::ios::badbit);
    CPPByteArray array = makeArray("old");
    const size_t before = test::heapInUse();
    for (int i = 0; i < kRepetitions; ++i)
        EXPECT_THROW(load(array, stream), std::runtime_error);
    EXPECT_LT(test::heapInUse(), before + kSize / 2);
    EXPECT_EQ(toText(array), "old");
}

TEST(CPPByteArrayStream, StreamThatThrows_LeavesTheArrayUnchangedAndLeaksNothing) {
    expectThatNothingStaysBehind(
        [](CPPByteArray& array, std::istream& stream) { array.loadFromStream(stream); });
    expectThatNothingStaysBehind(
        [](CPPByteArray& array, std::istream& stream) { array.loadFromStream(stream, 1 << 20); });
}

TEST(CPPByteArrayStream, StreamThatThrowsAtItsEnd_LeavesTheArrayAsItWas) {
    std::istringstream stream("ab");
    stream.exceptions(std::ios::eofbit);
    CPPByteArray array = makeArray("old");
    EXPECT_THROW(array.loadFromStream(stream, 4), std::ios::failure);
    EXPECT_EQ(toText(array), "old");
}

TEST(CPPByteArrayStream, BufferThatThrowsInAStreamThatDoesNot_CountsAsTheEnd) {
    BrokenBuffer buffer("text", 2);
    std::istream stream(&buffer);
    CPPByteArray array = makeArray("old");
    array.loadFromStream(stream);
    EXPECT_EQ(array.getSize(), 4u);
    EXPECT_TRUE(stream.bad());
}

}  // namespace
}  // namespace dovrel
