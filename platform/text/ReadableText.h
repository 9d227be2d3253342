// Converts bytes from hosts and servers into readable text.
#pragma once

#include <string>

namespace dovrel {

/// Converts `bytes` to UTF-8. They may be in UTF-8, in a Mac encoding, or a mixture of both. Every
/// well-formed UTF-8 sequence is kept. All other bytes are decoded, character by character, with the Mac
/// encoding that is most compatible with the system encoding (Mac Roman on a Western system). A byte that
/// this encoding cannot decode becomes U+FFFD. Line ends are kept. The result is always well-formed UTF-8. It
/// is empty only if `bytes` is empty. Any thread. Throws std::bad_alloc.
std::string readableText(const std::string& bytes);

}  // namespace dovrel
