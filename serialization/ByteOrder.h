// Reads and writes numbers as bytes in a fixed order, on every processor. The bytes need not be aligned.
#pragma once

#include <cstdint>

namespace dovrel {

/// Returns the number whose 4 bytes start with the least significant one.
inline uint32_t loadLittleEndian32(const uint8_t* bytes) {
    return bytes[0] | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 | uint32_t{bytes[3]} << 24;
}

/// Does the same for 2 bytes.
inline uint16_t loadLittleEndian16(const uint8_t* bytes) {
    return static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
}

/// Returns the number whose 4 bytes start with the most significant one.
inline uint32_t loadBigEndian32(const uint8_t* bytes) {
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

/// Does the same for 8 bytes.
inline uint64_t loadBigEndian64(const uint8_t* bytes) {
    return uint64_t{loadBigEndian32(bytes)} << 32 | loadBigEndian32(bytes + 4);
}

/// Stores the 4 bytes of the number, the least significant one first.
inline void storeLittleEndian32(uint8_t* bytes, uint32_t number) {
    bytes[0] = static_cast<uint8_t>(number);
    bytes[1] = static_cast<uint8_t>(number >> 8);
    bytes[2] = static_cast<uint8_t>(number >> 16);
    bytes[3] = static_cast<uint8_t>(number >> 24);
}

/// Does the same for 8 bytes.
inline void storeLittleEndian64(uint8_t* bytes, uint64_t number) {
    storeLittleEndian32(bytes, static_cast<uint32_t>(number));
    storeLittleEndian32(bytes + 4, static_cast<uint32_t>(number >> 32));
}

/// Stores the 4 bytes of the number, the most significant one first.
inline void storeBigEndian32(uint8_t* bytes, uint32_t number) {
    bytes[0] = static_cast<uint8_t>(number >> 24);
    bytes[1] = static_cast<uint8_t>(number >> 16);
    bytes[2] = static_cast<uint8_t>(number >> 8);
    bytes[3] = static_cast<uint8_t>(number);
}

/// Does the same for 8 bytes.
inline void storeBigEndian64(uint8_t* bytes, uint64_t number) {
    bytes[0] = static_cast<uint8_t>(number >> 56);
    bytes[1] = static_cast<uint8_t>(number >> 48);
    bytes[2] = static_cast<uint8_t>(number >> 40);
    bytes[3] = static_cast<uint8_t>(number >> 32);
    bytes[4] = static_cast<uint8_t>(number >> 24);
    bytes[5] = static_cast<uint8_t>(number >> 16);
    bytes[6] = static_cast<uint8_t>(number >> 8);
    bytes[7] = static_cast<uint8_t>(number);
}

}  // namespace dovrel
