// StructuredByteArrayWriter: writes a structured block into a byte array that the caller owns.
//
// Every byte is stored through the virtual functions of the target. So an expanding array grows with the
// block, and the writes to a plain array are clipped.
//
// After its stores, each operation checks that the block is still within the target, and throws a
// StructuredWriteFailedException if it is not. The bytes stored until then stay, and the next part follows
// after them. Before initialize, each write throws a StructuredWriterNotInitializedException and stores
// nothing. The detail of both exceptions names the operation; the code is 0.
#pragma once

#include "serialization/StructuredDataWriter.h"

namespace dovrel {

class StructuredByteArrayWriter : public StructuredDataWriter {
  public:
    StructuredByteArrayWriter() = default;

    /// Starts a block at the beginning of the target and writes its header of 10 bytes. The target is not
    /// owned and must outlive all writes.
    void initialize(CPPByteArray& target, uint32_t typeNumber);

    /// Continues a complete block: the next part follows after the last byte of the block. The block is not
    /// owned and must outlive all writes.
    void continueBlock(CPPByteArray& block);

    /// Lets an expanding target grow to `size` bytes at once, if it has fewer, because each growth is a
    /// reallocation. For callers that know the size of the block. A plain array stays as it is, and so does a
    /// target that cannot grow so far.
    void growTo(uint64_t size);

    void writeArrayPart(uint32_t tag, const CPPByteArray& array) override;
    void writeBytesPart(uint32_t tag, const void* bytes, uint32_t length) override;

    /// Rejects a length that is too large for any block before it stores anything. If the stream throws, the
    /// next part starts where it would have started after the whole part.
    void writeStreamPart(uint32_t tag, std::istream& stream, uint32_t length) override;

  private:
    void requireTarget(const char* site) const;
    void writePartHeader(uint32_t tag, uint32_t length);
    bool hasRoomForPart(uint32_t length) const;
    bool storeCharacters(std::istream& stream, uint32_t length);
    void advance(uint32_t bytes, const char* site);

    CPPByteArray* target_ = nullptr;
    uint32_t position_ = 0;
};

}  // namespace dovrel
