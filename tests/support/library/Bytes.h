// Converts byte arrays from and to readable text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "serialization/ByteBlock.h"
#include "serialization/CPPByteArray.h"
#include "serialization/CPPExpandingByteArray.h"

namespace dovrel::test {

/// Returns the characters without a terminating NUL.
CPPByteArray arrayOf(std::string_view text);
CPPExpandingByteArray expandingArrayOf(std::string_view text);

/// Returns an array of that size that cannot grow, filled with EE.
CPPByteArray plainArray(uint32_t size);

/// Returns the bytes of hexadecimal digit pairs, with or without blanks between them: "41 73 41 6B".
CPPByteArray arrayOfHex(std::string_view digits);

std::string textOf(const CPPByteArray& array);
std::string blockText(const ByteBlock& block);

/// Returns upper-case digits with a blank between the bytes; "" for an empty array.
std::string hexOf(const CPPByteArray& array);

}  // namespace dovrel::test
