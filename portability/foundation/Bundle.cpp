#include "foundation/Bundle.h"

#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <memory>

#include "foundation/Languages.h"
#include "foundation/Paths.h"
#include "foundation/PropertyList.h"

using portability::isFolder;
using portability::isThere;

namespace {

const char kMark = 0;

std::string resourcesIn(const std::string& bundle, bool hasContents) {
    if (hasContents) {
        return bundle + "/Contents/Resources";
    }
    const std::string resources = bundle + "/Resources";
    return isFolder(resources) ? resources : bundle;
}

std::string utf8Of(CFStringRef text) {
    std::vector<char> bytes(static_cast<std::size_t>(CFStringGetMaximumSizeForEncoding(
                                CFStringGetLength(text), kCFStringEncodingUTF8)) +
                            1);
    CFStringGetCString(text, bytes.data(), static_cast<CFIndex>(bytes.size()), kCFStringEncodingUTF8);
    return bytes.data();
}

// Folders of localized resources are named after the language's code or, in older bundles, its name.
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
    : mark_(&kMark),
      path_(path),
      hasContents_(isFolder(path + "/Contents")),
      resources_(resourcesIn(path, hasContents_)) {}

__CFBundle::~__CFBundle() {
    for (const CFDictionaryRef dictionary : {info_, localizedInfo_}) {
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
    const std::string file = path_ + (hasContents_ ? "/Contents/MacOS/" : "/") + utf8Of(name);
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
    languages.push_back(ownLanguage == nullptr ? "en" : utf8Of(ownLanguage));
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

CFDictionaryRef __CFBundle::info() {
    std::call_once(infoRead_, [this] {
        const std::string flat = isThere(resources_ + "/Info.plist") ? resources_ : path_;
        info_ = portability::copyDictionary((hasContents_ ? path_ + "/Contents" : flat) + "/Info.plist");
    });
    return info_;
}

CFDictionaryRef __CFBundle::localizedInfo() {
    std::call_once(localizedInfoRead_, [this] {
        const std::string file = localizedResource("InfoPlist.strings");
        localizedInfo_ = file.empty() ? nullptr : portability::copyStrings(file);
    });
    return localizedInfo_;
}

namespace portability {
namespace {

struct Entry {
    std::unique_ptr<__CFBundle> bundle;
    long references;
};

struct BundleTable {
    std::mutex mutex;
    std::vector<Entry> entries;

    std::vector<Entry>::iterator find(CFBundleRef bundle) {
        return std::find_if(entries.begin(), entries.end(),
                            [bundle](const Entry& entry) { return entry.bundle.get() == bundle; });
    }
};

BundleTable& table() {
    // Never destroyed: bundles may be released while the program ends.
    static auto& bundles = *new BundleTable;
    return bundles;
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

bool isBundle(CFTypeRef object) {
    const void* firstWord = *static_cast<const void* const*>(object);
    return firstWord == &kMark;
}

CFBundleRef createBundle(const std::string& path) {
    const std::string canonical = canonicalPath(path);
    if (!isFolder(canonical)) {
        return nullptr;
    }
    const std::lock_guard<std::mutex> lock(table().mutex);
    for (Entry& entry : table().entries) {
        if (entry.bundle->path() == canonical) {
            ++entry.references;
            return entry.bundle.get();
        }
    }
    table().entries.push_back({std::make_unique<__CFBundle>(canonical), 1});
    return table().entries.back().bundle.get();
}

void retainBundle(CFBundleRef bundle) {
    const std::lock_guard<std::mutex> lock(table().mutex);
    ++table().find(bundle)->references;
}

void releaseBundle(CFBundleRef bundle) {
    std::unique_ptr<__CFBundle> last;
    const std::lock_guard<std::mutex> lock(table().mutex);
    const auto entry = table().find(bundle);
    if (--entry->references == 0) {
        last = std::move(entry->bundle);
        table().entries.erase(entry);
    }
}

std::vector<CFBundleRef> retainedBundles() {
    std::vector<CFBundleRef> bundles;
    const std::lock_guard<std::mutex> lock(table().mutex);
    for (Entry& entry : table().entries) {
        ++entry.references;
        bundles.push_back(entry.bundle.get());
    }
    return bundles;
}

std::string bundleAround(const std::string& executable) {
    const std::string folder = parentOf(executable);
    constexpr const char* kInside = "/Contents/MacOS";
    return endsWith(folder, kInside) ? parentOf(parentOf(folder)) : std::string();
}

}  // namespace portability
