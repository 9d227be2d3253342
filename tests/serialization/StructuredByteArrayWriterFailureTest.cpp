// Tests the exceptions of the writer, and the content of the block after a failed write.

#include "serialization/StructuredByteArrayWriter.h"

#include <gtest/gtest.h>

#include <sstream>

#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::expectFailure;
using test::makeArray;
using test::plainArray;
using test::toHex;

constexpr uint32_t kLargest = 0xFFFFFFFF;
constexpr char kTooSmall[] = "Byte array too small (or did not expand as expected)";
constexpr char kNotInitialized[] = "The writer is not initialized";

TEST(StructuredByteArrayWriterFailure, Initialize_OverAPlainArrayBelow10Bytes_Fails) {
    CPPByteArray array = plainArray(9);
    StructuredByteArrayWriter writer;
    expectFailure<StructuredWriteFailedException>([&] { writer.initialize(array, 8); }, 5,
                                                  "3842674A03C0: ", kTooSmall);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00");
}

TEST(StructuredByteArrayWriterFailure, PlainArrayOf12Bytes_TakesTheHeaderAndFailsAtTheNextPartHeader) {
    CPPByteArray array = plainArray(12);
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    expectFailure<StructuredWriteFailedException>([&] { writer.writeUInt32Part(0x0A0B0C0D, 3); }, 5,
                                                  "38428BF9015E: ", kTooSmall);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08 0A 0B") << "what fits stays behind";
}

TEST(StructuredByteArrayWriterFailure, EveryWrite_WhosePartHeaderDoesNotFit_FailsAtThePartHeader) {
    const auto failsAtHeader = [](auto write) {
        CPPByteArray array = plainArray(17);
        StructuredByteArrayWriter writer;
        writer.initialize(array, 8);
        expectFailure<StructuredWriteFailedException>([&] { write(writer); }, 5, "38428BF9015E: ", kTooSmall);
    };
    std::istringstream stream("a");
    failsAtHeader([](StructuredByteArrayWriter& writer) { writer.writeArrayPart(1, CPPByteArray()); });
    failsAtHeader([](StructuredByteArrayWriter& writer) { writer.writeBytesPart(1, nullptr, 0); });
    failsAtHeader([&](StructuredByteArrayWriter& writer) { writer.writeStreamPart(1, stream, 1); });
    EXPECT_EQ(stream.get(), 'a') << "the stream was read although the header had failed";
}

TEST(StructuredByteArrayWriterFailure, WriteArrayPart_WhoseDataDoNotFit_Fails) {
    CPPByteArray array = plainArray(20);
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    expectFailure<StructuredWriteFailedException>([&] { writer.writeArrayPart(1, makeArray("abc")); }, 5,
                                                  "384269E80230: ", kTooSmall);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08 00 00 00 01 00 00 00 03 61 62");
}

TEST(StructuredByteArrayWriterFailure, WriteBytesPart_WhoseDataDoNotFit_Fails) {
    CPPByteArray array = plainArray(20);
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    expectFailure<StructuredWriteFailedException>([&] { writer.writeBytesPart(1, "abc", 3); }, 5,
                                                  "384269E80233: ", kTooSmall);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08 00 00 00 01 00 00 00 03 61 62");
}

TEST(StructuredByteArrayWriterFailure, WriteStreamPart_WhoseDataDoNotFit_Fails) {
    CPPByteArray array = plainArray(20);
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    std::istringstream stream("abcd");
    expectFailure<StructuredWriteFailedException>([&] { writer.writeStreamPart(1, stream, 3); }, 5,
                                                  "384269E80262: ", kTooSmall);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08 00 00 00 01 00 00 00 03 61 62");
    EXPECT_EQ(stream.get(), 'd') << "all of the characters are taken before the check";
}

TEST(StructuredByteArrayWriterFailure, FailedWrite_LeavesThePositionAdvanced) {
    CPPByteArray array = plainArray(20);
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    expectFailure<StructuredWriteFailedException>([&] { writer.writeBytesPart(1, "abc", 3); }, 5,
                                                  "384269E80233: ", kTooSmall);
    array.resize(32, 0xEE);
    writer.writeBytesPart(2, "x", 1);
    EXPECT_EQ(toHex(array),
              "41 73 41 6B 00 01 00 00 00 08 00 00 00 01 00 00 00 03 61 62 EE "
              "00 00 00 02 00 00 00 01 78 EE EE");
}

TEST(StructuredByteArrayWriterFailure, WriteArrayPart_BeforeInitialize_Fails) {
    StructuredByteArrayWriter writer;
    expectFailure<StructuredWriterNotInitializedException>([&] { writer.writeArrayPart(1, makeArray("a")); },
                                                           4, "384269E80230: ", kNotInitialized);
}

TEST(StructuredByteArrayWriterFailure, WriteBytesPart_BeforeInitialize_Fails) {
    StructuredByteArrayWriter writer;
    expectFailure<StructuredWriterNotInitializedException>([&] { writer.writeBytesPart(1, "a", 1); }, 4,
                                                           "384269E80233: ", kNotInitialized);
}

TEST(StructuredByteArrayWriterFailure, WriteStreamPart_BeforeInitialize_FailsAndLeavesTheStream) {
    StructuredByteArrayWriter writer;
    std::istringstream stream("a");
    expectFailure<StructuredWriterNotInitializedException>([&] { writer.writeStreamPart(1, stream, 1); }, 4,
                                                           "384269E80262: ", kNotInitialized);
    EXPECT_EQ(stream.get(), 'a');
}

TEST(StructuredByteArrayWriterFailure, InheritedWrites_BeforeInitialize_FailAsTheOperationBeneath) {
    StructuredByteArrayWriter writer;
    std::istringstream stream("a");
    expectFailure<StructuredWriterNotInitializedException>([&] { writer.writeUInt32Part(1, 1); }, 4,
                                                           "384269E80233: ", kNotInitialized);
    expectFailure<StructuredWriterNotInitializedException>([&] { writer.writeStringPart(1, "a"); }, 4,
                                                           "384269E80230: ", kNotInitialized);
    expectFailure<StructuredWriterNotInitializedException>([&] { writer.writeWholeStreamPart(1, stream); }, 4,
                                                           "384269E80262: ", kNotInitialized);
}

TEST(StructuredByteArrayWriterFailure, LengthThatWraps_IsRefusedLikeDataPastTheEnd) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    expectFailure<StructuredWriteFailedException>([&] { writer.writeBytesPart(1, "a", kLargest); }, 5,
                                                  "384269E80233: ", kTooSmall);
    EXPECT_EQ(toHex(array), "41 73 41 6B 00 01 00 00 00 08 00 00 00 01 FF FF FF FF");
    std::istringstream stream("a");
    writer.initialize(array, 8);
    expectFailure<StructuredWriteFailedException>([&] { writer.writeStreamPart(1, stream, kLargest); }, 5,
                                                  "384269E80262: ", kTooSmall);
    EXPECT_EQ(stream.get(), 'a');
}

TEST(StructuredByteArrayWriterFailure, WriteAfterALengthThatWrapped_FailsAgain) {
    CPPExpandingByteArray array;
    StructuredByteArrayWriter writer;
    writer.initialize(array, 8);
    expectFailure<StructuredWriteFailedException>([&] { writer.writeBytesPart(1, "a", kLargest); }, 5,
                                                  "384269E80233: ", kTooSmall);
    expectFailure<StructuredWriteFailedException>([&] { writer.writeUInt32Part(2, 2); }, 5,
                                                  "38428BF9015E: ", kTooSmall);
    EXPECT_EQ(array.getSize(), 18u);
}

}  // namespace
}  // namespace dovrel
