#include "settings/EncipheredText.h"

#include <algorithm>
#include <random>

#include "settings/Base64.h"

namespace dovrel {

namespace {

constexpr uint32_t kFirstBlock = 1;

constexpr chaCha20::Key kKey{0x5e, 0x1c, 0x9a, 0x47, 0xd3, 0x08, 0xb6, 0x72, 0x2f, 0xe4, 0x61,
                             0x8d, 0x3a, 0xc5, 0x90, 0x17, 0x7b, 0xf2, 0x4e, 0xa9, 0x06, 0xdc,
                             0x53, 0x88, 0x35, 0xef, 0x1a, 0x64, 0xcb, 0x92, 0x70, 0x2d};

chaCha20::Nonce freshNonce() {
    std::random_device source;
    chaCha20::Nonce nonce{};
    for (uint8_t& byte : nonce)
        byte = static_cast<uint8_t>(source());
    return nonce;
}

}  // namespace

bool isEnciphered(std::string_view content) {
    return content.substr(0, kEncipheredMark.size()) == kEncipheredMark;
}

std::string encipher(std::string_view text) {
    return encipher(text, freshNonce());
}

std::string encipher(std::string_view text, const chaCha20::Nonce& nonce) {
    std::string bytes(nonce.begin(), nonce.end());
    bytes += chaCha20::apply(kKey, kFirstBlock, nonce, text);
    return std::string(kEncipheredMark) + encodeBase64(bytes);
}

std::optional<std::string> decipher(std::string_view content) {
    if (!isEnciphered(content)) return std::nullopt;
    const std::optional<std::string> bytes = decodeBase64(content.substr(kEncipheredMark.size()));
    chaCha20::Nonce nonce{};
    if (!bytes || bytes->size() < nonce.size()) return std::nullopt;

    std::copy_n(bytes->begin(), nonce.size(), reinterpret_cast<char*>(nonce.data()));
    return chaCha20::apply(kKey, kFirstBlock, nonce, std::string_view(*bytes).substr(nonce.size()));
}

}  // namespace dovrel
