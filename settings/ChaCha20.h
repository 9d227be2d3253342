// The stream cipher ChaCha20 in the form of RFC 8439: 32-byte key, 12-byte nonce, 32-bit block counter.
//
// It hides a text from whoever lacks the key; it does not notice a text that was changed. One nonce must
// never serve two texts under one key: the two could then be told from their difference.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace dovrel::chaCha20 {

using Key = std::array<uint8_t, 32>;
using Nonce = std::array<uint8_t, 12>;
using Block = std::array<uint8_t, 64>;

/// One block of the key stream.
Block keyStreamBlock(const Key& key, uint32_t counter, const Nonce& nonce);

/// The text combined with the key stream from block `counter` on; doing it again gives the text back. For
/// texts below 256 GiB, where the counter starts anew.
std::string apply(const Key& key, uint32_t counter, const Nonce& nonce, std::string_view text);

}  // namespace dovrel::chaCha20
