// Converts texts between encodings with the C library.
#pragma once

#include <optional>
#include <string>

namespace dovrel::test {

/// Returns `text` in UTF-8, or nothing if its bytes are not valid in `encoding` (a name that
/// iconv knows). "MACINTOSH" is Mac Roman before the euro sign: it has no logo, and a Greek
/// letter instead of the increment.
std::optional<std::string> toUTF8(std::string text, const char* encoding);

}  // namespace dovrel::test
