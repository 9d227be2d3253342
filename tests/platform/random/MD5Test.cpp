#include "platform/random/MD5.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "platform/text/TextConversions.h"

namespace dovrel {
namespace {

std::string toHex(const MD5::Digest& digest) {
    return toLowerAscii(bytesToHexText(digest.data(), static_cast<uint32_t>(digest.size())));
}

std::string computeMd5(const std::string& message) {
    MD5 md5;
    md5.update(message.data(), message.size());
    return toHex(md5.digest());
}

TEST(MD5, TestSuiteOfRFC1321_ReturnsItsDigests) {
    EXPECT_EQ(computeMd5(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(computeMd5("a"), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(computeMd5("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(computeMd5("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(computeMd5("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
    EXPECT_EQ(computeMd5("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
              "d174ab98d277d9f5a5611c2c9f419d9f");
    EXPECT_EQ(computeMd5("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
              "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(MD5, Update_InPiecesOfAnySize_ReturnsTheDigestOfTheWhole) {
    const std::string message(200, 'm');
    const std::string whole = computeMd5(message);
    for (size_t piece = 1; piece <= message.size(); ++piece) {
        MD5 md5;
        for (size_t start = 0; start < message.size(); start += piece) {
            md5.update(message.data() + start, std::min(piece, message.size() - start));
        }
        EXPECT_EQ(toHex(md5.digest()), whole) << piece;
    }
}

TEST(MD5, Digest_LeavesTheMessageOpen) {
    MD5 md5;
    md5.update("message ", 8);
    EXPECT_EQ(md5.digest(), md5.digest());
    md5.update("digest", 6);
    EXPECT_EQ(toHex(md5.digest()), "f96b697d7cb7938d525a2f31aaf161d0");
}

TEST(MD5, Update_WithNothing_ChangesNothing) {
    MD5 md5;
    md5.update(nullptr, 0);
    EXPECT_EQ(toHex(md5.digest()), "d41d8cd98f00b204e9800998ecf8427e");
}

// A direct implementation of RFC 1321 with bits and words, for comparison at every
// length around the block boundaries.
std::string computePlainMd5(std::string message) {
    const uint64_t bits = uint64_t{message.size()} * 8;
    message += '\x80';
    while (message.size() % 64 != 56)
        message += '\0';
    for (int i = 0; i < 8; ++i)
        message += static_cast<char>(bits >> (8 * i) & 0xFF);

    constexpr uint32_t kRotations[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
    uint32_t chain[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    for (size_t block = 0; block < message.size(); block += 64) {
        uint32_t a = chain[0], b = chain[1], c = chain[2], d = chain[3];
        for (uint32_t i = 0; i < 64; ++i) {
            const uint32_t round = i / 16;
            const uint32_t f = round == 0   ? (b & c) | (~b & d)
                               : round == 1 ? (b & d) | (c & ~d)
                               : round == 2 ? b ^ c ^ d
                                            : c ^ (b | ~d);
            const uint32_t word = (round == 0   ? i
                                   : round == 1 ? 1 + 5 * i
                                   : round == 2 ? 5 + 3 * i
                                                : 7 * i) %
                                  16;
            uint32_t m = 0;
            for (uint32_t byte = 0; byte < 4; ++byte) {
                m |= static_cast<uint32_t>(static_cast<uint8_t>(message[block + 4 * word + byte]))
                     << (8 * byte);
            }
            const auto sine = static_cast<uint32_t>(std::floor(std::fabs(std::sin(i + 1.0)) * 4294967296.0));
            const uint32_t sum = a + f + m + sine;
            const uint32_t rotation = kRotations[round][i % 4];
            a = d, d = c, c = b;
            b += sum << rotation | sum >> (32 - rotation);
        }
        chain[0] += a, chain[1] += b, chain[2] += c, chain[3] += d;
    }
    std::string bytes;
    for (const uint32_t word : chain) {
        for (int i = 0; i < 4; ++i)
            bytes += static_cast<char>(word >> (8 * i) & 0xFF);
    }
    return toLowerAscii(bytesToHexText(bytes.data(), 16));
}

TEST(MD5, EveryLengthUpToThreeBlocks_ReturnsTheDigestOfThePlainAlgorithm) {
    std::string message;
    for (size_t length = 0; length <= 192; ++length) {
        EXPECT_EQ(computeMd5(message), computePlainMd5(message)) << length;
        message += static_cast<char>(length * 37 + 11);
    }
}

}  // namespace
}  // namespace dovrel
