// Converts texts between UTF-16 units and byte encodings. Private to the layer.
//
// This is our own code because the C library's converter for Mac Roman is a module that small systems do not
// install. It also differs from the platform in two characters.
#pragma once

#include <CoreFoundation/CFString.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace portability {

/// Returns whether texts can be converted from and to `encoding`. Supported are Mac Roman, UTF-8, ISO Latin 1
/// and ASCII.
bool isSupportedEncoding(CFStringEncoding encoding);

/// Converts `bytes` to UTF-16 units. Returns nothing if they are not valid in `encoding` or if it is not
/// supported. No character is replaced or dropped.
std::optional<std::vector<UniChar>> decodeText(std::string_view bytes, CFStringEncoding encoding);

/// Converts `count` UTF-16 units to bytes. Returns nothing if `encoding` cannot express them or is
/// not supported.
std::optional<std::string> encodeText(const UniChar* units, std::size_t count, CFStringEncoding encoding);

/// Appends one character in UTF-8. Returns false, and appends nothing, if `codePoint` is not a character.
bool appendCharacter(std::uint32_t codePoint, std::string& utf8);

}  // namespace portability
