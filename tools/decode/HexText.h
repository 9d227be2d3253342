// Reads bytes that are written as hexadecimal text.
#pragma once

#include <string>
#include <string_view>

namespace dovrel::tools {

/// The bytes of a text, or the reason why it is not hexadecimal text.
struct HexText {
    std::string bytes;
    std::string problem;  ///< "" if there is none; otherwise it names the line
};

/// Reads pairs of hexadecimal digits. These forms are accepted:
///
/// - digits, with or without blanks, commas and line ends between the bytes, and with or without "0x",
/// - a dump in which every line begins with its offset in hexadecimal digits, followed by ":" or two blanks, as
///   `xxd` and `hexdump -C` write it and the examples of docs/protocol.md show it. In a dump, the rest of a line
///   after "|" is ignored, and after ":" also the rest after the next two blanks.
///
/// A dump that omits repeated lines ("*") is a problem.
HexText parseHexText(std::string_view text);

/// Returns whether the text consists only of printable ASCII characters, tabs and line ends, and is not blank.
bool isPlainText(std::string_view text);

}  // namespace dovrel::tools
