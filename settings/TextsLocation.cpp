#include "settings/TextsLocation.h"

#include <array>

#include "client/exceptions/CPPException.h"
#include "platform/CFObject.h"
#include "platform/files/Places.h"

namespace dovrel {

namespace {

constexpr char kLocationFailure[] = "Sorry, could not read file 'MultiLanguageTexts.mls'...";
constexpr CFIndex kLongestPath = 4096;

CFObject<CFStringRef> newString(const char* text) {
    return CFObject<CFStringRef>(CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingUTF8));
}

CFObject<CFURLRef> appended(const CFObject<CFURLRef>& url, const char* component, bool isFolder) {
    const CFObject<CFStringRef> name = newString(component);
    if (!url || !name) return CFObject<CFURLRef>(nullptr);
    return CFObject<CFURLRef>(
        CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, url.get(), name.get(), isFolder));
}

CFObject<CFURLRef> newFolderUrl(const std::string& path) {
    const CFObject<CFStringRef> text = newString(path.c_str());
    if (!text) return CFObject<CFURLRef>(nullptr);
    return CFObject<CFURLRef>(
        CFURLCreateWithFileSystemPath(kCFAllocatorDefault, text.get(), kCFURLPOSIXPathStyle, true));
}

}  // namespace

std::string textsFilePath(const std::string& installFolder) {
    const CFObject<CFURLRef> bundle = newFolderUrl(installFolder + places::kLibraryBundleName);
    const CFObject<CFURLRef> resources = appended(appended(bundle, "Contents", true), "Resources", true);
    const CFObject<CFURLRef> file = appended(resources, kTextsFileName, false);

    std::array<UInt8, kLongestPath> path{};
    if (!file || !CFURLGetFileSystemRepresentation(file.get(), true, path.data(), kLongestPath)) {
        throw new CPPException(kLocationFailure);
    }
    return reinterpret_cast<const char*>(path.data());
}

}  // namespace dovrel
