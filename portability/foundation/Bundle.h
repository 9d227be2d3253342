// A bundle: where its parts lie and what its Info.plist says. Private to the layer.
//
// Bundles are not Foundation's objects. Each folder has one bundle at most, which all who ask for it share; a
// table knows those in use. All members may be called from any thread.
#pragma once

#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFDictionary.h>

#include <mutex>
#include <string>
#include <vector>

struct __CFBundle {
    /// `path` is canonical and names a folder.
    explicit __CFBundle(const std::string& path);
    ~__CFBundle();
    __CFBundle(const __CFBundle&) = delete;
    __CFBundle& operator=(const __CFBundle&) = delete;

    const std::string& path() const { return path_; }

    /// The folder of the resources; that of the bundle itself when it has none of its own.
    const std::string& resources() const { return resources_; }

    /// The file that CFBundleExecutable names; empty when there is none.
    std::string executable();

    /// The value under `key` in the user's language, else in the Info.plist, or null; lives as long as the
    /// bundle.
    CFTypeRef infoValue(CFStringRef key);

    /// The value under `key` in the Info.plist if it is a string, else null.
    CFStringRef infoString(CFStringRef key);

    /// Where the resource `file` lies, first without a language, then in the user's; empty when there is
    /// none.
    std::string resource(const std::string& file);

  private:
    std::string localizedResource(const std::string& file);
    CFDictionaryRef info();
    CFDictionaryRef localizedInfo();

    // What tells a bundle from an object of Foundation, which begins with the address of its class.
    [[maybe_unused]] const void* const mark_;
    const std::string path_;
    const bool hasContents_;
    const std::string resources_;
    std::once_flag infoRead_;
    CFDictionaryRef info_ = nullptr;
    std::once_flag localizedInfoRead_;
    CFDictionaryRef localizedInfo_ = nullptr;
};

namespace portability {

/// Whether the object is a bundle and not one of Foundation's.
bool isBundle(CFTypeRef object);

/// The bundle in the folder `path`, made if need be, with one more reference; null when there is no such
/// folder.
CFBundleRef createBundle(const std::string& path);
void retainBundle(CFBundleRef bundle);
void releaseBundle(CFBundleRef bundle);

/// The bundles in use, in the order in which they were made, each with one more reference.
std::vector<CFBundleRef> retainedBundles();

/// The folder around an executable that lies in a bundle (…/Contents/MacOS/name); empty when it lies in none.
std::string bundleAround(const std::string& executable);

}  // namespace portability
