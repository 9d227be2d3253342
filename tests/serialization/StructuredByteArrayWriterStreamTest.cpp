// Parts that are written from streams: whole, in pieces, after errors, and from streams that throw.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredByteArrayWriter.h"
#include "tests/serialization/Streams.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::BrokenBuffer;
using test::expectFailure;
using test::PipeBuffer;
using test::readPastItsEnd;
using test::toHex;

constexpr char kHeader[] = "41 73 41 6B 00 01 00 00 00 09";

class StructuredByteArrayWriterStream : public testing::Test {
  protected:
    StructuredByteArrayWriterStream() { writer_.initialize(array_, 9); }

    // Returns the block without its header.
    std::string parts() const {
        const std::string hex = toHex(array_);
        EXPECT_EQ(hex.substr(0, sizeof kHeader - 1), kHeader);
        return hex.size() < sizeof kHeader ? "" : hex.substr(sizeof kHeader);
    }

    void expectRejected(std::istream& stream) {
        expectFailure<StructuredWriteFailedException>(
            [&] { writer_.writeWholeStreamPart(5, stream); }, 5,
            "384269E80262: ", "Byte array too small (or did not expand as expected)");
    }

    CPPExpandingByteArray array_;
    StructuredByteArrayWriter writer_;
};

TEST_F(StructuredByteArrayWriterStream, Length_TakesTheNextCharactersOnly) {
    std::istringstream stream("abcdef");
    stream.get();
    writer_.writeStreamPart(5, stream, 3);
    EXPECT_EQ(parts(), "00 00 00 05 00 00 00 03 62 63 64");
    EXPECT_EQ(stream.get(), 'e');
}

TEST_F(StructuredByteArrayWriterStream, LengthBeyondTheEnd_IsFilledWithFF) {
    std::istringstream stream("ab");
    writer_.writeStreamPart(5, stream, 4);
    EXPECT_EQ(parts(), "00 00 00 05 00 00 00 04 61 62 FF FF");
}

TEST_F(StructuredByteArrayWriterStream, LengthAfterAWordThatIsNotANumber_TakesTheCharactersThatWereNotRead) {
    std::istringstream stream("12 cde");
    int number = 0;
    stream >> number >> number;
    ASSERT_TRUE(stream.fail());
    writer_.writeStreamPart(5, stream, 2);
    EXPECT_EQ(parts(), "00 00 00 05 00 00 00 02 63 64");
}

TEST_F(StructuredByteArrayWriterStream, LengthOfAStreamReadPastItsEnd_IsFilledWithFF) {
    std::istringstream stream = readPastItsEnd("text");
    writer_.writeStreamPart(5, stream, 2);
    EXPECT_EQ(parts(), "00 00 00 05 00 00 00 02 FF FF");
}

TEST_F(StructuredByteArrayWriterStream, LengthOfAStreamThatCannotBePositioned_TakesTheNextCharacters) {
    PipeBuffer buffer("text");
    std::istream stream(&buffer);
    writer_.writeStreamPart(5, stream, 2);
    EXPECT_EQ(parts(), "00 00 00 05 00 00 00 02 74 65");
}

TEST_F(StructuredByteArrayWriterStream, WholeStreamThatWasReadPastItsEnd_IsWrittenFromItsStart) {
    std::istringstream stream = readPastItsEnd("ab cd");
    ASSERT_TRUE(stream.fail());
    writer_.writeWholeStreamPart(5, stream);
    EXPECT_EQ(parts(), "00 00 00 05 00 00 00 05 61 62 20 63 64");
}

TEST_F(StructuredByteArrayWriterStream, WholeStreamThatCannotBePositioned_IsRejectedAndNothingIsStored) {
    PipeBuffer buffer("text");
    std::istream pipe(&buffer);
    expectRejected(pipe);
    EXPECT_EQ(parts(), "");
    std::ifstream missing("/there is no such file");
    expectRejected(missing);
    EXPECT_EQ(parts(), "");
    writer_.writeBytesPart(6, "a", 1);
    EXPECT_EQ(parts(), "00 00 00 06 00 00 00 01 61") << "the writer goes on";
}

TEST_F(StructuredByteArrayWriterStream,
       WholeStreamOfAWriterThatIsNotInitialized_FailsAsThatWhateverTheStream) {
    StructuredByteArrayWriter writer;
    PipeBuffer buffer("text");
    std::istream stream(&buffer);
    expectFailure<StructuredWriterNotInitializedException>([&] { writer.writeWholeStreamPart(5, stream); }, 4,
                                                           "384269E80262: ", "The writer is not initialized");
}

TEST_F(StructuredByteArrayWriterStream, StreamThatThrows_LeavesAnIncompletePartAndTheNextOneFollowsAfterIt) {
    BrokenBuffer buffer("text", 2);
    std::istream stream(&buffer);
    stream.exceptions(std::ios::badbit);
    EXPECT_THROW(writer_.writeWholeStreamPart(5, stream), std::runtime_error);
    EXPECT_EQ(parts(), "00 00 00 05 00 00 00 04 74 65");
    writer_.writeBytesPart(6, "a", 1);
    EXPECT_EQ(parts(), "00 00 00 05 00 00 00 04 74 65 00 00 00 00 00 06 00 00 00 01 61");
}

TEST_F(StructuredByteArrayWriterStream, BufferThatThrowsInAStreamThatDoesNot_CountsAsTheEnd) {
    BrokenBuffer buffer("text", 2);
    std::istream stream(&buffer);
    writer_.writeWholeStreamPart(5, stream);
    EXPECT_EQ(parts(), "00 00 00 05 00 00 00 04 74 65 FF FF");
}

}  // namespace
}  // namespace dovrel
