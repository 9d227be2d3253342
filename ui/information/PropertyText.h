// Texts out of property lists.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>

namespace dovrel {

/// `value`, which may be null, in UTF-8: a string as it is, any other value of a property list as the format
/// "%@" shows it. Nothing for null, and for text that UTF-8 cannot express (half a surrogate pair). Any
/// thread.
std::optional<std::string> textOfValue(CFTypeRef value);

/// The text under `key` (UTF-8) of the dictionary in the file at `path` (of the platform, UTF-8), read anew
/// at each call. Nothing if there is no such file, it is damaged or is not a dictionary, or the dictionary
/// has no value under the key. Any thread.
std::optional<std::string> textInPropertyList(const std::string& path, const std::string& key);

}  // namespace dovrel
