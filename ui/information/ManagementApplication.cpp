#include "ui/information/ManagementApplication.h"

#include "platform/CFObject.h"

namespace dovrel {

bool isManagementApplication() {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    const CFStringRef identifier = bundle != nullptr ? CFBundleGetIdentifier(bundle) : nullptr;
    if (identifier == nullptr) return false;
    const CFObject<CFStringRef> expected(CFStringCreateWithCString(
        kCFAllocatorDefault, kManagementApplicationIdentifier, kCFStringEncodingUTF8));
    return expected &&
           CFStringCompare(identifier, expected.get(), kCFCompareCaseInsensitive) == kCFCompareEqualTo;
}

}  // namespace dovrel
