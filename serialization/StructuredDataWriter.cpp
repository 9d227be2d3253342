#include "serialization/StructuredDataWriter.h"

#include <istream>
#include <limits>
#include <new>

#include "serialization/CPPExpandingByteArray.h"

namespace dovrel {
namespace {

// The largest length never fits behind a header. So what is too long, or has no length that can be told (a
// negative one, of a stream), is refused by the write itself, instead of being cut to a length that fits.
constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();

uint32_t partLength(int64_t length) {
    return length < 0 || length > kLargest ? kLargest : static_cast<uint32_t>(length);
}

}  // namespace

StructuredDataWriter::~StructuredDataWriter() = default;

void StructuredDataWriter::writeWholeStreamPart(uint32_t tag, std::istream& stream) {
    stream.seekg(0, std::ios::end);
    const std::streamoff length = stream.tellg();
    stream.seekg(0, std::ios::beg);
    writeStreamPart(tag, stream, partLength(length));
}

void StructuredDataWriter::writeUInt32Part(uint32_t tag, uint32_t value) {
    const uint8_t bytes[] = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                             static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 24)};
    writeBytesPart(tag, bytes, sizeof bytes);
}

void StructuredDataWriter::writeStringPart(uint32_t tag, const std::string& text) {
    CPPExpandingByteArray bytes;
    const uint32_t length = partLength(static_cast<int64_t>(text.size()));
    bytes.set(text.data(), length);
    // An array that could not be made stays empty, which must not pass for an empty text.
    if (bytes.getSize() != length) throw std::bad_alloc();
    writeArrayPart(tag, bytes);
}

}  // namespace dovrel
