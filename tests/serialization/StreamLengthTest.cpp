#include "serialization/StreamLength.h"

#include <gtest/gtest.h>

#include "tests/serialization/Streams.h"

namespace dovrel {
namespace {

TEST(StreamLength, OfAStreamReadInPart_IsTheWholeAndTheStreamIsAtItsStart) {
    std::istringstream stream("abcdef");
    stream.seekg(4);
    EXPECT_EQ(lengthFromStart(stream), 6u);
    EXPECT_EQ(stream.get(), 'a');
}

TEST(StreamLength, OfAStreamReadPastItsEnd_IsTheWholeAndTheStreamIsAtItsStart) {
    std::istringstream stream = test::readPastItsEnd("abc def");
    EXPECT_EQ(lengthFromStart(stream), 7u);
    EXPECT_EQ(stream.get(), 'a');
}

TEST(StreamLength, OfAStreamThatCannotBePositioned_IsNothing) {
    test::PipeBuffer buffer("abc");
    std::istream stream(&buffer);
    EXPECT_EQ(lengthFromStart(stream), std::nullopt);
    EXPECT_TRUE(stream.fail());
}

TEST(StreamLength, OfAStreamWithoutABuffer_IsNothing) {
    std::istream stream(nullptr);
    EXPECT_EQ(lengthFromStart(stream), std::nullopt);
    EXPECT_TRUE(stream.bad());
}

TEST(StreamLength, OfAStreamThatThrowsWhenItCannotBePositioned_Throws) {
    test::PipeBuffer buffer("abc");
    std::istream stream(&buffer);
    stream.exceptions(std::ios::failbit);
    EXPECT_THROW(lengthFromStart(stream), std::ios::failure);
}

}  // namespace
}  // namespace dovrel
