// CPPByteArray: the container for raw bytes. Transfer buffers, identifiers, parts that a reader copies from a
// structured block, and binary values that a Properties store returns are byte arrays. (Inside the store a
// binary value is kept in the block of its entry, see settings/PropertyEntry.h.)
//
// The array owns one heap block (malloc, realloc, free) with exactly as many bytes as the array has. It has
// no spare capacity (only keepPart leaves some bytes of the block unused), and an empty array has no block.
// Indices, offsets and lengths are unsigned 32-bit numbers of bytes.
//
// A read beyond the end returns 0 or copies nothing. A write beyond the end is clipped or ignored
// (CPPExpandingByteArray grows instead). After an allocation failure the array keeps its content and its
// size, and most operations do not report it. Callers that must detect it use setOrThrow, or call requireSize
// after the operation.
//
// A source pointer or a source array may be the array that is written to, or may point into it.
//
// Arrays are not synchronised: several threads may use one array only if all of them only read.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <iosfwd>

namespace dovrel {

class CPPByteArray {
  public:
    /// Creates an empty array.
    CPPByteArray() = default;

    CPPByteArray(const CPPByteArray& other);

    /// Takes ownership of the block and leaves the other array empty.
    CPPByteArray(CPPByteArray&& other) noexcept;

    /// Copies the other array, but does nothing if the other array is empty: then the old content stays.
    /// Use assign for a plain copy. Algorithms that move elements by assignment therefore do not work
    /// with arrays.
    CPPByteArray& operator=(const CPPByteArray& other);

    /// The order of the virtual functions is fixed: the destructors, then the three writing functions.
    virtual ~CPPByteArray();

    /// Stores one byte. Does nothing if `index` is not smaller than the size.
    virtual void setByte(uint32_t index, uint8_t value);

    /// Stores as many of the bytes as fit into the array. Does nothing if `offset` is not smaller
    /// than the size.
    virtual void writeBytes(uint32_t offset, const void* source, uint32_t length);

    /// Copies `length` bytes of the source array, starting at `sourceOffset`. Copies fewer if this array or
    /// the source array ends earlier.
    virtual void copyFrom(uint32_t offset, const CPPByteArray& source, uint32_t length,
                          uint32_t sourceOffset);

    /// Replaces the content by a copy of the other array, even if the other array is empty.
    void assign(const CPPByteArray& other);

    /// Replaces the content by `length` bytes from `source`, which may be null if `length` is 0.
    void set(const void* source, uint32_t length);

    /// Does the same, but throws std::bad_alloc if memory runs out, and then changes nothing.
    void setOrThrow(const void* source, uint32_t length);

    /// Replaces the content by `length` bytes without a value and returns the block, to be filled at once.
    /// Returns null and changes nothing if memory runs out.
    uint8_t* setUninitialized(uint32_t length) { return reallocate(length) ? data_ : nullptr; }

    /// Replaces the content by `length` bytes with the value `fillByte`.
    void setFilled(uint32_t length, uint8_t fillByte);

    /// Replaces the content by `length` bytes of the source array, starting at `offset`. The size becomes
    /// `length` in any case; bytes that the source does not have are unspecified.
    void setFromPart(const CPPByteArray& source, uint32_t offset, uint32_t length);

    // The next two functions change the array in its own block, for arrays that are too large to copy.

    /// Reduces the content to `length` bytes, starting at `offset`. Both must be inside the array. The block is not
    /// exchanged, so its end stays unused until the size changes again. (A heap that got the few bytes after
    /// a large part back could not use the whole block for the next array of that size.)
    void keepPart(uint32_t offset, uint32_t length) noexcept;

    /// Inserts bytes before the first byte. `source` must be outside the array. Returns false and changes
    /// nothing if memory runs out or the array would be longer than 2^32 - 1 bytes.
    bool insertAtStart(const void* source, uint32_t length);

    /// Exchanges the blocks and sizes of both arrays.
    void swap(CPPByteArray& other) noexcept;

    uint32_t getSize() const { return size_; }

    /// Throws std::bad_alloc unless the array has `size` bytes. For callers of an operation that leaves the
    /// array as it was if memory runs out.
    void requireSize(uint32_t size) const;

    /// Returns the block, or null if the array is empty. Valid until the next operation that
    /// changes the size.
    const uint8_t* data() const { return data_; }

    /// Returns the byte, or 0 if `index` is not smaller than the size.
    uint8_t getByte(uint32_t index) const { return index < size_ ? data_[index] : uint8_t{0}; }

    /// Copies at most `length` bytes, starting at `offset`. Copies fewer if the array ends earlier; the rest
    /// of the destination then stays unchanged.
    void readBytes(uint32_t offset, void* destination, uint32_t length) const;

    /// Changes the size to `newSize`. Bytes added at the end have the value `fillByte`; bytes after the new
    /// end are dropped.
    void resize(uint32_t newSize, uint8_t fillByte);

    /// Compares lexicographically by unsigned bytes and returns -1, 0 or 1. If one array is the beginning of
    /// the other, the shorter one is the smaller one.
    int compare(const CPPByteArray& other) const;
    int compare(const void* bytes, uint32_t length) const;

    /// The order of arrays as keys of sorted containers.
    static bool less(const CPPByteArray& a, const CPPByteArray& b) { return a.compare(b) < 0; }

    // The two functions below first clear the state of the stream, so the error bits of earlier reads do not
    // count. If the stream throws an exception, it passes through and the array is unchanged.

    /// Replaces the content by the whole stream, from its start to its end. If the stream cannot be
    /// positioned (a pipe, a file that is not open), the array becomes empty. A stream longer than 2^32 - 1
    /// bytes counts as an allocation failure.
    void loadFromStream(std::istream& stream);

    /// Replaces the content by the next `length` bytes of the stream. The size becomes `length` even if the
    /// stream ends early; the missing bytes are unspecified.
    void loadFromStream(std::istream& stream, uint32_t length);

  protected:
    /// Changes the block to exactly `newSize` bytes. Returns false and changes nothing if memory runs out.
    /// New bytes are not initialized.
    bool reallocate(uint32_t newSize) {
        // realloc with size 0 may return a block instead of freeing it.
        if (newSize == 0) return clear();
        void* const block = std::realloc(data_, newSize);
        if (block == nullptr) return false;
        data_ = static_cast<uint8_t*>(block);
        size_ = newSize;
        return true;
    }

    uint32_t size_ = 0;
    uint8_t* data_ = nullptr;

  private:
    /// Empties the array. Always returns true.
    bool clear();

    /// Frees the old block and takes ownership of the given one.
    void adopt(uint8_t* block, uint32_t length);
};

}  // namespace dovrel
