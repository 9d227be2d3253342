// StructuredDataReader: the interface for reading the parts of a structured block (StructuredDataFormat.h) by
// their tags, in any order and any number of times.
//
// The implementing class defines which exceptions the operations throw.
#pragma once

#include <cstdint>
#include <string>

#include "serialization/CPPByteArray.h"

namespace dovrel {

class StructuredDataReader {
  public:
    StructuredDataReader() = default;
    StructuredDataReader(const StructuredDataReader&) = delete;
    StructuredDataReader& operator=(const StructuredDataReader&) = delete;

    /// The order of the virtual functions is fixed: the destructors, then the five below.
    virtual ~StructuredDataReader();

    /// Returns the type number of the block, or 0xFFFFFFFF if it has none.
    virtual uint32_t getTypeNumber() const = 0;

    /// Returns a new array with a copy of the data; the caller deletes it. Throws std::bad_alloc if
    /// memory runs out.
    virtual CPPByteArray* getPart(uint32_t tag) const = 0;

    /// Copies the data to `destination`, which must have room for getPartLength(tag) bytes.
    virtual void readPart(uint32_t tag, void* destination) const = 0;

    virtual uint32_t getPartLength(uint32_t tag) const = 0;

    /// Returns the first 4 bytes of the data as a number, least significant byte first. Bytes that a shorter
    /// part does not have count as 0. Throws what readPart throws.
    virtual uint32_t readUInt32Part(uint32_t tag) const;

    /// Returns the data as a string, one character per byte, including zero bytes. Throws what getPart throws.
    std::string readStringPart(uint32_t tag) const;

    /// Does the same, but XORs every byte with the low 8 bits of `mask`.
    std::string readMaskedStringPart(uint32_t tag, uint32_t mask) const;
};

}  // namespace dovrel
