// CPPExpandingByteArray: the byte array that grows when a write reaches beyond its end.
//
// It grows only as far as necessary: after such a write the size is the offset of the last byte written plus
// one. Bytes between the old end and the first byte written are 0. A write that would need more than 2^32 - 1
// bytes, or for which memory runs out, stores nothing.
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

    /// Grows to offset + length bytes, even if `length` is 0.
    void writeBytes(uint32_t offset, const void* source, uint32_t length) override;

    /// Grows to offset + length bytes. For bytes that the source does not have, new bytes become 0 and old
    /// bytes stay unchanged.
    void copyFrom(uint32_t offset, const CPPByteArray& source, uint32_t length,
                  uint32_t sourceOffset) override;

  private:
    /// Does the same as grow. `source` may point into this array; it is rebased after the reallocation.
    bool growBesides(const void*& source, uint32_t newSize, uint32_t fillEnd);

    /// Grows the array to `newSize` bytes, which must be more than its size. New bytes before
    /// `fillEnd` become 0; the caller must store the others at once. Returns false and changes nothing
    /// if memory runs out.
    bool grow(uint32_t newSize, uint32_t fillEnd);
};

}  // namespace dovrel
