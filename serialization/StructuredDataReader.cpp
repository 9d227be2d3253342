#include "serialization/StructuredDataReader.h"

#include <memory>
#include <vector>

#include "client/exceptions/CPPException.h"
#include "serialization/ByteOrder.h"

namespace dovrel {
namespace {

constexpr uint32_t kWordSize = 4;

// Returns 0 instead of throwing, because readPart then reports the failure.
uint32_t lengthOrZero(const StructuredDataReader& reader, uint32_t tag) {
    try {
        return reader.getPartLength(tag);
    } catch (CPPException* caught) {
        std::unique_ptr<CPPException> failure(caught);
        return 0;
    }
}

}  // namespace

StructuredDataReader::~StructuredDataReader() = default;

uint32_t StructuredDataReader::readUInt32Part(uint32_t tag) const {
    const uint32_t length = lengthOrZero(*this, tag);
    if (length > kWordSize) {
        std::vector<uint8_t> bytes(length);
        readPart(tag, bytes.data());
        return loadLittleEndian32(bytes.data());
    }
    uint8_t bytes[kWordSize] = {};
    readPart(tag, bytes);
    return loadLittleEndian32(bytes);
}

std::string StructuredDataReader::readStringPart(uint32_t tag) const {
    const std::unique_ptr<CPPByteArray> part(getPart(tag));
    return std::string(reinterpret_cast<const char*>(part->data()), part->getSize());
}

std::string StructuredDataReader::readMaskedStringPart(uint32_t tag, uint32_t mask) const {
    std::string text = readStringPart(tag);
    for (char& character : text) {
        character = static_cast<char>(static_cast<uint8_t>(character) ^ (mask & 0xFF));
    }
    return text;
}

}  // namespace dovrel
