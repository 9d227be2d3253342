// Conversions of byte strings: hexadecimal text, numbers in any base, ASCII case, a checksum.
//
// One byte is one character, and no locale takes part. Bytes outside ASCII are kept as they are.
#pragma once

#include <cstdint>
#include <string>

#include "serialization/CPPByteArray.h"

namespace dovrel {

/// Whether the last textToNumber (or parseNumberLiteral) of the process met a character that is no digit of
/// the base. Not guarded: convert on one thread at a time where the answer matters.
extern bool lastConversionFailed;

/// Two upper-case hexadecimal digits for each byte. `bytes` may be null when `count` is 0.
std::string bytesToHexText(const void* bytes, uint32_t count);
std::string bytesToHexText(const CPPByteArray& bytes);

/// The bytes themselves as a string.
std::string bytesToText(const CPPByteArray& bytes);

/// A copy in which every byte `from` is `to`.
std::string replaceChar(const std::string& text, char from, char to);

/// A copy in which each line end (CR LF, CR or LF) is one line feed.
std::string withLineFeedsOnly(const std::string& text);

/// A copy in which only the letters A to Z have changed their case.
std::string toLowerAscii(const std::string& text);

/// A copy in which only the letters a to z have changed their case.
std::string toUpperAscii(const std::string& text);

/// The value in a base from 2 to 36, in upper-case digits, with zeros in front if it has fewer than
/// `minimumDigits`. There is always at least one digit.
std::string numberToText(uint64_t value, uint32_t base, uint32_t minimumDigits);

/// The value of digits of either case in a base from 2 to 36, after one sign at most; 0 if there are none.
/// Values wrap at 64 bits. At a character that is no digit of the base lastConversionFailed is set, and the
/// answer is what was read so far times the base, without the sign.
int64_t textToNumber(const std::string& text, uint32_t base);

/// The value of a literal as programs write it: 0x and hexadecimal, 0b and binary, 0 and octal, else decimal;
/// cut to 32 bits. Failures as with textToNumber.
uint32_t parseNumberLiteral(const std::string& text);

/// A short checksum of a zero-terminated text; 0 for an empty one.
uint16_t textChecksum16(const char* text);

}  // namespace dovrel
