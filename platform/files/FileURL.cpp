#include "platform/files/FileURL.h"

namespace dovrel {

CFObject<CFURLRef> fileURL(const std::string& path, CFStringEncoding encoding) {
    const CFObject<CFStringRef> text(CFStringCreateWithCString(kCFAllocatorDefault, path.c_str(), encoding));
    if (!text) return CFObject<CFURLRef>(nullptr);
    return CFObject<CFURLRef>(
        CFURLCreateWithFileSystemPath(kCFAllocatorDefault, text.get(), kCFURLPOSIXPathStyle, false));
}

}  // namespace dovrel
