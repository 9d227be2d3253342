#include "portability/appleevents/OwnSignature.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>

#include "portability/corefoundation/Bundle.h"
#include "portability/posix/SystemRoot.h"

namespace portability {

bool readOwnSignature(OSType& signature) {
    CFBundleRef bundle = CFBundleGetMainBundle();
    if (bundle == nullptr) return false;
    CFTypeRef value = CFBundleGetValueForInfoDictionaryKey(bundle, CFSTR("CFBundleSignature"));
    if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID()) return false;
    char text[5];
    if (!CFStringGetCString(static_cast<CFStringRef>(value), text, sizeof text, kCFStringEncodingMacRoman))
        return false;
    uint32_t code = 0;
    for (int i = 0; i < 4; ++i) {
        if (text[i] == 0) return false;
        code = code << 8 | static_cast<uint8_t>(text[i]);
    }
    signature = code;
    return true;
}

bool isInstalled() {
    CFBundleRef bundle = CFBundleGetMainBundle();
    return bundle != nullptr && isInFixedPlace(bundle->path());
}

}  // namespace portability
