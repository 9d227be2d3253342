#include "server/PartCount.h"

#include "serialization/StructuredDataFormat.h"

namespace merrowd {

namespace format = dovrel::structuredData;

namespace {

constexpr uint32_t kNumberSize = 4;

uint32_t bigEndianAt(const dovrel::CPPByteArray& block, uint32_t offset) {
    uint32_t number = 0;
    for (uint32_t i = 0; i < kNumberSize; ++i)
        number = number << 8 | block.getByte(offset + i);
    return number;
}

uint32_t partsOffset(const dovrel::CPPByteArray& block) {
    const bool hasType = block.getByte(format::kFormatOffset + 1) == format::kFormatByte2WithType;
    return hasType ? format::kHeaderSize : format::kPartsOffsetWithoutType;
}

}  // namespace

bool hasMorePartsThan(uint32_t most, const dovrel::CPPByteArray& block) {
    const uint32_t size = block.getSize();
    if (size < format::kHeaderSize) return false;
    uint32_t offset = partsOffset(block);
    for (uint32_t count = 0; size - offset >= format::kPartHeaderSize; ++count) {
        if (count == most) return true;
        offset += format::kPartHeaderSize;
        const uint32_t length = bigEndianAt(block, offset - kNumberSize);
        if (length > size - offset) return false;
        offset += length;
    }
    return false;
}

}  // namespace merrowd
