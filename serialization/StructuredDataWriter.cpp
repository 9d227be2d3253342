#include "serialization/StructuredDataWriter.h"

#include <algorithm>
#include <limits>
#include <new>

#include "serialization/CPPExpandingByteArray.h"
#include "serialization/StreamLength.h"

namespace dovrel {
namespace {

// No block has room for a part of this length, so the write operations reject it. It is used for data that
// are too long, instead of a truncated length, and for streams that cannot be positioned.
constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();

uint32_t partLength(uint64_t length) {
    return static_cast<uint32_t>(std::min<uint64_t>(length, kLargest));
}

}  // namespace

StructuredDataWriter::~StructuredDataWriter() = default;

void StructuredDataWriter::writeWholeStreamPart(uint32_t tag, std::istream& stream) {
    const uint64_t length = lengthFromStart(stream).value_or(kLargest);
    writeStreamPart(tag, stream, partLength(length));
}

void StructuredDataWriter::writeUInt32Part(uint32_t tag, uint32_t value) {
    const uint8_t bytes[] = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                             static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 24)};
    writeBytesPart(tag, bytes, sizeof bytes);
}

void StructuredDataWriter::writeStringPart(uint32_t tag, const std::string& text) {
    CPPExpandingByteArray bytes;
    const uint32_t length = partLength(text.size());
    bytes.set(text.data(), length);
    // After an allocation failure the array is empty, and must not be taken for an empty text.
    if (bytes.getSize() != length) throw std::bad_alloc();
    writeArrayPart(tag, bytes);
}

}  // namespace dovrel
