#include "platform/random/MD5.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "serialization/ByteOrder.h"

namespace dovrel {

namespace {

constexpr size_t kSteps = 64;
constexpr size_t kLengthSize = 8;

// Step i adds the integer part of 2^32 * |sin(i + 1)|.
constexpr std::array<uint32_t, kSteps> kSines = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

// Each round repeats its four rotations.
constexpr uint32_t kRotations[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

// The block's word that each step uses: the first step of a round uses kFirstWord, and each further step
// moves on by kWordDistance (modulo 16).
constexpr size_t kFirstWord[4] = {0, 1, 5, 0};
constexpr size_t kWordDistance[4] = {1, 5, 3, 7};

using Words = std::array<uint32_t, 16>;

uint32_t rotateLeft(uint32_t value, uint32_t bits) {
    return value << bits | value >> (32 - bits);
}

// Adds the round's function of x, y and z to `sum`. Each step needs the x that the step before it computes,
// so `x` is used as late as possible.
template <size_t round>
uint32_t addMixed(uint32_t sum, uint32_t x, uint32_t y, uint32_t z) {
    if constexpr (round == 0) return sum + (z ^ (x & (y ^ z)));
    if constexpr (round == 1) return sum + (y & ~z) + (x & z);  // "+" works as "|": no bit is set in both
    if constexpr (round == 2) return sum + (x ^ (y ^ z));
    if constexpr (round == 3) return sum + (y ^ (x | ~z));
}

// The roles of the four chaining words rotate by one with each step. The index is known at compile time,
// so that no word is copied.
template <size_t i>
void step(std::array<uint32_t, 4>& chain, const Words& words) {
    constexpr size_t round = i / 16;
    constexpr size_t word = (kFirstWord[round] + i % 16 * kWordDistance[round]) % 16;
    uint32_t& a = chain[(kSteps - i) % 4];
    const uint32_t b = chain[(kSteps - i + 1) % 4];
    const uint32_t c = chain[(kSteps - i + 2) % 4];
    const uint32_t d = chain[(kSteps - i + 3) % 4];
    const uint32_t sum = addMixed<round>(a + words[word] + kSines[i], b, c, d);
    a = b + rotateLeft(sum, kRotations[round][i % 4]);
}

template <size_t... i>
void allSteps(std::array<uint32_t, 4>& chain, const Words& words, std::index_sequence<i...>) {
    (step<i>(chain, words), ...);
}

}  // namespace

void MD5::update(const void* bytes, size_t length) {
    const uint8_t* next = static_cast<const uint8_t*>(bytes);
    size_t used = static_cast<size_t>(bitCount_ / 8 % kBlockSize);
    bitCount_ += uint64_t{length} * 8;
    while (length > 0) {
        const size_t count = std::min(length, kBlockSize - used);
        std::memcpy(buffer_.data() + used, next, count);
        used = (used + count) % kBlockSize;
        if (used == 0) absorb(buffer_.data(), chain_);
        next += count;
        length -= count;
    }
}

MD5::Digest MD5::digest() const {
    // The padding: the rest of the message, a one bit, zeros, and the message length at the end of a block.
    const size_t used = static_cast<size_t>(bitCount_ / 8 % kBlockSize);
    const size_t blocks = used < kBlockSize - kLengthSize ? 1 : 2;
    std::array<uint8_t, 2 * kBlockSize> end{};
    std::copy_n(buffer_.begin(), used, end.begin());
    end[used] = 0x80;
    storeLittleEndian64(end.data() + blocks * kBlockSize - kLengthSize, bitCount_);

    Chain chain = chain_;
    for (size_t block = 0; block < blocks; ++block)
        absorb(end.data() + block * kBlockSize, chain);
    Digest digest{};
    for (size_t i = 0; i < chain.size(); ++i)
        storeLittleEndian32(digest.data() + 4 * i, chain[i]);
    return digest;
}

void MD5::absorb(const uint8_t* block, Chain& chain) {
    Words words;
    for (size_t i = 0; i < words.size(); ++i)
        words[i] = loadLittleEndian32(block + 4 * i);
    Chain next = chain;
    allSteps(next, words, std::make_index_sequence<kSteps>());
    for (size_t i = 0; i < chain.size(); ++i)
        chain[i] += next[i];
}

}  // namespace dovrel
