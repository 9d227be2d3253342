// A bundle: where its parts lie and what its Info.plist says. Private to the layer.
//
// Each folder has at most one bundle, which everything in the process shares; a table lists those in use. All
// members may be called from any thread.
#pragma once

#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFDictionary.h>

#include <mutex>
#include <string>
#include <vector>

#include "portability/corefoundation/Object.h"

struct __CFBundle final : portability::Object {
    /// `path` is canonical and names a folder.
    explicit __CFBundle(const std::string& path);
    ~__CFBundle() override;

    /// Also takes the bundle out of the table.
    void release() const override;

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

    const std::string path_;
    const bool hasContents_;
    const std::string resources_;
    std::once_flag infoRead_;
    CFDictionaryRef info_ = nullptr;
    std::once_flag localizedInfoRead_;
    CFDictionaryRef localizedInfo_ = nullptr;
};

namespace portability {

/// The bundle in the folder `path`, made if need be, with one more reference; null when there is no such
/// folder.
CFBundleRef createBundle(const std::string& path);
/// The bundles in use, in the order in which they were made, each with one more reference.
std::vector<CFBundleRef> retainedBundles();

/// The folder around an executable that lies in a bundle (…/Contents/MacOS/name); empty when it lies in none.
std::string bundleAround(const std::string& executable);

}  // namespace portability
