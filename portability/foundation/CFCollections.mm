// Arrays and dictionaries.
#include "foundation/FoundationObject.h"

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFDictionary.h>

using portability::objectOf;

CFIndex CFArrayGetCount(CFArrayRef theArray) {
    return static_cast<CFIndex>([objectOf<NSArray*>(theArray) count]);
}

const void* CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx) {
    NSArray* array = objectOf<NSArray*>(theArray);
    if (idx < 0 || idx >= CFArrayGetCount(theArray)) {
        std::abort();
    }
    return [array objectAtIndex:static_cast<NSUInteger>(idx)];
}

CFIndex CFDictionaryGetCount(CFDictionaryRef theDict) {
    return static_cast<CFIndex>([objectOf<NSDictionary*>(theDict) count]);
}

Boolean CFDictionaryContainsKey(CFDictionaryRef theDict, const void* key) {
    return CFDictionaryGetValue(theDict, key) != nullptr;
}

const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key) {
    return [objectOf<NSDictionary*>(theDict) objectForKey:objectOf(key)];
}
