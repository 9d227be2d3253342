// StructuredPart: a part that is to be written to a structured block, for writers that write all parts of a
// block at once.
#pragma once

#include <cstdint>
#include <cstring>

#include "serialization/ByteOrder.h"
#include "serialization/CPPByteArray.h"

namespace dovrel {

class StructuredPart {
  public:
    /// Returns a part of 4 bytes, least significant byte first, on every processor.
    static StructuredPart ofNumber(uint32_t tag, uint32_t number) {
        StructuredPart part(tag, nullptr, kNumberLength);
        part.isNumber_ = true;
        storeLittleEndian32(part.number_, number);
        return part;
    }

    /// Returns a part that refers to the bytes. They are not owned and must outlive the part. The pointer may
    /// be null if `length` is 0.
    static StructuredPart ofBytes(uint32_t tag, const void* bytes, uint32_t length) {
        return StructuredPart(tag, bytes, length);
    }

    /// Does the same for the bytes of an array. The array must not change while the part is in use.
    static StructuredPart ofArray(uint32_t tag, const CPPByteArray& array) {
        return StructuredPart(tag, array.data(), array.getSize());
    }

    uint32_t getTag() const { return tag_; }
    uint32_t getLength() const { return length_; }

    /// Returns the bytes; may be null if there are none. Valid as long as the part.
    const void* data() const { return isNumber_ ? number_ : bytes_; }

    /// Copies the bytes to `place`, which must have room for them. Returns the place after the last byte.
    uint8_t* copyTo(uint8_t* place) const {
        // The length of a number is a compile-time constant, which saves a function call.
        if (isNumber_) {
            std::memcpy(place, number_, kNumberLength);
        } else if (length_ != 0) {
            std::memcpy(place, bytes_, length_);
        }
        return place + length_;
    }

  private:
    static constexpr uint32_t kNumberLength = 4;

    StructuredPart(uint32_t tag, const void* bytes, uint32_t length)
        : tag_(tag), length_(length), bytes_(bytes) {}

    uint32_t tag_;
    uint32_t length_;
    const void* bytes_;
    uint8_t number_[kNumberLength] = {};
    bool isNumber_ = false;
};

}  // namespace dovrel
