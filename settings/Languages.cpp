#include "settings/Languages.h"

#include "platform/text/CFStrings.h"

namespace dovrel {

namespace {

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

CFStringRef firstEntry(CFPropertyListRef preference) {
    if (preference == nullptr || CFGetTypeID(preference) != CFArrayGetTypeID()) return nullptr;
    const auto entries = static_cast<CFArrayRef>(preference);
    if (CFArrayGetCount(entries) == 0) return nullptr;
    const CFTypeRef entry = CFArrayGetValueAtIndex(entries, 0);
    return CFGetTypeID(entry) == CFStringGetTypeID() ? static_cast<CFStringRef>(entry) : nullptr;
}

}  // namespace

std::string languageWithTexts(const std::string& language) {
    const bool hasNone =
        language == kLanguageSpanish || language == kLanguageItalian || language == kLanguageJapanese;
    return hasNone ? kLanguageEnglish : language;
}

std::string languageFromPreference(CFPropertyListRef preference) {
    const CFStringRef entry = firstEntry(preference);
    if (entry == nullptr) return kLanguageEnglish;
    for (const PreferredLanguage& known : kPreferredLanguages) {
        if (isEqual(entry, known.entry, 0)) return known.language;
    }
    return kLanguageEnglish;
}

}  // namespace dovrel
