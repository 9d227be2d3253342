#include "foundation/FoundationObject.h"

#include <CoreFoundation/CoreFoundation.h>

#include "foundation/Bundle.h"

using portability::isBundle;
using portability::objectOf;

const CFAllocatorRef kCFAllocatorDefault = nullptr;

namespace {

enum : CFTypeID { kOther = 1, kString = 7, kDictionary = 18, kArray = 19, kURL = 29, kBundle = 30 };

CFBundleRef bundleOf(CFTypeRef cf) { return (CFBundleRef) const_cast<void*>(cf); }

}  // namespace

CFTypeRef CFRetain(CFTypeRef cf) {
    const id object = objectOf(cf);
    if (isBundle(cf)) {
        portability::retainBundle(bundleOf(cf));
    } else {
        [object retain];
    }
    return cf;
}

void CFRelease(CFTypeRef cf) {
    const id object = objectOf(cf);
    if (isBundle(cf)) {
        portability::releaseBundle(bundleOf(cf));
    } else {
        [object release];
    }
}

CFTypeID CFGetTypeID(CFTypeRef cf) {
    const id object = objectOf(cf);
    if (isBundle(cf)) {
        return kBundle;
    }
    if ([object isKindOfClass:[NSString class]]) {
        return kString;
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        return kDictionary;
    }
    if ([object isKindOfClass:[NSArray class]]) {
        return kArray;
    }
    return [object isKindOfClass:[NSURL class]] ? kURL : kOther;
}

CFTypeID CFStringGetTypeID() { return kString; }

CFTypeID CFDictionaryGetTypeID() { return kDictionary; }

CFTypeID CFArrayGetTypeID() { return kArray; }

CFTypeID CFURLGetTypeID() { return kURL; }

CFTypeID CFBundleGetTypeID() { return kBundle; }
