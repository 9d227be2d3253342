#include "serialization/StructuredByteArrayReader.h"

#include <algorithm>
#include <memory>

#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/ByteOrder.h"

namespace dovrel {
namespace {

using namespace structuredData;

// The message is the number of the check within the operation.
constexpr char kFirstCheck[] = "1";
constexpr char kSecondCheck[] = "2";

[[noreturn]] void failBounds() {
    throwSerializationFailure<StructuredReaderNotInitializedException>(site::kReaderBounds, kFirstCheck);
}

// Finishes the table even if parsing throws, so that the parts added before can be found.
class FinishTable {
  public:
    explicit FinishTable(PartTable& table) : table_(table) {}
    FinishTable(const FinishTable&) = delete;
    FinishTable& operator=(const FinishTable&) = delete;
    ~FinishTable() { table_.finish(); }

  private:
    PartTable& table_;
};

}  // namespace

void StructuredByteArrayReader::initialize(const CPPByteArray* source) {
    source_ = nullptr;
    if (source == nullptr) {
        throwSerializationFailure<StructuredReaderNotInitializedException>(site::kReaderInitialize,
                                                                           kFirstCheck);
    }
    source_ = source;
    parseParts(parseHeader());
}

uint32_t StructuredByteArrayReader::getTypeNumber() const {
    requireSource(site::kGetTypeNumber);
    return typeNumber_;
}

CPPByteArray* StructuredByteArrayReader::getPart(uint32_t tag) const {
    const PartTable::Entry& entry = requireEntry(tag, site::kGetPart);
    auto part = std::make_unique<CPPByteArray>();
    part->setFromPart(*source_, entry.offset, entry.length);
    // After an allocation failure the array is empty, and must not be taken for an empty part.
    part->requireSize(entry.length);
    return part.release();
}

void StructuredByteArrayReader::readPart(uint32_t tag, void* destination) const {
    requireSource(site::kReadPart);
    const PartTable::Entry* const entry = parts_.find(tag);
    if (entry == nullptr) throw new PartNotFoundException(CPPException::kDefaultDetail);
    source_->readBytes(entry->offset, destination, entry->length);
}

uint32_t StructuredByteArrayReader::getPartLength(uint32_t tag) const {
    return requireEntry(tag, site::kGetPartLength).length;
}

// Zero-extends a number of less than 4 bytes.
uint32_t StructuredByteArrayReader::extendNumber(const ByteView& part) {
    uint8_t extended[kNumberLength] = {};
    std::copy_n(part.data, part.length, extended);
    return loadLittleEndian32(extended);
}

bool StructuredByteArrayReader::hasPart(uint32_t tag) const {
    return parts_.find(tag) != nullptr;
}

void StructuredByteArrayReader::requireSource(const char* site) const {
    if (source_ == nullptr) {
        throwSerializationFailure<StructuredReaderNotInitializedException>(site, kFirstCheck);
    }
}

const PartTable::Entry& StructuredByteArrayReader::requireEntry(uint32_t tag, const char* site) const {
    const PartTable::Entry* const entry = parts_.find(tag);
    if (source_ == nullptr || entry == nullptr) failRequest(site);
    return *entry;
}

void StructuredByteArrayReader::failRequest(const char* site) const {
    requireSource(site);
    throwSerializationFailure<PartNotFoundException>(site, kSecondCheck);
}

// Throws unless the block has `count` bytes at `offset`. Subtracts instead of adding, because the sum of two
// lengths from a block may overflow.
void StructuredByteArrayReader::requireBytes(uint32_t offset, uint32_t count) const {
    const uint32_t size = source_->getSize();
    if (offset > size || count > size - offset) failBounds();
}

// Returns the offset of the first part.
uint32_t StructuredByteArrayReader::parseHeader() {
    const uint8_t* const bytes = source_->data();
    requireBytes(0, kFormatOffset);
    if (loadBigEndian32(bytes) != kMagic) {
        throwSerializationFailure<StructuredReaderNotInitializedException>(site::kReaderFormat, kFirstCheck);
    }
    requireBytes(kFormatOffset, kTypeOffset - kFormatOffset);
    const uint8_t format = bytes[kFormatOffset + 1];
    if (bytes[kFormatOffset] != kFormatByte1 ||
        (format != kFormatByte2WithoutType && format != kFormatByte2WithType)) {
        throwSerializationFailure<StructuredReaderNotInitializedException>(site::kReaderFormat, kSecondCheck);
    }
    if (format == kFormatByte2WithoutType) {
        typeNumber_ = kNoTypeNumber;
        return kPartsOffsetWithoutType;
    }
    requireBytes(kTypeOffset, kHeaderSize - kTypeOffset);
    typeNumber_ = loadBigEndian32(bytes + kTypeOffset);
    return kHeaderSize;
}

void StructuredByteArrayReader::parseParts(uint32_t offset) {
    const FinishTable finish(parts_);
    const uint8_t* const bytes = source_->data();
    const uint32_t size = source_->getSize();
    while (offset < size) {
        if (kPartHeaderSize > size - offset) failBounds();
        const uint64_t header = loadBigEndian64(bytes + offset);
        const auto tag = static_cast<uint32_t>(header >> 32);
        const auto length = static_cast<uint32_t>(header);
        offset += kPartHeaderSize;
        if (length > size - offset) failBounds();
        parts_.add(tag, offset, length);
        offset += length;
    }
}

}  // namespace dovrel
