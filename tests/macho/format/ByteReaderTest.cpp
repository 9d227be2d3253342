#include "macho/format/ByteReader.h"

#include <gtest/gtest.h>

namespace dovrel::macho {
namespace {

ByteReader reader(const std::vector<uint8_t>& bytes) {
    return {bytes.data(), bytes.size()};
}

TEST(ByteReader, Numbers_AreReadInTheirByteOrder) {
    const std::vector<uint8_t> bytes = {1, 2, 3, 4, 1, 2, 3, 4};
    ByteReader numbers = reader(bytes);
    EXPECT_EQ(numbers.next<uint32_t>(), 0x04030201u);
    EXPECT_EQ(numbers.nextBigEndian(), 0x01020304u);
    EXPECT_TRUE(numbers.isAtEnd());
}

TEST(ByteReader, ANumberThatIsNotWhole_IsRefused) {
    const std::vector<uint8_t> bytes = {1, 2, 3};
    ByteReader numbers = reader(bytes);
    EXPECT_THROW(numbers.next<uint32_t>(), FormatError);
    EXPECT_THROW(numbers.at<uint32_t>(0), FormatError);
    EXPECT_THROW(numbers.at<uint8_t>(3), FormatError);
}

TEST(ByteReader, LebNumbers_HaveSevenBitsAByte) {
    const std::vector<uint8_t> bytes = {0x7F, 0x80, 0x01, 0xFF, 0x7E, 0x40};
    ByteReader numbers = reader(bytes);
    EXPECT_EQ(numbers.nextUnsignedLeb(), 0x7Fu);
    EXPECT_EQ(numbers.nextUnsignedLeb(), 0x80u);
    EXPECT_EQ(numbers.nextSignedLeb(), -129);
    EXPECT_EQ(numbers.nextSignedLeb(), -64);
}

TEST(ByteReader, ALebNumberWithoutAnEndOrTooLong_IsRefused) {
    EXPECT_THROW(reader({0x80, 0x80}).nextUnsignedLeb(), FormatError);
    const std::vector<uint8_t> tooLong(11, 0x80);
    EXPECT_THROW(reader(tooLong).nextUnsignedLeb(), FormatError);
    EXPECT_THROW(reader(tooLong).nextSignedLeb(), FormatError);
}

TEST(ByteReader, ATextWithoutAnEnd_IsRefused) {
    const std::vector<uint8_t> bytes = {'a', 'b', 0, 'c'};
    ByteReader texts = reader(bytes);
    EXPECT_EQ(texts.nextString(), "ab");
    EXPECT_THROW(texts.nextString(), FormatError);
}

TEST(ByteReader, AFieldThatIsFull_NeedsNoEnd) {
    const std::vector<uint8_t> bytes = {'a', 'b', 'c', 0};
    EXPECT_EQ(reader(bytes).nextField(3), "abc");
    EXPECT_EQ(reader(bytes).nextField(4), "abc");
}

TEST(ByteReader, APartThatReachesBeyondTheEnd_IsRefused) {
    const std::vector<uint8_t> bytes(4);
    EXPECT_EQ(reader(bytes).part(4, 0).size(), 0u);
    EXPECT_THROW(reader(bytes).part(5, 0), FormatError);
    EXPECT_THROW(reader(bytes).part(1, 4), FormatError);
    EXPECT_THROW(reader(bytes).part(1, ~uint64_t{0}), FormatError);
    ByteReader moved = reader(bytes);
    EXPECT_THROW(moved.moveTo(5), FormatError);
}

}  // namespace
}  // namespace dovrel::macho
