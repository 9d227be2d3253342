#include "foundation/FoundationObject.h"

#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <mutex>

#include "foundation/TextEncoding.h"

using portability::objectOf;

namespace {

CFStringRef stringRef(NSString* string) { return (CFStringRef)string; }

CFIndex maximumBytesPerUnit(CFStringEncoding encoding) {
    switch (encoding) {
        case kCFStringEncodingUTF8:
            return 3;  // a pair of units needs four bytes
        case kCFStringEncodingUTF16:
            return 2;
        default:
            return 1;
    }
}

NSStringCompareOptions foundationOptions(CFStringCompareFlags flags) {
    NSStringCompareOptions options = 0;
    if ((flags & kCFCompareNonliteral) == 0) {
        options |= NSLiteralSearch;
    }
    if ((flags & kCFCompareCaseInsensitive) != 0) {
        options |= NSCaseInsensitiveSearch;
    }
    if ((flags & kCFCompareNumerically) != 0) {
        options |= NSNumericSearch;
    }
    return options;
}

}  // namespace

CFStringRef __CFStringMakeConstantString(const char* cStr) {
    // Never destroyed: code that runs while the program ends may still use its constants.
    static auto& mutex = *new std::mutex;
    static auto& constants = *new std::map<std::string, NSString*>;
    const std::lock_guard<std::mutex> lock(mutex);
    NSString*& constant = constants[cStr];
    if (constant == nil) {
        constant = portability::newString(std::string_view(cStr));
    }
    return stringRef(constant);
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* cStr, CFStringEncoding encoding) {
    const auto units = portability::decodeText(cStr, encoding);
    return units ? stringRef(portability::newString(*units)) : nullptr;
}

Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding) {
    if (bufferSize < 1) {
        return false;
    }
    const std::vector<UniChar> units = portability::unitsOf(objectOf<NSString*>(theString));
    const auto bytes = portability::encodeText(units.data(), units.size(), encoding);
    if (!bytes || bytes->size() >= static_cast<std::size_t>(bufferSize)) {
        buffer[0] = '\0';
        return false;
    }
    std::memcpy(buffer, bytes->c_str(), bytes->size() + 1);
    return true;
}

CFIndex CFStringGetLength(CFStringRef theString) {
    return static_cast<CFIndex>([objectOf<NSString*>(theString) length]);
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
    const CFIndex perUnit = maximumBytesPerUnit(encoding);
    if (length > std::numeric_limits<CFIndex>::max() / perUnit) {
        return kCFNotFound;
    }
    return length * perUnit;
}

void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer) {
    const std::vector<UniChar> units = portability::unitsOf(objectOf<NSString*>(theString));
    const auto size = static_cast<CFIndex>(units.size());
    if (range.location < 0 || range.length < 0 || range.location > size ||
        range.length > size - range.location) {
        return;
    }
    std::copy_n(units.begin() + range.location, range.length, buffer);
}

CFComparisonResult CFStringCompare(CFStringRef theString1, CFStringRef theString2,
                                   CFStringCompareFlags compareOptions) {
    const portability::AutoreleasePool pool;
    return [objectOf<NSString*>(theString1) compare:objectOf<NSString*>(theString2)
                                            options:foundationOptions(compareOptions)];
}

CFStringEncoding CFStringGetSystemEncoding() { return kCFStringEncodingMacRoman; }

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
    switch (encoding) {
        case kCFStringEncodingMacRoman:
            return NSMacOSRomanStringEncoding;
        case kCFStringEncodingWindowsLatin1:
            return NSWindowsCP1252StringEncoding;
        case kCFStringEncodingISOLatin1:
            return NSISOLatin1StringEncoding;
        case kCFStringEncodingASCII:
            return NSASCIIStringEncoding;
        case kCFStringEncodingUnicode:
            return NSUnicodeStringEncoding;
        case kCFStringEncodingUTF8:
            return NSUTF8StringEncoding;
        default:
            return 0x80000000UL | encoding;
    }
}
