#include "client/VersionBanner.h"

#include <vector>

#include "platform/CFObject.h"
#include "platform/FileURL.h"

namespace dovrel {

namespace {

constexpr char kBannerStart[] = "Dovrel Version ";
constexpr char kNoVersion[] = "n/a";

std::string textOf(CFStringRef text) {
    const CFIndex room =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(text), kCFStringEncodingUTF8) + 1;
    std::vector<char> bytes(static_cast<size_t>(room));
    return CFStringGetCString(text, bytes.data(), room, kCFStringEncodingUTF8) ? bytes.data() : kNoVersion;
}

std::string bundleVersion(const std::string& bundlePath) {
    const CFObject<CFURLRef> url = fileURL(bundlePath, kCFStringEncodingUTF8);
    if (!url) return kNoVersion;
    const CFObject<CFBundleRef> bundle(CFBundleCreate(kCFAllocatorDefault, url.get()));
    if (!bundle) return kNoVersion;
    const CFTypeRef value = CFBundleGetValueForInfoDictionaryKey(bundle.get(), kCFBundleVersionKey);
    if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID()) return kNoVersion;
    return textOf(static_cast<CFStringRef>(value));
}

}  // namespace

std::string versionBanner(const std::string& bundlePath) {
    return kBannerStart + bundleVersion(bundlePath);
}

}  // namespace dovrel
