// The structured block: the only serialized form of records and lists.
//
//   offset 0   4 bytes  "AsAk"
//          4   2 bytes  00 01; or 00 00 if there is no type number: then the parts begin at offset 6
//          6   4 bytes  type number, big-endian; chosen by the writer
//         10   parts, back to back up to the end of the block
//
//   a part:    4 bytes  tag, big-endian
//              4 bytes  length of the data, big-endian
//                       data
//
// The numbers of the format are big-endian; a 32-bit integer that is the data of a part is little-endian.
// There is no count, terminator or checksum. Tags come in any order. If a tag occurs twice, readers see
// the first part with that tag.
//
// A string is stored as its characters without a terminating NUL.
#pragma once

#include <algorithm>
#include <cstdint>

#include "serialization/ByteOrder.h"

namespace dovrel::structuredData {

constexpr uint32_t kMagic = 0x4173416B;  // "AsAk"
constexpr uint8_t kFormatByte1 = 0x00;
constexpr uint8_t kFormatByte2WithoutType = 0x00;
constexpr uint8_t kFormatByte2WithType = 0x01;

constexpr uint32_t kFormatOffset = 4;
constexpr uint32_t kTypeOffset = 6;
constexpr uint32_t kPartsOffsetWithoutType = 6;
constexpr uint32_t kHeaderSize = 10;
constexpr uint32_t kPartHeaderSize = 8;

/// The type number that a reader returns for a block without one.
constexpr uint32_t kNoTypeNumber = 0xFFFFFFFF;

/// The largest length that a part's header can hold. No block has room for so many bytes, so every writer
/// rejects a part of this length.
constexpr uint32_t kLongestPart = 0xFFFFFFFF;

/// Returns the length of a part's data as the format stores it. For longer data it returns kLongestPart
/// instead of a truncated length, so that writers reject them.
constexpr uint32_t toPartLength(uint64_t length) {
    return static_cast<uint32_t>(std::min<uint64_t>(length, kLongestPart));
}

/// Stores the kHeaderSize bytes before the first part.
inline void storeBlockHeader(uint8_t* bytes, uint32_t typeNumber) {
    storeBigEndian32(bytes, kMagic);
    bytes[kFormatOffset] = kFormatByte1;
    bytes[kFormatOffset + 1] = kFormatByte2WithType;
    storeBigEndian32(bytes + kTypeOffset, typeNumber);
}

/// Stores the kPartHeaderSize bytes before the data of a part. One number of 64 bits takes a single store.
inline void storePartHeader(uint8_t* bytes, uint32_t tag, uint32_t length) {
    storeBigEndian64(bytes, uint64_t{tag} << 32 | length);
}

/// The message of a StructuredWriteFailedException.
constexpr char kTooSmall[] = "Byte array too small (or did not expand as expected)";

/// Detail texts. Each names the place of a throw: 8 hexadecimal digits of a time and 4 of a site number. A
/// new place needs a new text.
namespace site {
constexpr char kWriterInitialize[] = "3842674A03C0: ";
constexpr char kWriterPartHeader[] = "38428BF9015E: ";
constexpr char kWriteArrayPart[] = "384269E80230: ";
constexpr char kWriteBytesPart[] = "384269E80233: ";
constexpr char kWriteStreamPart[] = "384269E80262: ";
constexpr char kReaderInitialize[] = "384181AA015E: ";
constexpr char kReaderBounds[] = "3841954A010E: ";
constexpr char kReaderFormat[] = "384190CE01EA: ";
constexpr char kGetTypeNumber[] = "384181A400BE: ";
constexpr char kGetPart[] = "384181A400FA: ";
constexpr char kReadPart[] = "384181A400FC: ";
constexpr char kGetPartLength[] = "384181A4012C: ";
constexpr char kCommandData[] = "6B00A7F90036: ";
}  // namespace site

}  // namespace dovrel::structuredData
