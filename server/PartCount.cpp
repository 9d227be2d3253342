#include "server/PartCount.h"

#include "serialization/ByteOrder.h"
#include "serialization/StructuredDataFormat.h"

namespace merrowd {

namespace format = dovrel::structuredData;

namespace {

constexpr uint32_t kNumberSize = 4;

uint32_t partsOffset(const dovrel::CPPByteArray& block) {
    const bool hasType = block.getByte(format::kFormatOffset + 1) == format::kFormatByte2WithType;
    return hasType ? format::kHeaderSize : format::kPartsOffsetWithoutType;
}

}  // namespace

bool hasMorePartsThan(uint32_t most, const dovrel::CPPByteArray& block) {
    const uint32_t size = block.getSize();
    if (size < format::kHeaderSize) return false;
    uint32_t offset = partsOffset(block);
    if ((size - offset) / format::kPartHeaderSize <= most) return false;
    for (uint32_t count = 0; size - offset >= format::kPartHeaderSize; ++count) {
        if (count == most) return true;
        offset += format::kPartHeaderSize;
        const uint32_t length = dovrel::loadBigEndian32(block.data() + offset - kNumberSize);
        if (length > size - offset) return false;
        offset += length;
    }
    return false;
}

}  // namespace merrowd
