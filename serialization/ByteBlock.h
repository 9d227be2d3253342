// Bytes that are not in a CPPByteArray: ByteView refers to bytes of another owner, ByteBlock owns its bytes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>

namespace dovrel {

/// Bytes that another object owns. That object must outlive the view and stay unchanged.
struct ByteView {
    const uint8_t* data = nullptr;  ///< may be null if `length` is 0
    uint32_t length = 0;            ///< in bytes
};

/// A block of bytes from new[].
struct ByteBlock {
    std::unique_ptr<uint8_t[]> data;  ///< null if `length` is 0
    uint32_t length = 0;              ///< in bytes
};

/// Returns whether a block of `size` bytes can be used again for `length` bytes, although its size stays the same:
/// they fit, and at most 512 bytes or an eighth of them remain unused.
constexpr bool isReusable(uint32_t size, uint32_t length) {
    return length <= size && size - length <= std::max(uint32_t{512}, length / 8);
}

}  // namespace dovrel
