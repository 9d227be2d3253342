// StructuredByteArrayReader: reads a structured block that lies in a byte array of the caller's.
//
// The block is parsed once, at initialize, into a table of its parts; the data are copied from the array at
// each request. The array therefore stays alive and unchanged while the reader is used. Requests by several
// threads at once are fine.
//
// Failures: bytes that are no structured block, and requests to a reader without a block, are a
// StructuredReaderNotInitializedException, a tag that the block does not have is a PartNotFoundException. The
// detail names the operation, the message the check within it, the code is 0. (Where readPart finds no such
// tag, detail and message are both "???".)
#pragma once

#include <algorithm>

#include "serialization/PartTable.h"
#include "serialization/StructuredDataFormat.h"
#include "serialization/StructuredDataReader.h"

namespace dovrel {

class StructuredByteArrayReader : public StructuredDataReader {
  public:
    StructuredByteArrayReader() = default;

    /// Parses the block. A null array leaves the reader without a block. A block that is truncated or damaged
    /// leaves the parts before the damage in the table; discard the reader then.
    ///
    /// A reader is initialized once: a second block adds its tags to the table, and tags that both blocks
    /// have keep the offset and length that they have in the first. The data are those of the second block
    /// there; bytes beyond its end are never read. (getPart returns 0 for them, readPart leaves the
    /// destination as it is, viewPart is shorter than getPartLength says.)
    void initialize(const CPPByteArray* source);

    uint32_t getTypeNumber() const override;
    CPPByteArray* getPart(uint32_t tag) const override;
    void readPart(uint32_t tag, void* destination) const override;
    uint32_t getPartLength(uint32_t tag) const override;

    /// Never fails; false also without a block.
    bool hasPart(uint32_t tag) const;

    /// The data of a part where they lie in the array.
    struct View {
        const uint8_t* data;
        uint32_t length;
    };

    /// Fails as getPart does. Valid as long as the array stays unchanged.
    View viewPart(uint32_t tag) const {
        const PartTable::Entry* const entry = parts_.find(tag);
        if (source_ == nullptr || entry == nullptr) failRequest(structuredData::site::kGetPart);
        const uint32_t size = source_->getSize();
        const uint32_t offset = std::min(entry->offset, size);
        return {source_->data() + offset, std::min(entry->length, size - offset)};
    }

    /// Returns what readUInt32Part returns, but fails as getPart does.
    uint32_t viewNumber(uint32_t tag) const;

  private:
    void requireSource(const char* site) const;
    [[noreturn]] void failRequest(const char* site) const;
    void requireBytes(uint32_t offset, uint32_t count) const;
    const PartTable::Entry& entryOf(uint32_t tag, const char* site) const;
    uint32_t parseHeader();
    void parseParts(uint32_t offset);

    const CPPByteArray* source_ = nullptr;
    uint32_t typeNumber_ = structuredData::kNoTypeNumber;
    PartTable parts_;
};

}  // namespace dovrel
