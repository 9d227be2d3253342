#include <CoreFoundation/CFError.h>
#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFString.h>

#include "corefoundation/Object.h"
#include "corefoundation/PropertyList.h"

CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef, CFDataRef data, CFOptionFlags,
                                               CFPropertyListFormat* format, CFErrorRef* error) {
    constexpr CFIndex kReadCorrupt = 3840;
    const std::string& bytes = static_cast<const __CFData&>(portability::objectOf(data)).bytes;
    const CFPropertyListRef list = portability::copyPropertyListIn(bytes, format);
    if (list == nullptr && error != nullptr)
        *error = new __CFError(CFSTR("NSCocoaErrorDomain"), kReadCorrupt);
    return list;
}

CFStringRef CFErrorGetDomain(CFErrorRef err) {
    return static_cast<const __CFError&>(portability::objectOf(err)).domain;
}

CFIndex CFErrorGetCode(CFErrorRef err) {
    return static_cast<const __CFError&>(portability::objectOf(err)).code;
}
