// MD5: the message digest of RFC 1321. It is not safe against attackers; it is used here only to mix
// bits and to identify content.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace dovrel {

class MD5 {
  public:
    using Digest = std::array<uint8_t, 16>;

    /// Appends bytes to the message. `bytes` may be null if `length` is 0.
    void update(const void* bytes, size_t length);

    /// Returns the digest of the message so far. More bytes can be appended afterwards.
    Digest digest() const;

  private:
    static constexpr size_t kBlockSize = 64;

    using Chain = std::array<uint32_t, 4>;

    static void absorb(const uint8_t* block, Chain& chain);

    Chain chain_{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    uint64_t bitCount_ = 0;
    std::array<uint8_t, kBlockSize> buffer_{};  // the bytes after the last whole block
};

}  // namespace dovrel
