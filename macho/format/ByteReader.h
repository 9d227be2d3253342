// Reads numbers and texts from a stretch of bytes and never beyond its end.
#pragma once

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

namespace dovrel::macho {

/// What is said about a file that is not as the format wants it, or needs something this loader does not
/// have.
class FormatError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class ByteReader {
  public:
    /// The bytes stay the caller's and have to be there while the reader is used.
    ByteReader(const uint8_t* bytes, size_t size) : bytes_(bytes), size_(size) {}

    bool isAtEnd() const { return position_ == size_; }
    size_t size() const { return size_; }
    size_t position() const { return position_; }
    void moveTo(size_t position);

    /// A part of the bytes, with positions of its own.
    ByteReader part(uint64_t offset, uint64_t size) const;

    /// A copy of all the bytes.
    std::vector<uint8_t> all() const { return {bytes_, bytes_ + size_}; }

    /// The next number, the least significant byte first.
    template <typename Number>
    Number next() {
        Number number;
        std::memcpy(&number, take(sizeof number), sizeof number);
        return number;
    }

    /// The number at a position, without moving there.
    template <typename Number>
    Number at(uint64_t offset) const {
        return part(offset, sizeof(Number)).next<Number>();
    }

    uint32_t nextBigEndian();
    /// An address or a size, 4 or 8 bytes long.
    uint64_t nextWord(size_t wordSize);
    uint64_t nextUnsignedLeb();
    int64_t nextSignedLeb();
    /// A text up to its zero byte.
    std::string nextString();
    /// A text in a field that it need not fill.
    std::string nextField(size_t size);

    // All of these throw FormatError where the bytes do not suffice.

  private:
    const uint8_t* take(size_t size);

    const uint8_t* bytes_;
    size_t size_;
    size_t position_ = 0;
};

}  // namespace dovrel::macho
