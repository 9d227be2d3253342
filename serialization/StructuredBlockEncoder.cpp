#include "serialization/StructuredBlockEncoder.h"

#include <limits>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredDataFormat.h"

namespace dovrel {

using namespace structuredData;

void encodeStructuredBlock(CPPByteArray& target, uint32_t typeNumber,
                           std::initializer_list<StructuredPart> parts) {
    uint64_t size = kHeaderSize;
    for (const StructuredPart& part : parts)
        size += uint64_t{kPartHeaderSize} + part.getLength();

    const bool fits = size <= std::numeric_limits<uint32_t>::max();
    uint8_t* place = fits ? target.setUninitialized(static_cast<uint32_t>(size)) : nullptr;
    if (place == nullptr)
        throwSerializationFailure<StructuredWriteFailedException>(site::kWriteBytesPart, kTooSmall);

    storeBlockHeader(place, typeNumber);
    place += kHeaderSize;
    for (const StructuredPart& part : parts) {
        storePartHeader(place, part.getTag(), part.getLength());
        place = part.copyTo(place + kPartHeaderSize);
    }
}

}  // namespace dovrel
