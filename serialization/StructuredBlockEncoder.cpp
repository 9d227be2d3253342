#include "serialization/StructuredBlockEncoder.h"

#include <limits>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredDataFormat.h"

namespace dovrel {

using namespace structuredData;

namespace {

constexpr uint32_t kLargestBlock = std::numeric_limits<uint32_t>::max();

}  // namespace

void throwStructuredWriteFailure() {
    throwSerializationFailure<StructuredWriteFailedException>(site::kWriteBytesPart, kTooSmall);
}

void encodeStructuredBlock(CPPByteArray& target, uint32_t typeNumber, const StructuredPart* parts,
                           size_t count) {
    uint8_t* const place = allocateStructuredBlock(target, measureStructuredBlock(parts, count));
    storeStructuredBlock(place, typeNumber, parts, count);
}

uint32_t measureStructuredBlock(const StructuredPart* parts, size_t count) {
    uint64_t size = kHeaderSize;
    for (size_t i = 0; i < count; ++i)
        size += measurePart(parts[i]);
    if (size > kLargestBlock) throwStructuredWriteFailure();
    return static_cast<uint32_t>(size);
}

void storeStructuredBlock(uint8_t* place, uint32_t typeNumber, const StructuredPart* parts, size_t count) {
    storeBlockHeader(place, typeNumber);
    place += kHeaderSize;
    for (size_t i = 0; i < count; ++i)
        place = storePart(place, parts[i]);
}

uint8_t* allocateStructuredBlock(CPPByteArray& target, uint64_t size) {
    uint8_t* const place =
        size <= kLargestBlock ? target.setUninitialized(static_cast<uint32_t>(size)) : nullptr;
    if (place == nullptr) throwStructuredWriteFailure();
    return place;
}

}  // namespace dovrel
