// StructuredDataWriter: the interface for writing the parts of a structured block (StructuredDataFormat.h),
// in the order of the calls.
//
// The implementing class defines which exceptions the operations throw.
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

    /// The order of the virtual functions is fixed: the destructors, then the five below.
    virtual ~StructuredDataWriter();

    virtual void writeArrayPart(uint32_t tag, const CPPByteArray& array) = 0;

    /// The bytes must be outside the target of the writer. The pointer may be null if `length` is 0.
    virtual void writeBytesPart(uint32_t tag, const void* bytes, uint32_t length) = 0;

    /// Clears the state of the stream and writes the next `length` bytes. Writes 0xFF for each byte that the
    /// stream does not have. Exceptions of the stream pass through and leave the part incomplete.
    virtual void writeStreamPart(uint32_t tag, std::istream& stream, uint32_t length) = 0;

    /// Clears the state of the stream and writes the whole stream, from its start to its end. If the stream
    /// cannot be positioned (a pipe, a file that is not open) or does not fit into a block, it throws the
    /// same exception as for data that do not fit.
    virtual void writeWholeStreamPart(uint32_t tag, std::istream& stream);

    /// Writes 4 bytes, least significant byte first, on every processor.
    virtual void writeUInt32Part(uint32_t tag, uint32_t value);

    /// Writes the characters without a terminating NUL. Throws std::bad_alloc if memory runs out.
    void writeStringPart(uint32_t tag, const std::string& text);
};

}  // namespace dovrel
