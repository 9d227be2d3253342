#include "ui/information/ComponentVersions.h"

#include <CoreFoundation/CoreFoundation.h>

#include <mutex>

#include "platform/AutoreleasePool.h"
#include "platform/files/FileURL.h"
#include "platform/files/Places.h"
#include "platform/text/CFStrings.h"
#include "ui/information/PropertyText.h"

namespace dovrel {

namespace {

constexpr char kInstallerVersionKey[] = "HarlInstallerVersion";
constexpr char kDifference[] = "*";

CFBundleRef newKnownBundle(const std::string& identifier) {
    const CFObject<CFStringRef> name = newCFString(identifier.c_str());
    const CFBundleRef bundle = name ? CFBundleGetBundleWithIdentifier(name.get()) : nullptr;
    if (bundle != nullptr) CFRetain(bundle);
    return bundle;
}

CFBundleRef newBundleAt(const std::string& path) {
    const CFObject<CFURLRef> url = fileURL(path, kCFStringEncodingUTF8);
    return url ? CFBundleCreate(kCFAllocatorDefault, url.get()) : nullptr;
}

std::string bundleVersion(CFBundleRef bundle) {
    return textFromValue(CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleVersionKey))
        .value_or(kMissingVersion);
}

std::string versionText(const Component& component) {
    return bundleVersionText(component.identifier, component.path);
}

}  // namespace

std::string bundleVersionText(const std::string& identifier, const std::string& path) {
    // A known bundle is found without a reference to it. Another thread could release the last one before it
    // is retained.
    static std::mutex& oneAtATime = *new std::mutex;
    const std::lock_guard<std::mutex> held(oneAtATime);
    const AutoreleasePool pool;
    const CFObject<CFBundleRef> known(newKnownBundle(identifier));
    if (known) return bundleVersion(known.get());
    const CFObject<CFBundleRef> installed(newBundleAt(path));
    return installed ? bundleVersion(installed.get()) : kMissingVersion;
}

std::string serverVersionText() {
    return versionText(serverComponent());
}

std::string libraryVersionText() {
    return versionText(libraryComponent());
}

std::string siblingVersionText() {
    return versionText(siblingComponent());
}

std::string compatibilityVersionText() {
    return versionText(compatibilityComponent());
}

std::string managementVersionText() {
    return versionText(managementComponent());
}

std::string installerVersion(const std::string& bundlePath) {
    return textInPropertyList(bundlePath + places::kInfoPropertyList, kInstallerVersionKey)
        .value_or(kMissingVersion);
}

std::string componentsInstallerVersion() {
    const std::string version = installerVersion(managementComponent().path);
    for (const Component& component : {serverComponent(), libraryComponent(), siblingComponent()}) {
        if (installerVersion(component.path) != version) return version + kDifference;
    }
    return version;
}

}  // namespace dovrel
