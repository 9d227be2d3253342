#include "platform/files/FileURL.h"

#include "platform/text/CFStrings.h"

namespace dovrel {

namespace {

CFObject<CFURLRef> newURL(const std::string& path, CFStringEncoding encoding, bool isFolder) {
    const CFObject<CFStringRef> text = newCFString(path.c_str(), encoding);
    if (!text) return CFObject<CFURLRef>(nullptr);
    return CFObject<CFURLRef>(
        CFURLCreateWithFileSystemPath(kCFAllocatorDefault, text.get(), kCFURLPOSIXPathStyle, isFolder));
}

CFObject<CFURLRef> newURLInFolder(const CFObject<CFURLRef>& folder, const char* name, bool isFolder) {
    const CFObject<CFStringRef> component = newCFString(name);
    if (!folder || !component) return CFObject<CFURLRef>(nullptr);
    return CFObject<CFURLRef>(
        CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, folder.get(), component.get(), isFolder));
}

}  // namespace

CFObject<CFURLRef> fileURL(const std::string& path, CFStringEncoding encoding) {
    return newURL(path, encoding, false);
}

CFObject<CFURLRef> folderURL(const std::string& path) {
    return newURL(path, kCFStringEncodingUTF8, true);
}

CFObject<CFURLRef> fileURLInFolder(const CFObject<CFURLRef>& folder, const char* name) {
    return newURLInFolder(folder, name, false);
}

CFObject<CFURLRef> folderURLInFolder(const CFObject<CFURLRef>& folder, const char* name) {
    return newURLInFolder(folder, name, true);
}

}  // namespace dovrel
