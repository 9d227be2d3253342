// Code in a bundle that asks for its own bundle.
#include <CoreFoundation/CoreFoundation.h>

extern "C" __attribute__((visibility("default"))) CFBundleRef findPlugBundle(CFStringRef identifier) {
    return CFBundleGetBundleWithIdentifier(identifier);
}
