// CPPExpandingByteArray: the byte array whose writes grow it instead of being clipped.
//
// Growth is exact: after a write that reaches beyond the end, the size is the highest byte written plus one.
// Bytes between the old end and the first byte written are 0. A write that would reach beyond 2^32 - 1 bytes,
// or for which memory does not suffice, stores nothing.
#pragma once

#include "serialization/CPPByteArray.h"

namespace dovrel {

class CPPExpandingByteArray : public CPPByteArray {
  public:
    CPPExpandingByteArray() = default;
    CPPExpandingByteArray(const CPPExpandingByteArray&) = default;
    CPPExpandingByteArray(CPPExpandingByteArray&&) noexcept = default;
    CPPExpandingByteArray& operator=(const CPPExpandingByteArray&) = default;
    using CPPByteArray::operator=;
    ~CPPExpandingByteArray() override;

    void setByte(uint32_t index, uint8_t value) override;

    /// Grows to offset + length also when length is 0.
    void writeBytes(uint32_t offset, const void* source, uint32_t length) override;

    /// Grows to offset + length; bytes that the source does not have become 0 where the array grew, and stay
    /// as they are elsewhere.
    void copyFrom(uint32_t offset, const CPPByteArray& source, uint32_t length,
                  uint32_t sourceOffset) override;

  private:
    friend class StructuredByteArrayWriter;

    /// Stores a header of 8 bytes, and the bytes behind it, as two calls of writeBytes would, but grows once.
    /// False, and nothing changed, where the array cannot grow as far.
    bool writeBehindHeader(uint32_t offset, uint64_t header, const void* source, uint32_t length);

    /// As grow; a source inside this array moves with the block, and is led there.
    bool growBesides(const void*& source, uint32_t newSize, uint32_t fillEnd);

    /// Makes the size newSize, which lies beyond the end. Of the new bytes those below fillEnd become 0, the
    /// others are stored by the caller at once. False, and nothing changed, where memory runs out.
    bool grow(uint32_t newSize, uint32_t fillEnd);
};

}  // namespace dovrel
