#include "platform/text/CFStrings.h"

#include <vector>

namespace dovrel {

CFObject<CFStringRef> newCFString(const char* text, CFStringEncoding encoding) {
    return CFObject<CFStringRef>(CFStringCreateWithCString(kCFAllocatorDefault, text, encoding));
}

std::optional<std::string> utf8Text(CFStringRef string) {
    const CFIndex length =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
    std::vector<char> bytes(static_cast<size_t>(length) + 1);
    if (!CFStringGetCString(string, bytes.data(), length + 1, kCFStringEncodingUTF8)) return std::nullopt;
    return bytes.data();
}

bool isEqual(CFStringRef string, const char* text, CFStringCompareFlags options) {
    const CFObject<CFStringRef> other = newCFString(text);
    return other && CFStringCompare(string, other.get(), options) == kCFCompareEqualTo;
}

}  // namespace dovrel
