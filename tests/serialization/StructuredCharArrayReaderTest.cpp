#include "serialization/StructuredCharArrayReader.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::expectFailure;
using test::toText;

TEST(StructuredCharArrayReader, SetBuffer_CopiesTheBuffer) {
    std::string buffer = toText(arrayFromHex("41 73 41 6B 00 01 00 00 00 07 00 00 00 05 00 00 00 02 61 62"));
    StructuredCharArrayReader reader;
    reader.setBuffer(buffer.data(), static_cast<uint32_t>(buffer.size()));
    buffer.assign(buffer.size(), 'x');
    EXPECT_EQ(reader.getTypeNumber(), 7u);
    EXPECT_EQ(reader.readStringPart(5), "ab");
}

TEST(StructuredCharArrayReader, BeforeSetBuffer_IsNotInitialized) {
    const StructuredCharArrayReader reader;
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.getTypeNumber(); }, 2,
                                                           "384181A400BE: ", "1");
}

TEST(StructuredCharArrayReader, SetBuffer_OfNothing_FailsTheBoundsCheck) {
    StructuredCharArrayReader reader;
    expectFailure<StructuredReaderNotInitializedException>([&] { reader.setBuffer(nullptr, 0); }, 2,
                                                           "3841954A010E: ", "1");
}

TEST(StructuredCharArrayReader, SecondSetBuffer_ReadsTheNewBuffer) {
    const CPPByteArray first = arrayFromHex("41 73 41 6B 00 00 00 00 00 05 00 00 00 02 61 62");
    const CPPByteArray second = arrayFromHex("41 73 41 6B 00 00 00 00 00 06 00 00 00 02 63 64");
    StructuredCharArrayReader reader;
    reader.setBuffer(first.data(), first.getSize());
    reader.setBuffer(second.data(), second.getSize());
    EXPECT_EQ(reader.readStringPart(6), "cd");
    EXPECT_EQ(reader.readStringPart(5), "cd") << "a tag of the first block keeps its place";
}

TEST(StructuredCharArrayReader, DeletedThroughItsBase_ReleasesItsCopy) {
    const CPPByteArray block = arrayFromHex("41 73 41 6B 00 00");
    auto reader = std::make_unique<StructuredCharArrayReader>();
    reader->setBuffer(block.data(), block.getSize());
    const std::unique_ptr<StructuredDataReader> base = std::move(reader);
    EXPECT_EQ(base->getTypeNumber(), 0xFFFFFFFF);
}

TEST(StructuredCharArrayReader, AddsNoVirtualOperations) {
    EXPECT_EQ(test::VirtualSlots<StructuredCharArrayReader>::count(), 7u);
}

}  // namespace
}  // namespace dovrel
