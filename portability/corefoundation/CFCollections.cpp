// Arrays, dictionaries and data.
#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDictionary.h>

#include <cstdlib>

#include "portability/corefoundation/Object.h"

using portability::toObject;

CFTypeID CFArrayGetTypeID() {
    return portability::kArrayKind;
}

CFIndex CFArrayGetCount(CFArrayRef theArray) {
    return static_cast<CFIndex>(static_cast<const __CFArray&>(toObject(theArray)).values.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx) {
    if (idx < 0 || idx >= CFArrayGetCount(theArray)) std::abort();
    return theArray->values[static_cast<std::size_t>(idx)].get();
}

CFTypeID CFDictionaryGetTypeID() {
    return portability::kDictionaryKind;
}

CFIndex CFDictionaryGetCount(CFDictionaryRef theDict) {
    return static_cast<CFIndex>(static_cast<const __CFDictionary&>(toObject(theDict)).values.size());
}

Boolean CFDictionaryContainsKey(CFDictionaryRef theDict, const void* key) {
    return CFDictionaryGetValue(theDict, key) != nullptr;
}

const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key) {
    return static_cast<const __CFDictionary&>(toObject(theDict)).value(key);
}

CFTypeID CFDataGetTypeID() {
    return portability::kDataKind;
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
    return new __CFData(length > 0 ? std::string(bytes, bytes + length) : std::string());
}

CFIndex CFDataGetLength(CFDataRef theData) {
    return static_cast<CFIndex>(static_cast<const __CFData&>(toObject(theData)).bytes.size());
}

const UInt8* CFDataGetBytePtr(CFDataRef theData) {
    return reinterpret_cast<const UInt8*>(static_cast<const __CFData&>(toObject(theData)).bytes.data());
}
