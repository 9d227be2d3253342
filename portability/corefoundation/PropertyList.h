// Reads property lists from files. Private to the layer.
#pragma once

#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFPropertyList.h>

#include <string>
#include <string_view>

namespace portability {

/// Reads the property list (XML, binary or old text format) in `content`. The caller releases the result.
/// Returns null if `content` is larger than 16 MiB or is not a property list. `format` may be null; it is set
/// only if the result is not null.
CFPropertyListRef copyPropertyListIn(std::string_view content, CFPropertyListFormat* format = nullptr);

/// The same for the file `path`. Also returns null if the file cannot be read.
CFPropertyListRef copyPropertyList(const std::string& path);

/// The same, but returns null if the value is not a dictionary.
CFDictionaryRef copyDictionary(const std::string& path);

/// Reads a file of localized strings. The caller releases the result. Returns null if the file cannot be
/// read, is too large or is damaged.
CFDictionaryRef copyStrings(const std::string& path);

/// Returns the value of `key` if it is a string, otherwise null. `dictionary` may be null.
CFStringRef stringValue(CFDictionaryRef dictionary, CFStringRef key);

}  // namespace portability
