// A bundle: the paths of its parts, and the values of its Info.plist. Private to the layer.
//
// There is at most one bundle object per folder, which all code in the process shares. A table contains the
// bundles in use. All members are thread-safe.
#pragma once

#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFDictionary.h>

#include <mutex>
#include <string>
#include <vector>

#include "portability/corefoundation/Object.h"

struct __CFBundle final : portability::Object {
    /// `path` must be the canonical path of an existing folder.
    explicit __CFBundle(const std::string& path);
    ~__CFBundle() override;

    /// Also removes the bundle from the table when the last reference is released.
    void release() const override;

    const std::string& path() const { return path_; }

    /// Returns the path of the resources folder, or of the bundle itself if it has no resources folder.
    const std::string& resources() const { return resources_; }

    /// Returns the path of the file that CFBundleExecutable names. Returns the empty string if there is none.
    std::string executable();

    /// Returns the value of `key` in the localized strings of the user's language, otherwise in the
    /// Info.plist, otherwise null. The bundle owns the value.
    CFTypeRef infoValue(CFStringRef key);

    /// Returns the value of `key` in the Info.plist if it is a string, otherwise null.
    CFStringRef infoString(CFStringRef key);

    /// Returns the path of the resource `file`. Searches first the resources without a language, then those
    /// of the user's languages. Returns the empty string if there is none.
    std::string resource(const std::string& file);

  private:
    // A dictionary that is read when it is needed first.
    struct LateDictionary {
        std::mutex mutex;
        bool isRead = false;
        CFDictionaryRef dictionary = nullptr;
    };

    template <typename Read>
    static CFDictionaryRef readOnce(LateDictionary& late, const Read& read);

    std::string localizedResource(const std::string& file);
    CFDictionaryRef info();
    CFDictionaryRef localizedInfo();

    const std::string path_;
    const bool hasContents_;
    const std::string resources_;
    LateDictionary info_;
    LateDictionary localizedInfo_;
};

namespace portability {

/// Returns the bundle for the folder `path` and creates it if necessary. The caller releases it. Returns null
/// if the folder does not exist.
CFBundleRef createBundle(const std::string& path);
/// Returns the bundles in use in the order in which they were created. The caller releases each of them.
std::vector<CFBundleRef> retainedBundles();

/// Returns the path of the bundle that contains an executable (…/Contents/MacOS/name). Returns the empty
/// string if the executable is not in a bundle.
std::string bundleAround(const std::string& executable);

}  // namespace portability
