// Makes Core Foundation strings from texts given as bytes, and reads and compares them.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>

#include "platform/CFObject.h"

namespace dovrel {

/// Returns a new string with the NUL-terminated text. Returns an empty object if the bytes are not
/// valid in `encoding`, or on allocation failure. Any thread.
CFObject<CFStringRef> newCFString(const char* text, CFStringEncoding encoding = kCFStringEncodingUTF8);

/// Returns the text of `string` (not null) in UTF-8. Returns nothing if UTF-8 cannot express it (half a
/// surrogate pair). Any thread. Throws std::bad_alloc.
std::optional<std::string> utf8Text(CFStringRef string);

/// Returns whether `string` (not null) equals the UTF-8 text. `options` are those of `CFStringCompare`. Also
/// returns false on allocation failure. Any thread.
bool isEqual(CFStringRef string, const char* text, CFStringCompareFlags options);

}  // namespace dovrel
