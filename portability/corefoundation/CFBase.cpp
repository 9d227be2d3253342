#include <CoreFoundation/CoreFoundation.h>

#include "portability/corefoundation/Object.h"

using portability::objectOf;

const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFTypeRef CFRetain(CFTypeRef cf) {
    objectOf(cf).retain();
    return cf;
}

void CFRelease(CFTypeRef cf) {
    objectOf(cf).release();
}

CFTypeID CFGetTypeID(CFTypeRef cf) {
    return objectOf(cf).kind();
}
