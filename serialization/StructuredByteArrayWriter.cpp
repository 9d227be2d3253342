#include "serialization/StructuredByteArrayWriter.h"

#include <cstring>
#include <istream>
#include <limits>
#include <typeinfo>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredDataFormat.h"

namespace dovrel {
namespace {

using namespace structuredData;

constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();
constexpr char kNotInitialized[] = "The writer is not initialized";
constexpr char kTooSmall[] = "Byte array too small (or did not expand as expected)";

void storeBigEndian(uint8_t* bytes, uint32_t value) {
    bytes[0] = static_cast<uint8_t>(value >> 24);
    bytes[1] = static_cast<uint8_t>(value >> 16);
    bytes[2] = static_cast<uint8_t>(value >> 8);
    bytes[3] = static_cast<uint8_t>(value);
}

void storeBlockHeader(uint8_t* bytes, uint32_t typeNumber) {
    storeBigEndian(bytes, kMagic);
    bytes[kFormatOffset] = kFormatByte1;
    bytes[kFormatOffset + 1] = kFormatByte2WithType;
    storeBigEndian(bytes + kTypeOffset, typeNumber);
}

// Makes one 64-bit number of both, so that the compiler generates a single store.
void storePartHeader(uint8_t* bytes, uint32_t tag, uint32_t length) {
    const uint64_t both = uint64_t{tag} << 32 | length;
    bytes[0] = static_cast<uint8_t>(both >> 56);
    bytes[1] = static_cast<uint8_t>(both >> 48);
    bytes[2] = static_cast<uint8_t>(both >> 40);
    bytes[3] = static_cast<uint8_t>(both >> 32);
    bytes[4] = static_cast<uint8_t>(both >> 24);
    bytes[5] = static_cast<uint8_t>(both >> 16);
    bytes[6] = static_cast<uint8_t>(both >> 8);
    bytes[7] = static_cast<uint8_t>(both);
}

[[noreturn]] void failWrite(const char* site) {
    throwSerializationFailure<StructuredWriteFailedException>(site, kTooSmall);
}

}  // namespace

void StructuredByteArrayWriter::initialize(CPPByteArray& target, uint32_t typeNumber) {
    setTarget(target);
    writeBlockHeader(typeNumber);
}

void StructuredByteArrayWriter::initialize(CPPByteArray& target, uint32_t typeNumber,
                                           std::initializer_list<StructuredPart> parts) {
    setTarget(target);
    if (writeWholeBlock(typeNumber, parts)) return;
    writeBlockHeader(typeNumber);
    for (const StructuredPart& part : parts)
        writeBytesPart(part.getTag(), part.data(), part.getLength());
}

void StructuredByteArrayWriter::setTarget(CPPByteArray& target) {
    target_ = &target;
    const bool justExpanding = typeid(target) == typeid(CPPExpandingByteArray);
    expanding_ = justExpanding ? static_cast<CPPExpandingByteArray*>(&target) : nullptr;
}

void StructuredByteArrayWriter::writeBlockHeader(uint32_t typeNumber) {
    uint8_t header[kHeaderSize];
    storeBlockHeader(header, typeNumber);
    bool landed = true;
    if (expanding_ != nullptr) {
        expanding_->CPPExpandingByteArray::writeBytes(0, header, kHeaderSize);
    } else {
        for (uint32_t i = 0; i < kHeaderSize; ++i) {
            landed = storeByte(i, header[i]) && landed;
        }
    }
    position_ = 0;
    advance(kHeaderSize, site::kWriterInitialize);
    if (!landed) failWrite(site::kWriterInitialize);
}

// Does for a whole block what writeWholePart does for a part, for the same reason.
bool StructuredByteArrayWriter::writeWholeBlock(uint32_t typeNumber,
                                                std::initializer_list<StructuredPart> parts) {
    if (expanding_ == nullptr) return false;
    uint64_t size = kHeaderSize;
    for (const StructuredPart& part : parts)
        size += uint64_t{kPartHeaderSize} + part.getLength();
    if (size > kLargest) return false;
    const auto end = static_cast<uint32_t>(size);
    if (end > expanding_->size_ && !expanding_->grow(end, 0)) return false;
    uint8_t* place = expanding_->data_;
    storeBlockHeader(place, typeNumber);
    place += kHeaderSize;
    for (const StructuredPart& part : parts) {
        storePartHeader(place, part.getTag(), part.getLength());
        place = part.copyTo(place + kPartHeaderSize);
    }
    position_ = end;
    return true;
}

void StructuredByteArrayWriter::writeArrayPart(uint32_t tag, const CPPByteArray& array) {
    requireTarget(site::kWriteArrayPart);
    const uint32_t length = array.getSize();
    if (writeWholePart(tag, array.data(), length)) return;
    writePartHeader(tag, length);
    target_->copyFrom(position_, array, length, 0);
    advance(length, site::kWriteArrayPart);
}

void StructuredByteArrayWriter::writeBytesPart(uint32_t tag, const void* bytes, uint32_t length) {
    requireTarget(site::kWriteBytesPart);
    if (writeWholePart(tag, bytes, length)) return;
    writePartHeader(tag, length);
    target_->writeBytes(position_, bytes, length);
    advance(length, site::kWriteBytesPart);
}

void StructuredByteArrayWriter::writeStreamPart(uint32_t tag, std::istream& stream, uint32_t length) {
    requireTarget(site::kWriteStreamPart);
    if (!hasRoomForPart(length)) failWrite(site::kWriteStreamPart);
    writePartHeader(tag, length);
    bool landed = false;
    try {
        landed = storeCharacters(stream, length);
    } catch (...) {
        position_ += length;
        throw;
    }
    advance(length, site::kWriteStreamPart);
    if (!landed) failWrite(site::kWriteStreamPart);
}

void StructuredByteArrayWriter::requireTarget(const char* site) const {
    if (target_ == nullptr) {
        throwSerializationFailure<StructuredWriterNotInitializedException>(site, kNotInitialized);
    }
}

// Writes header and data of a part with a single growth of the target, because each growth is a
// reallocation. Nobody can see the difference if the target is exactly a CPPExpandingByteArray. Returns
// false and changes nothing for other targets, and if the part does not fit. The caller then writes step by
// step, as far as possible.
bool StructuredByteArrayWriter::writeWholePart(uint32_t tag, const void* bytes, uint32_t length) {
    if (expanding_ == nullptr) return false;
    uint8_t bytesOfHeader[kPartHeaderSize];
    storePartHeader(bytesOfHeader, tag, length);
    uint64_t header = 0;
    std::memcpy(&header, bytesOfHeader, sizeof header);
    if (!expanding_->writeBehindHeader(position_, header, bytes, length)) return false;
    position_ += kPartHeaderSize + length;
    return true;
}

void StructuredByteArrayWriter::writePartHeader(uint32_t tag, uint32_t length) {
    uint8_t header[kPartHeaderSize];
    storePartHeader(header, tag, length);
    target_->writeBytes(position_, header, kPartHeaderSize);
    advance(kPartHeaderSize, site::kWriterPartHeader);
}

// Returns whether the part can end within the 2^32 - 1 bytes of the longest block. Also returns true if not
// even a header fits after the position, because writePartHeader reports that.
bool StructuredByteArrayWriter::hasRoomForPart(uint32_t length) const {
    constexpr uint32_t kLastHeader = kLargest - kPartHeaderSize;
    return position_ > kLastHeader || length <= kLastHeader - position_;
}

// Returns false if a byte could not be stored.
bool StructuredByteArrayWriter::storeCharacters(std::istream& stream, uint32_t length) {
    stream.clear();
    bool landed = true;
    for (uint32_t i = 0; i < length; ++i) {
        // At its end the stream returns -1, whose low byte is the fill byte for missing bytes.
        landed = storeByte(position_ + i, static_cast<uint8_t>(stream.get())) && landed;
    }
    return landed;
}

// Returns false if the byte was not stored. A later byte that is stored would make the target grow and put a
// 0 in the place of the lost byte, which no check of the size can detect.
bool StructuredByteArrayWriter::storeByte(uint32_t offset, uint8_t value) {
    target_->setByte(offset, value);
    return offset < target_->getSize();
}

// If the position would overflow, it stays at the largest offset, so it is outside every target from then on.
void StructuredByteArrayWriter::advance(uint32_t bytes, const char* site) {
    const bool wraps = bytes > kLargest - position_;
    position_ = wraps ? kLargest : position_ + bytes;
    if (wraps || position_ > target_->getSize()) failWrite(site);
}

}  // namespace dovrel
