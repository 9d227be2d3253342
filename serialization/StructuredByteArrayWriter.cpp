#include "serialization/StructuredByteArrayWriter.h"

#include <istream>
#include <limits>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/StructuredDataFormat.h"

namespace dovrel {
namespace {

using namespace structuredData;

constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();
constexpr char kNotInitialized[] = "The writer is not initialized";

[[noreturn]] void failWrite(const char* site) {
    throwSerializationFailure<StructuredWriteFailedException>(site, kTooSmall);
}

}  // namespace

void StructuredByteArrayWriter::initialize(CPPByteArray& target, uint32_t typeNumber) {
    target_ = &target;
    position_ = 0;
    uint8_t header[kHeaderSize];
    storeBlockHeader(header, typeNumber);
    // The last byte first, so that an expanding target grows only once. If the last byte is stored, the target
    // has room for the others, so the check of the size also covers them.
    for (uint32_t i = kHeaderSize; i-- > 0;)
        target.setByte(i, header[i]);
    advance(kHeaderSize, site::kWriterInitialize);
}

void StructuredByteArrayWriter::continueBlock(CPPByteArray& block) {
    target_ = &block;
    position_ = block.getSize();
}

void StructuredByteArrayWriter::writeArrayPart(uint32_t tag, const CPPByteArray& array) {
    requireTarget(site::kWriteArrayPart);
    const uint32_t length = array.getSize();
    growTo(uint64_t{position_} + kPartHeaderSize + length);
    writePartHeader(tag, length);
    target_->copyFrom(position_, array, length, 0);
    advance(length, site::kWriteArrayPart);
}

void StructuredByteArrayWriter::writeBytesPart(uint32_t tag, const void* bytes, uint32_t length) {
    requireTarget(site::kWriteBytesPart);
    growTo(uint64_t{position_} + kPartHeaderSize + length);
    writePartHeader(tag, length);
    target_->writeBytes(position_, bytes, length);
    advance(length, site::kWriteBytesPart);
}

void StructuredByteArrayWriter::writeStreamPart(uint32_t tag, std::istream& stream, uint32_t length) {
    requireTarget(site::kWriteStreamPart);
    if (!hasRoomForPart(length)) failWrite(site::kWriteStreamPart);
    writePartHeader(tag, length);
    bool isStored = false;
    try {
        isStored = storeCharacters(stream, length);
    } catch (...) {
        position_ += length;
        throw;
    }
    advance(length, site::kWriteStreamPart);
    if (!isStored) failWrite(site::kWriteStreamPart);
}

void StructuredByteArrayWriter::requireTarget(const char* site) const {
    if (target_ == nullptr) {
        throwSerializationFailure<StructuredWriterNotInitializedException>(site, kNotInitialized);
    }
}

void StructuredByteArrayWriter::growTo(uint64_t size) {
    if (size > target_->getSize() && size <= kLargest) target_->setByte(static_cast<uint32_t>(size - 1), 0);
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

// Returns false if a byte was not stored. The size cannot show that if a later byte was stored: it makes the
// target grow, with a 0 in the place of the lost byte.
bool StructuredByteArrayWriter::storeCharacters(std::istream& stream, uint32_t length) {
    stream.clear();
    bool isStored = true;
    for (uint32_t offset = position_; offset < position_ + length; ++offset) {
        // At its end the stream returns -1, whose low byte is the fill byte for missing bytes.
        target_->setByte(offset, static_cast<uint8_t>(stream.get()));
        isStored = offset < target_->getSize() && isStored;
    }
    return isStored;
}

// If the position would overflow, it stays at the largest offset, so it is outside every target from then on.
void StructuredByteArrayWriter::advance(uint32_t bytes, const char* site) {
    const bool wraps = bytes > kLargest - position_;
    position_ = wraps ? kLargest : position_ + bytes;
    if (wraps || position_ > target_->getSize()) failWrite(site);
}

}  // namespace dovrel
