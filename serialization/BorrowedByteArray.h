// BorrowedByteArray: makes bytes of another owner readable as a byte array, without a copy.
#pragma once

#include "serialization/CPPByteArray.h"

namespace dovrel {

class BorrowedByteArray {
  public:
    BorrowedByteArray() = default;
    BorrowedByteArray(const BorrowedByteArray&) = delete;
    BorrowedByteArray& operator=(const BorrowedByteArray&) = delete;

    /// Refers to the bytes from now on. They must outlive this object, or the next call of borrow. The pointer
    /// may be null if `length` is 0.
    void borrow(const uint8_t* bytes, uint32_t length) { array_.refer(bytes, length); }

    /// Returns the array. It is constant because a change of the size would free the bytes.
    const CPPByteArray& array() const { return array_; }

  private:
    class Array final : public CPPByteArray {
      public:
        Array() = default;
        Array(const Array&) = delete;
        Array& operator=(const Array&) = delete;
        ~Array() override { refer(nullptr, 0); }

        void refer(const uint8_t* bytes, uint32_t length) {
            data_ = const_cast<uint8_t*>(bytes);
            size_ = length;
        }
    };

    Array array_;
};

}  // namespace dovrel
