// Converts bytes to base64 text and back (RFC 4648, with padding).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dovrel {

/// Returns the base64 text for the bytes, on one line.
std::string encodeBase64(std::string_view bytes);

/// Returns the bytes of a base64 text. Blanks, tabs and line ends in it are ignored. Returns nothing if the
/// rest is not complete base64 text: it contains another character, the padding is missing or misplaced, or
/// bits after the last byte are set.
std::optional<std::string> decodeBase64(std::string_view text);

}  // namespace dovrel
