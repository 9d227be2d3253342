// StructuredByteArrayWriter: writes a structured block into a byte array that the caller owns.
//
// Every byte is stored through the virtual functions of the target. So an expanding array grows with the
// block, and the writes to a plain array are clipped. (If the target is exactly a CPPExpandingByteArray, and
// not of a derived class, it grows once per part instead of once for the header and once for the data. The
// bytes and the sizes are the same.)
//
// After its stores, each operation checks that the block is still within the target, and throws a
// StructuredWriteFailedException if it is not. The bytes stored until then stay, and the next part follows
// after them. Before initialize, each write throws a StructuredWriterNotInitializedException and stores
// nothing. The detail of both exceptions names the operation; the code is 0.
#pragma once

#include <initializer_list>

#include "serialization/CPPExpandingByteArray.h"
#include "serialization/StructuredDataWriter.h"
#include "serialization/StructuredPart.h"

namespace dovrel {

class StructuredByteArrayWriter : public StructuredDataWriter {
  public:
    StructuredByteArrayWriter() = default;

    /// Starts a block at the beginning of the target and writes its header of 10 bytes. The target is not
    /// owned and must outlive all writes.
    void initialize(CPPByteArray& target, uint32_t typeNumber);

    /// Does the same, then writes each of the parts as writeBytesPart does. The bytes of the parts must be
    /// outside the target. Bytes, sizes and exceptions are those of the single calls, but a target that is
    /// exactly a CPPExpandingByteArray grows only once.
    void initialize(CPPByteArray& target, uint32_t typeNumber, std::initializer_list<StructuredPart> parts);

    void writeArrayPart(uint32_t tag, const CPPByteArray& array) override;
    void writeBytesPart(uint32_t tag, const void* bytes, uint32_t length) override;

    /// Rejects a length that is too large for any block before it stores anything. If the stream throws, the
    /// next part starts where it would have started after the whole part.
    void writeStreamPart(uint32_t tag, std::istream& stream, uint32_t length) override;

  private:
    void setTarget(CPPByteArray& target);
    void writeBlockHeader(uint32_t typeNumber);
    bool writeWholeBlock(uint32_t typeNumber, std::initializer_list<StructuredPart> parts);
    void requireTarget(const char* site) const;
    bool writeWholePart(uint32_t tag, const void* bytes, uint32_t length);
    void writePartHeader(uint32_t tag, uint32_t length);
    bool hasRoomForPart(uint32_t length) const;
    bool storeCharacters(std::istream& stream, uint32_t length);
    bool storeByte(uint32_t offset, uint8_t value);
    void advance(uint32_t bytes, const char* site);

    CPPByteArray* target_ = nullptr;
    /// The target if it is exactly a CPPExpandingByteArray, and not of a derived class; otherwise null.
    CPPExpandingByteArray* expanding_ = nullptr;
    uint32_t position_ = 0;
};

}  // namespace dovrel
