#include "serialization/StructuredDataWriter.h"

#include "serialization/ByteOrder.h"
#include "serialization/CPPExpandingByteArray.h"
#include "serialization/StreamLength.h"
#include "serialization/StructuredDataFormat.h"

namespace dovrel {

using namespace structuredData;

StructuredDataWriter::~StructuredDataWriter() = default;

void StructuredDataWriter::writeWholeStreamPart(uint32_t tag, std::istream& stream) {
    // A stream that cannot be positioned has no length; the longest one makes the write fail.
    const uint64_t length = lengthFromStart(stream).value_or(kLongestPart);
    writeStreamPart(tag, stream, toPartLength(length));
}

void StructuredDataWriter::writeUInt32Part(uint32_t tag, uint32_t value) {
    uint8_t bytes[sizeof value];
    storeLittleEndian32(bytes, value);
    writeBytesPart(tag, bytes, sizeof bytes);
}

void StructuredDataWriter::writeStringPart(uint32_t tag, const std::string& text) {
    CPPExpandingByteArray bytes;
    bytes.setOrThrow(text.data(), toPartLength(text.size()));
    writeArrayPart(tag, bytes);
}

}  // namespace dovrel
