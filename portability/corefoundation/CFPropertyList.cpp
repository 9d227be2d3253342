#include <CoreFoundation/CFError.h>
#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFString.h>

#include "portability/corefoundation/Object.h"
#include "portability/corefoundation/PropertyList.h"
#include "portability/corefoundation/PropertyListWriter.h"

CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef, CFDataRef data, CFOptionFlags,
                                               CFPropertyListFormat* format, CFErrorRef* error) {
    constexpr CFIndex kReadCorrupt = 3840;
    const std::string& bytes = static_cast<const __CFData&>(portability::toObject(data)).bytes;
    const CFPropertyListRef list = portability::copyPropertyListIn(bytes, format);
    if (list == nullptr && error != nullptr)
        *error = new __CFError(CFSTR("NSCocoaErrorDomain"), kReadCorrupt);
    return list;
}

CFDataRef CFPropertyListCreateData(CFAllocatorRef, CFPropertyListRef propertyList,
                                   CFPropertyListFormat format, CFOptionFlags, CFErrorRef* error) {
    constexpr CFIndex kWriteInvalid = 3852;
    std::optional<std::string> text;
    if (format == kCFPropertyListXMLFormat_v1_0) {
        text = portability::writeXmlPropertyList(portability::toObject(propertyList));
    }
    if (!text && error != nullptr) *error = new __CFError(CFSTR("NSCocoaErrorDomain"), kWriteInvalid);
    return text ? new __CFData(std::move(*text)) : nullptr;
}

CFStringRef CFErrorGetDomain(CFErrorRef err) {
    return static_cast<const __CFError&>(portability::toObject(err)).domain;
}

CFIndex CFErrorGetCode(CFErrorRef err) {
    return static_cast<const __CFError&>(portability::toObject(err)).code;
}
