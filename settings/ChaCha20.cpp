#include "settings/ChaCha20.h"

#include <algorithm>

#include "serialization/ByteOrder.h"

namespace dovrel::chaCha20 {

namespace {

using State = std::array<uint32_t, 16>;

// The first four words of the state: the text "expand 32-byte k", as RFC 8439 defines it.
constexpr std::array<uint32_t, 4> kConstantWords{0x61707865, 0x3320646e, 0x79622d32, 0x6b206574};
constexpr int kDoubleRounds = 10;

uint32_t rotatedLeft(uint32_t word, int bits) {
    return word << bits | word >> (32 - bits);
}

void quarterRound(State& s, size_t a, size_t b, size_t c, size_t d) {
    s[a] += s[b], s[d] = rotatedLeft(s[d] ^ s[a], 16);
    s[c] += s[d], s[b] = rotatedLeft(s[b] ^ s[c], 12);
    s[a] += s[b], s[d] = rotatedLeft(s[d] ^ s[a], 8);
    s[c] += s[d], s[b] = rotatedLeft(s[b] ^ s[c], 7);
}

State initialState(const Key& key, uint32_t counter, const Nonce& nonce) {
    State state{};
    std::copy(kConstantWords.begin(), kConstantWords.end(), state.begin());
    for (size_t i = 0; i < 8; ++i)
        state[4 + i] = loadLittleEndian32(&key[4 * i]);
    state[12] = counter;
    for (size_t i = 0; i < 3; ++i)
        state[13 + i] = loadLittleEndian32(&nonce[4 * i]);
    return state;
}

}  // namespace

Block keyStreamBlock(const Key& key, uint32_t counter, const Nonce& nonce) {
    const State initial = initialState(key, counter, nonce);
    State state = initial;
    for (int i = 0; i < kDoubleRounds; ++i) {
        for (size_t column = 0; column < 4; ++column) {
            quarterRound(state, column, 4 + column, 8 + column, 12 + column);
        }
        for (size_t diagonal = 0; diagonal < 4; ++diagonal) {
            quarterRound(state, diagonal, 4 + (diagonal + 1) % 4, 8 + (diagonal + 2) % 4,
                         12 + (diagonal + 3) % 4);
        }
    }
    Block block{};
    for (size_t i = 0; i < state.size(); ++i)
        storeLittleEndian32(&block[4 * i], state[i] + initial[i]);
    return block;
}

std::string apply(const Key& key, uint32_t counter, const Nonce& nonce, std::string_view text) {
    std::string result(text);
    for (size_t begin = 0; begin < result.size(); begin += Block().size()) {
        const Block block = keyStreamBlock(key, counter++, nonce);
        const size_t length = std::min(block.size(), result.size() - begin);
        for (size_t i = 0; i < length; ++i) {
            result[begin + i] = static_cast<char>(static_cast<uint8_t>(result[begin + i]) ^ block[i]);
        }
    }
    return result;
}

}  // namespace dovrel::chaCha20
