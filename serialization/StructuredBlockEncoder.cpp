#include "serialization/StructuredBlockEncoder.h"

#include <limits>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredDataFormat.h"

namespace dovrel {

using namespace structuredData;

namespace {

[[noreturn]] void failTooSmall() {
    throwSerializationFailure<StructuredWriteFailedException>(site::kWriteBytesPart, kTooSmall);
}

}  // namespace

void encodeStructuredBlock(CPPByteArray& target, uint32_t typeNumber,
                           std::initializer_list<StructuredPart> parts) {
    encodeStructuredBlock(target, typeNumber, parts.begin(), parts.size());
}

void encodeStructuredBlock(CPPByteArray& target, uint32_t typeNumber, const StructuredPart* parts,
                           size_t count) {
    uint8_t* const place = target.setUninitialized(measureStructuredBlock(parts, count));
    if (place == nullptr) failTooSmall();
    storeStructuredBlock(place, typeNumber, parts, count);
}

uint32_t measureStructuredBlock(const StructuredPart* parts, size_t count) {
    uint64_t size = kHeaderSize;
    for (size_t i = 0; i < count; ++i)
        size += uint64_t{kPartHeaderSize} + parts[i].getLength();
    if (size > std::numeric_limits<uint32_t>::max()) failTooSmall();
    return static_cast<uint32_t>(size);
}

void storeStructuredBlock(uint8_t* place, uint32_t typeNumber, const StructuredPart* parts, size_t count) {
    storeBlockHeader(place, typeNumber);
    place += kHeaderSize;
    for (size_t i = 0; i < count; ++i) {
        storePartHeader(place, parts[i].getTag(), parts[i].getLength());
        place = parts[i].copyTo(place + kPartHeaderSize);
    }
}

}  // namespace dovrel
