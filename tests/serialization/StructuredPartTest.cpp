#include "serialization/StructuredPart.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::makeArray;

std::string toBytes(const StructuredPart& part) {
    return std::string(static_cast<const char*>(part.data()), part.getLength());
}

// Returns what copyTo stores, between bytes that it must not change.
std::string copied(const StructuredPart& part) {
    std::string room(part.getLength() + 2, 'x');
    auto* const place = reinterpret_cast<uint8_t*>(room.data()) + 1;
    EXPECT_EQ(part.copyTo(place), place + part.getLength());
    return room;
}

TEST(StructuredPart, OfNumber_IsFourBytesLeastSignificantFirst) {
    const StructuredPart part = StructuredPart::ofNumber(7, 0xA1B2C3D4);
    EXPECT_EQ(part.getTag(), 7u);
    EXPECT_EQ(toBytes(part), "\xD4\xC3\xB2\xA1");
    EXPECT_EQ(copied(part), "x\xD4\xC3\xB2\xA1x");
}

TEST(StructuredPart, OfNumber_CopiedAndTheOriginalGone_HasItsBytes) {
    StructuredPart part = StructuredPart::ofBytes(1, nullptr, 0);
    {
        const StructuredPart original = StructuredPart::ofNumber(7, 0x64636261);
        part = original;
    }
    EXPECT_EQ(toBytes(part), "abcd");
}

TEST(StructuredPart, OfBytesAndOfArray_ReferToTheBytes) {
    const std::string bytes = "some bytes";
    const StructuredPart part = StructuredPart::ofBytes(0xFFFFFFFF, bytes.data(), 4);
    EXPECT_EQ(part.getTag(), 0xFFFFFFFFu);
    EXPECT_EQ(part.data(), bytes.data());
    EXPECT_EQ(copied(part), "xsomex");
    const CPPByteArray array = makeArray("array");
    EXPECT_EQ(StructuredPart::ofArray(5, array).data(), array.data());
    EXPECT_EQ(copied(StructuredPart::ofArray(5, array)), "xarrayx");
}

TEST(StructuredPart, WithoutBytes_CopiesNothing) {
    EXPECT_EQ(copied(StructuredPart::ofBytes(1, nullptr, 0)), "xx");
    EXPECT_EQ(copied(StructuredPart::ofArray(1, CPPByteArray())), "xx");
}

}  // namespace
}  // namespace dovrel
