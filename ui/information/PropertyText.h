// Reads values of property lists as texts.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>

namespace dovrel {

/// Returns `value` as text in UTF-8. A string is returned unchanged; any other value of a property list is
/// formatted as Foundation's "%@" does. Returns nothing if `value` is null, or if UTF-8 cannot express the
/// text (half a surrogate pair). Any thread.
std::optional<std::string> textFromValue(CFTypeRef value);

/// Reads the property list at `path` (a path of the platform, in UTF-8) and returns the value of `key`
/// (UTF-8) as text. Reads the file again at each call. Returns nothing if there is no such file, if the file
/// is damaged or does not contain a dictionary, or if the dictionary does not contain the key. Any thread.
std::optional<std::string> textInPropertyList(const std::string& path, const std::string& key);

}  // namespace dovrel
