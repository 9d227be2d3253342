// Builds a sequence of bytes with the number formats of DWARF.
#pragma once

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace dovrel::macho {

class DwarfBytes {
  public:
    size_t size() const { return bytes_.size(); }

    template <typename Number>
    void put(Number number) {
        bytes_.resize(bytes_.size() + sizeof number);
        set(bytes_.size() - sizeof number, number);
    }

    /// Overwrites the bytes at `position`.
    template <typename Number>
    void set(size_t position, Number number) {
        std::memcpy(&bytes_[position], &number, sizeof number);
    }

    void putUnsignedLeb(uint64_t number) {
        for (; number >= 0x80; number >>= 7)
            bytes_.push_back(static_cast<uint8_t>(number | 0x80));
        bytes_.push_back(static_cast<uint8_t>(number));
    }

    void putText(const char* text) { append(text, std::strlen(text) + 1); }
    void append(const void* bytes, size_t size) {
        const auto* const begin = static_cast<const uint8_t*>(bytes);
        bytes_.insert(bytes_.end(), begin, begin + size);
    }

    /// Appends zero bytes up to a multiple of `size`.
    void alignTo(size_t size) {
        while (bytes_.size() % size != 0)
            bytes_.push_back(0);
    }

    std::vector<uint8_t> take() { return std::move(bytes_); }

  private:
    std::vector<uint8_t> bytes_;
};

}  // namespace dovrel::macho
