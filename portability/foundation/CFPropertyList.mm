#include "foundation/FoundationObject.h"

#include <CoreFoundation/CFPropertyList.h>

#include "foundation/PropertyList.h"

CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef, CFDataRef data, CFOptionFlags,
                                               CFPropertyListFormat* format, CFErrorRef* error) {
    NSData* content = portability::objectOf<NSData*>(data);
    const CFPropertyListRef list = portability::copyPropertyListIn(
        std::string_view(static_cast<const char*>([content bytes]), [content length]), format);
    if (list == nullptr && error != nullptr) {
        constexpr NSInteger kReadCorrupt = 3840;
        *error =
            (CFErrorRef)[[NSError alloc] initWithDomain:NSCocoaErrorDomain code:kReadCorrupt userInfo:nil];
    }
    return list;
}
