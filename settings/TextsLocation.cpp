#include "settings/TextsLocation.h"

#include <array>

#include "client/exceptions/CPPException.h"
#include "platform/CFObject.h"
#include "platform/Places.h"
#include "settings/MultiLanguageSupport.h"

namespace dovrel {

namespace {

constexpr char kLocationFailure[] = "Sorry, could not read file 'MultiLanguageTexts.mls'...";
constexpr CFIndex kLongestPath = 4096;

struct PreferredLanguage {
    const char* entry;
    const char* language;
};

constexpr PreferredLanguage kPreferredLanguages[] = {
    {"de", kLanguageGerman},         {"German", kLanguageGerman},   {"fr", kLanguageFrench},
    {"French", kLanguageFrench},     {"es", kLanguageSpanish},      {"Spanish", kLanguageSpanish},
    {"it", kLanguageItalian},        {"Italian", kLanguageItalian}, {"ja", kLanguageJapanese},
    {"Japanese", kLanguageJapanese},
};

CFObject<CFStringRef> newString(const char* text) {
    return CFObject<CFStringRef>(CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingUTF8));
}

CFStringRef firstEntry(CFPropertyListRef preference) {
    if (preference == nullptr || CFGetTypeID(preference) != CFArrayGetTypeID()) return nullptr;
    const auto entries = static_cast<CFArrayRef>(preference);
    if (CFArrayGetCount(entries) == 0) return nullptr;
    const CFTypeRef entry = CFArrayGetValueAtIndex(entries, 0);
    return CFGetTypeID(entry) == CFStringGetTypeID() ? static_cast<CFStringRef>(entry) : nullptr;
}

bool isEqual(CFStringRef entry, const char* text) {
    const CFObject<CFStringRef> other = newString(text);
    return other && CFStringCompare(entry, other.get(), 0) == kCFCompareEqualTo;
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

std::string languageOfPreference(CFPropertyListRef preference) {
    const CFStringRef entry = firstEntry(preference);
    if (entry == nullptr) return kLanguageEnglish;
    for (const PreferredLanguage& known : kPreferredLanguages) {
        if (isEqual(entry, known.entry)) return known.language;
    }
    return kLanguageEnglish;
}

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
