// Property lists from files. Private to the layer.
#pragma once

#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFPropertyList.h>

#include <string>
#include <string_view>

namespace portability {

/// The property list (XML, binary or old style) in `content`; the caller releases it. Null when it is larger
/// than 16 MiB or holds none. `format`, if given, gets the form of a list that is there.
CFPropertyListRef copyPropertyListIn(std::string_view content, CFPropertyListFormat* format = nullptr);

/// The same of the file `path`; null, too, when it cannot be read.
CFPropertyListRef copyPropertyList(const std::string& path);

/// The same if it is a dictionary, else null.
CFDictionaryRef copyDictionary(const std::string& path);

/// The keys and values of a file of localized strings; the caller releases them. Null as above.
CFDictionaryRef copyStrings(const std::string& path);

/// The value under `key` if it is a string, else null. `dictionary` may be null.
CFStringRef stringValue(CFDictionaryRef dictionary, CFStringRef key);

}  // namespace portability
