#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <mutex>

#include "portability/corefoundation/Object.h"
#include "portability/corefoundation/TextEncoding.h"

using portability::toObject;

namespace {

const std::vector<UniChar>& getUnits(CFStringRef string) {
    return static_cast<const __CFString&>(toObject(string)).units;
}

CFIndex maximumBytesPerUnit(CFStringEncoding encoding) {
    switch (encoding) {
        case kCFStringEncodingUTF8:
            return 3;  // a surrogate pair needs four bytes
        case kCFStringEncodingUTF16:
            return 2;
        default:
            return 1;
    }
}

// Converts only ASCII and Latin 1 letters, which is enough for identifiers. The C library's tables are not
// used because they depend on the host's locale.
UniChar lowerCase(UniChar unit) {
    constexpr UniChar kToLower = 0x20;
    constexpr UniChar kMultiplicationSign = 0xD7;
    const bool isAsciiUpper = unit >= 'A' && unit <= 'Z';
    const bool isLatinUpper = unit >= 0xC0 && unit <= 0xDE && unit != kMultiplicationSign;
    return isAsciiUpper || isLatinUpper ? static_cast<UniChar>(unit + kToLower) : unit;
}

CFComparisonResult compare(const std::vector<UniChar>& left, const std::vector<UniChar>& right) {
    if (left == right) return kCFCompareEqualTo;
    return left < right ? kCFCompareLessThan : kCFCompareGreaterThan;
}

std::vector<UniChar> inLowerCase(std::vector<UniChar> units) {
    std::transform(units.begin(), units.end(), units.begin(), lowerCase);
    return units;
}

}  // namespace

CFTypeID CFStringGetTypeID() {
    return portability::kStringKind;
}

CFStringRef __CFStringMakeConstantString(const char* cStr) {
    // Never destroyed, because code that runs while the process exits may still use its constant strings.
    static auto& mutex = *new std::mutex;
    static auto& constants = *new std::map<std::string, CFStringRef>;
    const std::lock_guard<std::mutex> lock(mutex);
    CFStringRef& constant = constants[cStr];
    if (constant == nullptr) constant = static_cast<CFStringRef>(portability::newString(cStr).release());
    return constant;
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* cStr, CFStringEncoding encoding) {
    auto units = portability::decodeText(cStr, encoding);
    return units ? new __CFString(std::move(*units)) : nullptr;
}

Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding) {
    if (bufferSize < 1) return false;
    const std::vector<UniChar>& units = getUnits(theString);
    const auto bytes = portability::encodeText(units.data(), units.size(), encoding);
    if (!bytes || bytes->size() >= static_cast<std::size_t>(bufferSize)) {
        buffer[0] = '\0';
        return false;
    }
    std::memcpy(buffer, bytes->c_str(), bytes->size() + 1);
    return true;
}

CFIndex CFStringGetLength(CFStringRef theString) {
    return static_cast<CFIndex>(getUnits(theString).size());
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
    const CFIndex perUnit = maximumBytesPerUnit(encoding);
    if (length > std::numeric_limits<CFIndex>::max() / perUnit) return kCFNotFound;
    return length * perUnit;
}

void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer) {
    const std::vector<UniChar>& units = getUnits(theString);
    const auto size = static_cast<CFIndex>(units.size());
    if (range.location < 0 || range.length < 0 || range.location > size ||
        range.length > size - range.location) {
        return;
    }
    std::copy_n(units.begin() + range.location, range.length, buffer);
}

CFComparisonResult CFStringCompare(CFStringRef theString1, CFStringRef theString2,
                                   CFStringCompareFlags compareOptions) {
    const std::vector<UniChar>& first = getUnits(theString1);
    const std::vector<UniChar>& second = getUnits(theString2);
    if ((compareOptions & kCFCompareCaseInsensitive) == 0) return compare(first, second);
    return compare(inLowerCase(first), inLowerCase(second));
}

CFStringEncoding CFStringGetSystemEncoding() {
    return kCFStringEncodingMacRoman;
}

CFStringEncoding CFStringGetMostCompatibleMacStringEncoding(CFStringEncoding encoding) {
    constexpr CFStringEncoding kFamilyMask = 0x0F00;
    switch (encoding & kFamilyMask) {
        case 0:
            return encoding & 0xFF;
        case kCFStringEncodingUnicode:
            return kCFStringEncodingUnicode;
        default:
            break;
    }
    const bool isWestern =
        encoding == kCFStringEncodingISOLatin1 || encoding == kCFStringEncodingWindowsLatin1;
    return isWestern ? CFStringEncoding{kCFStringEncodingMacRoman} : kCFStringEncodingInvalidId;
}

unsigned long CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding) {
    // The values of Foundation's NSStringEncoding.
    switch (encoding) {
        case kCFStringEncodingMacRoman:
            return 30;
        case kCFStringEncodingWindowsLatin1:
            return 12;
        case kCFStringEncodingISOLatin1:
            return 5;
        case kCFStringEncodingASCII:
            return 1;
        case kCFStringEncodingUnicode:
            return 10;
        case kCFStringEncodingUTF8:
            return 4;
        default:
            return 0x80000000UL | encoding;
    }
}
