// Bytes as text of the base64 alphabet (RFC 4648, with padding).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dovrel {

/// The text for the bytes, in one line.
std::string base64Text(std::string_view bytes);

/// The bytes for the text; blanks, tabs and line ends inside it are passed over. Nothing when the rest is no
/// complete base64 text: a strange character, a missing or misplaced padding, bits set behind the last byte.
std::optional<std::string> bytesOfBase64(std::string_view text);

}  // namespace dovrel
