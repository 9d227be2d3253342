// Texts between the platform's UTF-16 units and the encodings of bytes. Private to the layer.
//
// Own code, because the C library's converter for Mac Roman is a module that a small system lacks, and
// differs from the platform in two characters.
#pragma once

#include <CoreFoundation/CFString.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace portability {

/// Whether bytes can be read and written in `encoding`: Mac Roman, UTF-8, ISO Latin 1 and ASCII.
bool isSupportedEncoding(CFStringEncoding encoding);

/// The UTF-16 units of `bytes`; nothing when they are not valid in `encoding` or it is not supported. Nothing
/// is replaced or dropped.
std::optional<std::vector<UniChar>> decodeText(std::string_view bytes, CFStringEncoding encoding);

/// The bytes of `count` UTF-16 units; nothing when `encoding` cannot express them or is not supported.
std::optional<std::string> encodeText(const UniChar* units, std::size_t count, CFStringEncoding encoding);

/// Appends one character in UTF-8. False, and nothing is appended, for a number that is no character's.
bool appendCharacter(std::uint32_t codePoint, std::string& utf8);

}  // namespace portability
