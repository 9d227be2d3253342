// The stream cipher ChaCha20 as in RFC 8439: 32-byte key, 12-byte nonce, 32-bit block counter.
//
// It hides a text from readers without the key, but does not detect changes to the text. Never use one nonce
// for two texts with the same key: both texts could be recovered from their difference.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace dovrel::chaCha20 {

using Key = std::array<uint8_t, 32>;
using Nonce = std::array<uint8_t, 12>;
using Block = std::array<uint8_t, 64>;

/// Returns one block of the key stream.
Block keyStreamBlock(const Key& key, uint32_t counter, const Nonce& nonce);

/// Returns the text XORed with the key stream from block `counter` on. Applying it twice returns the original
/// text. For texts below 256 GiB, because the counter then wraps.
std::string apply(const Key& key, uint32_t counter, const Nonce& nonce, std::string_view text);

}  // namespace dovrel::chaCha20
