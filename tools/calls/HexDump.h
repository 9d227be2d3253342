// Shows bytes to people.
#pragma once

#include <string>
#include <string_view>

namespace dovrel::tools {

/// Returns whether the bytes can be shown on a terminal as they are: UTF-8 without control characters other than
/// the tab and line ends. Also true for no bytes.
bool isPrintable(std::string_view bytes);

/// Returns lines of 16 bytes: the offset in 8 hexadecimal digits, the bytes in hexadecimal digits, and the same
/// bytes as ASCII characters, with "." for all others. Each line ends with a line feed.
std::string hexDump(std::string_view bytes);

}  // namespace dovrel::tools
