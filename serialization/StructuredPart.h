// StructuredPart: a part of a structured block that is still to be written, for writers that are told all
// parts of a block at once.
#pragma once

#include <cstdint>
#include <cstring>

#include "serialization/CPPByteArray.h"

namespace dovrel {

class StructuredPart {
  public:
    /// 4 bytes, the least significant first, whatever the order of the machine.
    static StructuredPart ofNumber(uint32_t tag, uint32_t number) {
        StructuredPart part(tag, nullptr, kNumberLength);
        part.isNumber_ = true;
        for (uint32_t i = 0; i < kNumberLength; ++i)
            part.number_[i] = static_cast<uint8_t>(number >> (8 * i));
        return part;
    }

    /// The bytes stay the caller's and must outlive the part. The pointer may be null when length is 0.
    static StructuredPart ofBytes(uint32_t tag, const void* bytes, uint32_t length) {
        return StructuredPart(tag, bytes, length);
    }

    /// The same for the bytes of an array, which must not change either.
    static StructuredPart ofArray(uint32_t tag, const CPPByteArray& array) {
        return StructuredPart(tag, array.data(), array.getSize());
    }

    uint32_t getTag() const { return tag_; }
    uint32_t getLength() const { return length_; }

    /// May be null for a part without bytes; valid as long as the part.
    const void* data() const { return isNumber_ ? number_ : bytes_; }

    /// Copies the bytes to where there is room for them; gives the place behind them.
    uint8_t* copyTo(uint8_t* place) const {
        // The length of a number is known when this is compiled, which saves a call.
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
