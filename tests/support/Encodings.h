// Texts between encodings, as the C library converts them.
#pragma once

#include <optional>
#include <string>

namespace dovrel::test {

/// `text` in UTF-8; nothing if its bytes are not valid in `encoding` (a name that iconv knows). "MACINTOSH"
/// is Mac Roman before the euro sign came, without the logo and with a Greek letter for the increment.
std::optional<std::string> toUTF8(std::string text, const char* encoding);

}  // namespace dovrel::test
