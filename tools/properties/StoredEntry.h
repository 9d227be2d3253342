// Makes the text of entries, and refuses keys and values that readers would not return unchanged.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "settings/PropertyValue.h"

namespace dovrel::tools {

/// Returns the key line and the value line of the entry. Throws a ToolFailure with the reason if the library would
/// not read back the same key and value: a line feed or NUL byte in them, blanks at the end of a string or at an
/// end of the key, or an empty key.
std::string makeEntryText(const std::string& key, const PropertyValue& value);

/// Returns the number of a decimal text: digits, which may follow a "-". Returns nothing for other texts, and if the
/// number does not fit into 32 bits.
std::optional<int32_t> findInteger(std::string_view text);

/// Parses the value of an entry from a command line or from JSON. All throw a ToolFailure that names the key if the
/// text is not a 32-bit number, or not pairs of hexadecimal digits.
int32_t parseInteger(const std::string& key, const std::string& text);
std::string parseBytes(const std::string& key, const std::string& digits);

}  // namespace dovrel::tools
