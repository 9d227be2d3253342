#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <new>

#include "portability/corefoundation/Bundle.h"
#include "portability/corefoundation/FileURL.h"
#include "portability/corefoundation/PackedVersion.h"
#include "portability/posix/Paths.h"

namespace {

std::string ownExecutable() {
    std::array<char, PATH_MAX> path;
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    return length <= 0 ? std::string() : std::string(path.data(), static_cast<std::size_t>(length));
}

// Returns the bundle that contains the image, with one reference. Returns null if there is none.
CFBundleRef findImageBundle(const std::string& image) {
    const std::string folder = portability::bundleAround(portability::canonicalPath(image));
    return folder.empty() ? nullptr : portability::createBundle(folder);
}

// Returns 0 to go on, or 1 if memory runs out. An exception would pass through the C library, which then
// loads a library and ends the process if it cannot.
int appendImage(struct dl_phdr_info* image, std::size_t, void* names) noexcept {
    try {
        static_cast<std::vector<std::string>*>(names)->emplace_back(image->dlpi_name);
    } catch (const std::bad_alloc&) {
        return 1;
    }
    return 0;
}

std::vector<std::string> findImages() {
    std::vector<std::string> images;
    if (dl_iterate_phdr(&appendImage, &images) != 0) throw std::bad_alloc();
    return images;
}

bool hasIdentifier(CFBundleRef bundle, CFStringRef identifier) {
    const CFStringRef own = CFBundleGetIdentifier(bundle);
    return own != nullptr && CFStringCompare(own, identifier, 0) == kCFCompareEqualTo;
}

// Returns the bundle with this identifier and the highest version. Among equal versions the last one wins.
CFBundleRef bestMatch(const std::vector<CFBundleRef>& bundles, CFStringRef identifier) {
    CFBundleRef best = nullptr;
    for (const CFBundleRef bundle : bundles) {
        const bool isBetter =
            hasIdentifier(bundle, identifier) &&
            (best == nullptr || CFBundleGetVersionNumber(bundle) >= CFBundleGetVersionNumber(best));
        best = isBetter ? bundle : best;
    }
    return best;
}

CFBundleRef bestInUse(CFStringRef identifier) {
    const std::vector<CFBundleRef> bundles = portability::retainedBundles();
    const CFBundleRef best = bestMatch(bundles, identifier);
    for (const CFBundleRef bundle : bundles) {
        CFRelease(bundle);
    }
    return best;
}

// Returns the best match and releases all other bundles. The reference to the match is never released,
// because callers do not own it and may use the bundle while its image is loaded.
CFBundleRef findBestImage(const std::vector<std::string>& images, CFStringRef identifier) {
    std::vector<CFBundleRef> bundles;
    for (const std::string& image : images) {
        if (const CFBundleRef bundle = findImageBundle(image)) {
            bundles.push_back(bundle);
        }
    }
    const CFBundleRef best = bestMatch(bundles, identifier);
    for (const CFBundleRef bundle : bundles) {
        if (bundle != best) {
            CFRelease(bundle);
        }
    }
    return best;
}

CFBundleRef createMainBundle() {
    const std::string executable = ownExecutable();
    if (executable.empty()) {
        return nullptr;
    }
    const std::string around = portability::bundleAround(executable);
    return portability::createBundle(around.empty() ? portability::getParent(executable) : around);
}

}  // namespace

CFTypeID CFBundleGetTypeID() {
    return portability::kBundleKind;
}

CFBundleRef CFBundleGetMainBundle() {
    static const CFBundleRef bundle = createMainBundle();
    return bundle;
}

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef bundleURL) {
    return portability::createBundle(portability::toPath(bundleURL));
}

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID) {
    CFBundleGetMainBundle();  // adds the main bundle to the bundles in use
    if (const CFBundleRef bundle = bestInUse(bundleID)) {
        return bundle;
    }
    Dl_info caller;
    if (dladdr(__builtin_return_address(0), &caller) != 0 && caller.dli_fname != nullptr) {
        if (const CFBundleRef bundle = findBestImage({caller.dli_fname}, bundleID)) {
            return bundle;
        }
    }
    return findBestImage(findImages(), bundleID);
}

CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
    return bundle->infoValue(key);
}

CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
    return bundle->infoString(kCFBundleIdentifierKey);
}

UInt32 CFBundleGetVersionNumber(CFBundleRef bundle) {
    return portability::packedVersion(portability::toUtf8(bundle->infoString(kCFBundleVersionKey)));
}

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
    return portability::createFileURL(bundle->path(), true);
}

CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle) {
    return portability::createFileURL(bundle->executable(), false);
}

CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle) {
    return portability::createFileURL(bundle->resources(), true);
}

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef resourceName, CFStringRef resourceType,
                                 CFStringRef subDirName) {
    const std::string folder = portability::toUtf8(subDirName);
    const std::string type = portability::toUtf8(resourceType);
    const std::string file = (folder.empty() ? folder : folder + '/') + portability::toUtf8(resourceName) +
                             (type.empty() ? type : '.' + type);
    const std::string path = bundle->resource(file);
    return portability::createFileURL(path, portability::isFolder(path));
}
