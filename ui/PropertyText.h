// Texts out of property lists.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>

namespace dovrel {

/// `value`, which may be null, in UTF-8; nothing when it is no string, or none that UTF-8 can express (half a
/// surrogate pair).
std::optional<std::string> textOfValue(CFTypeRef value);

/// The text under `key` (UTF-8) of the dictionary in the file at `path` (of the platform, UTF-8), read anew
/// at each call. Nothing when there is no such file, it is damaged or holds no dictionary, or the dictionary
/// has no text under the key. Any thread.
std::optional<std::string> textInPropertyList(const std::string& path, const std::string& key);

}  // namespace dovrel
