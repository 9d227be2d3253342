// StructuredByteArrayWriter: writes a structured block into a byte array of the caller's.
//
// Every store goes through the virtual operations of the target, so an expanding array grows with the block,
// and a plain one has its writes clipped. (A target that is just a CPPExpandingByteArray is grown once for
// each part instead of once for its header and once for its data; the bytes and the sizes are the same.)
//
// Each operation checks after its stores that the block still lies within the target, and throws a
// StructuredWriteFailedException if it does not. The bytes stored until then stay, and the next part follows
// after them. Before initialize each write throws a StructuredWriterNotInitializedException and stores
// nothing. The detail of both names the operation; the code is 0.
#pragma once

#include <initializer_list>

#include "serialization/CPPExpandingByteArray.h"
#include "serialization/StructuredDataWriter.h"
#include "serialization/StructuredPart.h"

namespace dovrel {

class StructuredByteArrayWriter : public StructuredDataWriter {
  public:
    StructuredByteArrayWriter() = default;

    /// Starts a block at the beginning of the target with the 10 bytes of the header. The target stays the
    /// caller's and must live as long as anything is written.
    void initialize(CPPByteArray& target, uint32_t typeNumber);

    /// The same, and then writeBytesPart for each of the parts, whose bytes lie outside of the target. Bytes,
    /// sizes and failures are those of the single calls, but a target that is just a CPPExpandingByteArray is
    /// grown once for all of them.
    void initialize(CPPByteArray& target, uint32_t typeNumber, std::initializer_list<StructuredPart> parts);

    void writeArrayPart(uint32_t tag, const CPPByteArray& array) override;
    void writeBytesPart(uint32_t tag, const void* bytes, uint32_t length) override;

    /// A length that no block has room for is rejected before anything is stored. If the stream throws, the
    /// next part follows after the place of the whole part.
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
    /// The target where it is just an expanding array, and no class derived from it.
    CPPExpandingByteArray* expanding_ = nullptr;
    uint32_t position_ = 0;
};

}  // namespace dovrel
