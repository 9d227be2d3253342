// CPPByteArray: the container for raw bytes. Transfer buffers, identifiers, the parts of structured blocks
// that a reader copies, and the binary values that a Properties store returns are byte arrays. (Inside the
// store a binary value is kept in the block of its entry, see settings/PropertyEntry.h.)
//
// The array owns one heap block (malloc, realloc, free) of exactly as many bytes as it holds; there is no
// spare capacity, and no block when it is empty. Indices, offsets and lengths are unsigned 32-bit counts of
// bytes.
//
// No operation reports a failure. A read beyond the end returns 0 or copies nothing, a write beyond the end
// is clipped or dropped (CPPExpandingByteArray grows instead), and after an allocation failure the array
// keeps its content and its size. Callers that must know whether bytes arrived compare getSize afterwards.
//
// A pointer or array given as a source may be, or point into, the array that is written.
// Arrays are not synchronised: one thread at a time, unless all of them only read.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <iosfwd>

namespace dovrel {

class CPPByteArray {
  public:
    /// Empty.
    CPPByteArray() = default;

    CPPByteArray(const CPPByteArray& other);

    /// Takes the block over and leaves the other array empty.
    CPPByteArray(CPPByteArray&& other) noexcept;

    /// Copies the other array, but does nothing when the other array is empty: the old content then stays.
    /// Use assign for a plain copy. Algorithms that move elements by assignment therefore cannot be used on
    /// arrays.
    CPPByteArray& operator=(const CPPByteArray& other);

    /// The order of the virtual operations is fixed: the destructors, then the three writing operations.
    virtual ~CPPByteArray();

    /// Stores one byte; ignored when index is at or beyond the size.
    virtual void setByte(uint32_t index, uint8_t value);

    /// Stores the bytes that fit below the size; ignored when offset is at or beyond it.
    virtual void writeBytes(uint32_t offset, const void* source, uint32_t length);

    /// Stores length bytes of the source array from sourceOffset on, as far as they fit below both sizes.
    virtual void copyFrom(uint32_t offset, const CPPByteArray& source, uint32_t length,
                          uint32_t sourceOffset);

    /// Replaces the content by a copy of the other array, also when that one is empty.
    void assign(const CPPByteArray& other);

    /// Replaces the content by length bytes from source, which may be null when length is 0.
    void set(const void* source, uint32_t length);

    /// Replaces the content by length times the same byte.
    void setFilled(uint32_t length, uint8_t fillByte);

    /// Replaces the content by length bytes of the source array from offset on. The size becomes length in
    /// any case; the value of bytes that the source does not have is not promised.
    void setFromPart(const CPPByteArray& source, uint32_t offset, uint32_t length);

    uint32_t getSize() const { return size_; }

    /// The block itself, null when empty. Valid until the next operation that changes the size.
    const uint8_t* data() const { return data_; }

    /// 0 when index is at or beyond the size.
    uint8_t getByte(uint32_t index) const { return index < size_ ? data_[index] : uint8_t{0}; }

    /// Copies the bytes that there are from offset on, at most length; bytes of the destination beyond them
    /// stay.
    void readBytes(uint32_t offset, void* destination, uint32_t length) const;

    /// Makes the size newSize; bytes added at the end are fillByte, bytes beyond the new end are dropped.
    void resize(uint32_t newSize, uint8_t fillByte);

    /// -1, 0 or 1: lexicographic by unsigned bytes; of two arrays with a common beginning the shorter is the
    /// smaller.
    int compare(const CPPByteArray& other) const;
    int compare(const void* bytes, uint32_t length) const;

    /// The ordering where arrays are keys of sorted containers.
    static bool less(const CPPByteArray& a, const CPPByteArray& b) { return a.compare(b) < 0; }

    // Reading from a stream clears the stream's state first, so the error bits of earlier reads do not count.
    // Exceptions that the stream throws pass through; the array is then unchanged.

    /// Replaces the content by the whole stream, from its start to its end. A stream that cannot be
    /// positioned (a pipe, a file that is not open) leaves the array empty. A stream longer than 2^32 - 1
    /// bytes is treated like an allocation failure.
    void loadFromStream(std::istream& stream);

    /// Replaces the content by the next length bytes of the stream. The size becomes length also if the
    /// stream ends early; the value of the missing bytes is unspecified.
    void loadFromStream(std::istream& stream, uint32_t length);

  protected:
    /// Makes the block exactly newSize bytes. False, and nothing changed, where memory runs out. Bytes beyond
    /// the old end are not set.
    bool reallocate(uint32_t newSize) {
        // realloc to no bytes is free to keep a block.
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
    /// Empties the array; true.
    bool clear();

    /// Frees the old block and holds the given one.
    void adopt(uint8_t* block, uint32_t length);
};

}  // namespace dovrel
