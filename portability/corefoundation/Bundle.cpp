#include "portability/corefoundation/Bundle.h"

#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <memory>

#include "portability/corefoundation/Languages.h"
#include "portability/corefoundation/PropertyList.h"
#include "portability/posix/Paths.h"

using portability::isFolder;
using portability::isThere;
using portability::toUtf8;

namespace {

std::string resourcesIn(const std::string& bundle, bool hasContents) {
    if (hasContents) {
        return bundle + "/Contents/Resources";
    }
    const std::string resources = bundle + "/Resources";
    return isFolder(resources) ? resources : bundle;
}

// Returns the English name of a language. Older bundles use it, instead of the code, as the name of a folder
// with localized resources.
std::string olderLanguageName(const std::string& code) {
    constexpr const char* kNames[][2] = {{"en", "English"}, {"de", "German"},  {"fr", "French"},
                                         {"es", "Spanish"}, {"it", "Italian"}, {"ja", "Japanese"}};
    for (const auto& name : kNames) {
        if (code == name[0]) {
            return name[1];
        }
    }
    return std::string();
}

}  // namespace

__CFBundle::__CFBundle(const std::string& path)
    : Object(portability::kBundleKind),
      path_(path),
      hasContents_(isFolder(path + "/Contents")),
      resources_(resourcesIn(path, hasContents_)) {}

__CFBundle::~__CFBundle() {
    for (const CFDictionaryRef dictionary : {info_.dictionary, localizedInfo_.dictionary}) {
        if (dictionary != nullptr) {
            CFRelease(dictionary);
        }
    }
}

std::string __CFBundle::executable() {
    const CFStringRef name = infoString(kCFBundleExecutableKey);
    if (name == nullptr) {
        return std::string();
    }
    const std::string file = path_ + (hasContents_ ? "/Contents/MacOS/" : "/") + toUtf8(name);
    return isThere(file) ? file : std::string();
}

CFTypeRef __CFBundle::infoValue(CFStringRef key) {
    for (const CFDictionaryRef dictionary : {localizedInfo(), info()}) {
        const void* value = dictionary == nullptr ? nullptr : CFDictionaryGetValue(dictionary, key);
        if (value != nullptr) {
            return value;
        }
    }
    return nullptr;
}

CFStringRef __CFBundle::infoString(CFStringRef key) {
    return portability::stringValue(info(), key);
}

std::string __CFBundle::resource(const std::string& file) {
    const std::string common = resources_ + '/' + file;
    return isThere(common) ? common : localizedResource(file);
}

std::string __CFBundle::localizedResource(const std::string& file) {
    std::vector<std::string> languages = portability::userLanguages();
    const CFStringRef ownLanguage = infoString(kCFBundleDevelopmentRegionKey);
    languages.push_back(ownLanguage == nullptr ? "en" : toUtf8(ownLanguage));
    for (const std::string& language : languages) {
        const std::string code = language.substr(0, language.find_first_of("-_"));
        for (const std::string& name : {language, code, olderLanguageName(code)}) {
            const std::string candidate = resources_ + '/' + name + ".lproj/" + file;
            if (!name.empty() && isThere(candidate)) {
                return candidate;
            }
        }
    }
    return std::string();
}

// Not with std::call_once: an exception that passes through it passes through the C library, which then loads
// a library. Without memory it cannot, and ends the process.
template <typename Read>
CFDictionaryRef __CFBundle::readOnce(LateDictionary& late, const Read& read) {
    const std::lock_guard<std::mutex> lock(late.mutex);
    if (!late.isRead) {
        late.dictionary = read();
        late.isRead = true;
    }
    return late.dictionary;
}

CFDictionaryRef __CFBundle::info() {
    return readOnce(info_, [this] {
        const std::string flat = isThere(resources_ + "/Info.plist") ? resources_ : path_;
        return portability::copyDictionary((hasContents_ ? path_ + "/Contents" : flat) + "/Info.plist");
    });
}

CFDictionaryRef __CFBundle::localizedInfo() {
    return readOnce(localizedInfo_, [this] {
        const std::string file = localizedResource("InfoPlist.strings");
        return file.empty() ? nullptr : portability::copyStrings(file);
    });
}

namespace portability {
namespace {

struct BundleTable {
    std::mutex mutex;
    std::vector<CFBundleRef> bundles;
};

BundleTable& table() {
    // Never destroyed, because bundles may be released while the process exits.
    static auto& bundles = *new BundleTable;
    return bundles;
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

CFBundleRef createBundle(const std::string& path) {
    const std::string canonical = canonicalPath(path);
    if (!isFolder(canonical)) {
        return nullptr;
    }
    const std::lock_guard<std::mutex> lock(table().mutex);
    for (const CFBundleRef bundle : table().bundles) {
        if (bundle->path() == canonical) {
            bundle->retain();
            return bundle;
        }
    }
    auto bundle = std::make_unique<__CFBundle>(canonical);
    table().bundles.push_back(bundle.get());
    return bundle.release();
}

std::vector<CFBundleRef> retainedBundles() {
    const std::lock_guard<std::mutex> lock(table().mutex);
    // Copied first: if memory runs out, nothing has been retained.
    std::vector<CFBundleRef> bundles = table().bundles;
    for (const CFBundleRef bundle : bundles) {
        bundle->retain();
    }
    return bundles;
}

std::string bundleAround(const std::string& executable) {
    const std::string folder = getParent(executable);
    constexpr const char* kInside = "/Contents/MacOS";
    return endsWith(folder, kInside) ? getParent(getParent(folder)) : std::string();
}

}  // namespace portability

// The table is locked before the reference is released, so that every bundle in the table has at least
// one reference.
void __CFBundle::release() const {
    const std::lock_guard<std::mutex> lock(portability::table().mutex);
    if (!releasesLast()) {
        return;
    }
    std::vector<CFBundleRef>& bundles = portability::table().bundles;
    bundles.erase(std::find(bundles.begin(), bundles.end(), this));
    delete this;
}
