// StructuredByteArrayReader: reads a structured block in a byte array that the caller owns.
//
// initialize parses the block once, into a table of its parts. Each later request copies its data from the
// array. So the array must stay alive and unchanged while the reader is in use. Several threads may make
// requests at the same time.
//
// Exceptions (the detail names the operation, the message names the check in it, the code is 0):
//
// - StructuredReaderNotInitializedException if the bytes are not a structured block, or if the reader has
//   no block;
// - PartNotFoundException if the block has no part with the tag. (From readPart, detail and message are
//   both "???".)
#pragma once

#include <algorithm>

#include "serialization/ByteBlock.h"
#include "serialization/ByteOrder.h"
#include "serialization/PartTable.h"
#include "serialization/StructuredDataFormat.h"
#include "serialization/StructuredDataReader.h"

namespace dovrel {

class StructuredByteArrayReader : public StructuredDataReader {
  public:
    StructuredByteArrayReader() = default;

    /// Parses the block. If the array is null, throws and leaves the reader without a block. If the block
    /// is truncated or damaged, throws and keeps the parts before the damage in the table; discard the
    /// reader then.
    ///
    /// Initialize a reader only once. A second block adds its tags to the table, and a tag that both blocks
    /// have keeps the offset and length from the first block. The reader then applies them to the bytes of
    /// the second block, but never reads beyond its end. For bytes beyond the end getPart returns 0, readPart
    /// leaves the destination unchanged, and viewPart returns a shorter part than getPartLength says.
    void initialize(const CPPByteArray* source);

    // Results, ownership and failures: StructuredDataReader.h.
    uint32_t getTypeNumber() const override;
    CPPByteArray* getPart(uint32_t tag) const override;
    void readPart(uint32_t tag, void* destination) const override;
    uint32_t getPartLength(uint32_t tag) const override;

    /// Returns whether the block has the part; false if there is no block. Never throws.
    bool hasPart(uint32_t tag) const;

    /// Sets `part` to a view of a part's data in the caller's array. Returns false, and leaves `part` unchanged,
    /// if there is no such part or no block. Never throws.
    bool findPart(uint32_t tag, ByteView& part) const {
        const PartTable::Entry* const entry = parts_.find(tag);
        if (source_ == nullptr || entry == nullptr) return false;
        const uint32_t size = source_->getSize();
        const uint32_t offset = std::min(entry->offset, size);
        part = {source_->data() + offset, std::min(entry->length, size - offset)};
        return true;
    }

    /// Returns a view of a part's data in the caller's array. Throws what getPart throws.
    ByteView viewPart(uint32_t tag) const {
        ByteView part;
        if (!findPart(tag, part)) failRequest(structuredData::site::kGetPart);
        return part;
    }

    /// Returns what readUInt32Part returns, but throws what getPart throws.
    uint32_t viewNumber(uint32_t tag) const {
        const ByteView part = viewPart(tag);
        return part.length >= kNumberLength ? loadLittleEndian32(part.data) : extendNumber(part);
    }

  private:
    static constexpr uint32_t kNumberLength = 4;

    static uint32_t extendNumber(const ByteView& part);
    void requireSource(const char* site) const;
    [[noreturn]] void failRequest(const char* site) const;
    void requireBytes(uint32_t offset, uint32_t count) const;
    const PartTable::Entry& requireEntry(uint32_t tag, const char* site) const;
    uint32_t parseHeader();
    void parseParts(uint32_t offset);

    const CPPByteArray* source_ = nullptr;
    uint32_t typeNumber_ = structuredData::kNoTypeNumber;
    PartTable parts_;
};

}  // namespace dovrel
