// StructuredDataWriter: writes the parts of a structured block (StructuredDataFormat.h), in the order of the
// calls.
//
// Every operation throws what its implementing class says.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "serialization/CPPByteArray.h"

namespace dovrel {

class StructuredDataWriter {
  public:
    StructuredDataWriter() = default;
    StructuredDataWriter(const StructuredDataWriter&) = delete;
    StructuredDataWriter& operator=(const StructuredDataWriter&) = delete;

    /// The order of the virtual operations is fixed: the destructors, then the five below.
    virtual ~StructuredDataWriter();

    virtual void writeArrayPart(uint32_t tag, const CPPByteArray& array) = 0;

    /// The bytes lie outside whatever is written to. The pointer may be null when length is 0.
    virtual void writeBytesPart(uint32_t tag, const void* bytes, uint32_t length) = 0;

    /// Clears the state of the stream and writes the next length bytes. Each byte that the stream does not
    /// have is written as 0xFF. Exceptions that the stream throws pass through and leave the part incomplete.
    virtual void writeStreamPart(uint32_t tag, std::istream& stream, uint32_t length) = 0;

    /// Clears the state of the stream and writes the whole stream, from its start to its end. A stream that
    /// cannot be positioned (a pipe, a file that is not open), or does not fit into a block, fails like data
    /// that do not fit.
    virtual void writeWholeStreamPart(uint32_t tag, std::istream& stream);

    /// Writes 4 bytes, the least significant first, whatever the order of the machine.
    virtual void writeUInt32Part(uint32_t tag, uint32_t value);

    /// Writes the characters without a terminating zero. std::bad_alloc where memory runs out.
    void writeStringPart(uint32_t tag, const std::string& text);
};

}  // namespace dovrel
