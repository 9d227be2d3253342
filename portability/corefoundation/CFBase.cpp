#include <CoreFoundation/CoreFoundation.h>

#include "portability/corefoundation/Object.h"

using portability::toObject;

const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFTypeRef CFRetain(CFTypeRef cf) {
    toObject(cf).retain();
    return cf;
}

void CFRelease(CFTypeRef cf) {
    toObject(cf).release();
}

CFTypeID CFGetTypeID(CFTypeRef cf) {
    return toObject(cf).kind();
}
