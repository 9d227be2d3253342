#include "macho/format/ByteReader.h"

namespace dovrel::macho {

namespace {

constexpr unsigned kLebBits = 7;
constexpr uint8_t kLebMore = 0x80;
constexpr uint8_t kLebSign = 0x40;

}  // namespace

void ByteReader::moveTo(size_t position) {
    if (position > size_) throw FormatError("a position lies behind the end of its bytes");
    position_ = position;
}

ByteReader ByteReader::part(uint64_t offset, uint64_t size) const {
    if (offset > size_ || size > size_ - offset)
        throw FormatError("a range reaches beyond the end of its bytes");
    return {bytes_ + offset, static_cast<size_t>(size)};
}

const uint8_t* ByteReader::take(size_t size) {
    if (size > size_ - position_) throw FormatError("the bytes end in the middle of a value");
    const uint8_t* const taken = bytes_ + position_;
    position_ += size;
    return taken;
}

uint32_t ByteReader::nextBigEndian() {
    const uint8_t* const bytes = take(sizeof(uint32_t));
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

uint64_t ByteReader::nextWord(size_t wordSize) {
    return wordSize == sizeof(uint64_t) ? next<uint64_t>() : next<uint32_t>();
}

uint64_t ByteReader::nextUnsignedLeb() {
    uint64_t value = 0;
    for (unsigned shift = 0;; shift += kLebBits) {
        if (shift >= 64) throw FormatError("a number is too long");
        const uint8_t byte = next<uint8_t>();
        value |= uint64_t{static_cast<uint8_t>(byte & ~kLebMore)} << shift;
        if ((byte & kLebMore) == 0) return value;
    }
}

int64_t ByteReader::nextSignedLeb() {
    uint64_t value = 0;
    for (unsigned shift = 0;;) {
        if (shift >= 64) throw FormatError("a number is too long");
        const uint8_t byte = next<uint8_t>();
        value |= uint64_t{static_cast<uint8_t>(byte & ~kLebMore)} << shift;
        shift += kLebBits;
        if ((byte & kLebMore) != 0) continue;
        if (shift < 64 && (byte & kLebSign) != 0) value |= ~uint64_t{0} << shift;
        return static_cast<int64_t>(value);
    }
}

std::string ByteReader::nextString() {
    const auto* const text = reinterpret_cast<const char*>(bytes_ + position_);
    const size_t length = strnlen(text, size_ - position_);
    take(length + 1);
    return {text, length};
}

std::string ByteReader::nextField(size_t size) {
    const auto* const text = reinterpret_cast<const char*>(take(size));
    return {text, strnlen(text, size)};
}

}  // namespace dovrel::macho
