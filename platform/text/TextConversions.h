// Converts byte strings: hexadecimal text, numbers in any base, ASCII case, and a checksum.
//
// One byte is one character, and no locale is used. Bytes outside ASCII are kept unchanged.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "serialization/CPPByteArray.h"

namespace dovrel {

/// True if the last call of textToNumber or parseNumberLiteral in this process found a character that is not
/// a digit of the base. Not thread-safe: if you read it, convert on one thread at a time.
extern bool lastConversionFailed;

/// Returns two upper-case hexadecimal digits for each byte. `bytes` may be null if `count` is 0.
std::string bytesToHexText(const void* bytes, uint32_t count);
std::string bytesToHexText(const CPPByteArray& bytes);

/// Returns the bytes unchanged as a string.
std::string bytesToText(const CPPByteArray& bytes);

/// Returns a copy in which every byte `from` is replaced by `to`.
std::string replaceChar(const std::string& text, char from, char to);

/// Returns a copy of `text` with every `from` replaced by `to`. It searches from left to right
/// and does not search the inserted text again. `from` must not be empty. The time is
/// proportional to the size of the text.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

/// Returns a copy in which each line end (CR LF, CR or LF) is one line feed.
std::string withLineFeedsOnly(const std::string& text);

/// Returns a copy with A to Z changed to lower case. All other bytes are kept.
std::string toLowerAscii(const std::string& text);

/// Returns a copy with a to z changed to upper case. All other bytes are kept.
std::string toUpperAscii(const std::string& text);

/// Returns the value in a base from 2 to 36, with upper-case digits and at least one digit. Zeros are put in
/// front if it has fewer than `minimumDigits` digits.
std::string numberToText(uint64_t value, uint32_t base, uint32_t minimumDigits);

/// Parses digits of either case in a base from 2 to 36, after at most one sign. Returns 0 if there are no
/// digits. Values wrap at 64 bits. At a character that is not a digit of the base, parsing stops and sets
/// lastConversionFailed. The result is then the value read so far multiplied by the base, without the sign.
int64_t textToNumber(const std::string& text, uint32_t base);

/// Parses a number literal: 0x and hexadecimal digits, 0b and binary digits, 0 and octal digits, otherwise
/// decimal digits. The result is truncated to 32 bits. Failures are as for textToNumber.
uint32_t parseNumberLiteral(const std::string& text);

/// Returns a 16-bit checksum of a NUL-terminated text. It is 0 for an empty text.
uint16_t textChecksum16(const char* text);

}  // namespace dovrel
