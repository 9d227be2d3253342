// Reads numbers and texts from a range of bytes, and never reads beyond its end.
#pragma once

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

namespace dovrel::macho {

/// Thrown if a file has an invalid format or needs a feature that this loader does not have.
class FormatError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class ByteReader {
  public:
    /// The caller owns the bytes, which must outlive the reader.
    ByteReader(const uint8_t* bytes, size_t size) : bytes_(bytes), size_(size) {}

    bool isAtEnd() const { return position_ == size_; }
    size_t size() const { return size_; }
    size_t position() const { return position_; }
    void moveTo(size_t position);

    /// Returns a reader of a part of the bytes. Its positions start at 0.
    ByteReader part(uint64_t offset, uint64_t size) const;

    /// Returns a copy of all bytes.
    std::vector<uint8_t> all() const { return {bytes_, bytes_ + size_}; }

    /// Reads the next number, which is little-endian.
    template <typename Number>
    Number next() {
        Number number;
        std::memcpy(&number, take(sizeof number), sizeof number);
        return number;
    }

    /// Returns the number at a position. The reader's own position does not change.
    template <typename Number>
    Number at(uint64_t offset) const {
        return part(offset, sizeof(Number)).next<Number>();
    }

    uint32_t nextBigEndian();
    /// Reads an address or a size of 4 or 8 bytes.
    uint64_t nextWord(size_t wordSize);
    uint64_t nextUnsignedLeb();
    int64_t nextSignedLeb();
    /// Reads a NUL-terminated text.
    std::string nextString();
    /// Reads a text from a field of fixed size, which is filled with NUL characters.
    std::string nextField(size_t size);

    // All functions throw FormatError if there are not enough bytes.

  private:
    const uint8_t* take(size_t size);

    const uint8_t* bytes_;
    size_t size_;
    size_t position_ = 0;
};

}  // namespace dovrel::macho
