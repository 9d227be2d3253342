// StructuredDataReader: gives access to the parts of a structured block (StructuredDataFormat.h) by their
// tags, in any order and any number of times.
//
// Every operation throws what its implementing class says.
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

    /// The order of the virtual operations is fixed: the destructors, then the five below.
    virtual ~StructuredDataReader();

    /// 0xFFFFFFFF for a block that carries none.
    virtual uint32_t getTypeNumber() const = 0;

    /// A new array with a copy of the data; the caller deletes it. std::bad_alloc where memory runs out.
    virtual CPPByteArray* getPart(uint32_t tag) const = 0;

    /// Copies the data to the destination, which holds at least getPartLength(tag) bytes.
    virtual void readPart(uint32_t tag, void* destination) const = 0;

    virtual uint32_t getPartLength(uint32_t tag) const = 0;

    /// The first 4 bytes of the data, the least significant first; bytes that a shorter part does not have
    /// count as 0. Fails as readPart does.
    virtual uint32_t readUInt32Part(uint32_t tag) const;

    /// One character per byte, zero bytes included. Fails as getPart does.
    std::string readStringPart(uint32_t tag) const;

    /// The same with every byte combined with the low 8 bits of the mask by exclusive or.
    std::string readMaskedStringPart(uint32_t tag, uint32_t mask) const;
};

}  // namespace dovrel
