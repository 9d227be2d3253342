// Texts that hosts and servers give as bytes, made readable.
#pragma once

#include <string>

namespace dovrel {

/// `bytes` in UTF-8, whichever of two encodings they are in, even if both occur in one text. Every
/// well-formed UTF-8 sequence stays as it is. All other bytes are decoded, character by character, with the
/// Mac encoding that is most compatible with the system encoding (Mac Roman on a Western system). A byte that
/// this encoding cannot read becomes U+FFFD. Line ends stay. The result is always well-formed and is empty
/// only if `bytes` are. Any thread. Throws std::bad_alloc.
std::string readableText(const std::string& bytes);

}  // namespace dovrel
