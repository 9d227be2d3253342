#include "portability/corefoundation/Languages.h"

#include <CoreFoundation/CFPreferences.h>
#include <CoreFoundation/CFString.h>

#include <cstdlib>

#include "portability/corefoundation/Object.h"

namespace portability {
std::string localeLanguage() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || value[0] == '\0') {
            continue;
        }
        const std::string locale = value;
        const std::string language = locale.substr(0, locale.find_first_of("_.@"));
        return language == "C" || language == "POSIX" ? std::string() : language;
    }
    return std::string();
}

std::vector<std::string> userLanguages() {
    std::vector<std::string> languages;
    const CFPropertyListRef preference =
        CFPreferencesCopyValue(CFSTR("AppleLanguages"), kCFPreferencesAnyApplication,
                               kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    if (preference == nullptr) {
        return languages;
    }
    if (CFGetTypeID(preference) == CFArrayGetTypeID()) {
        const auto array = static_cast<CFArrayRef>(preference);
        for (CFIndex index = 0; index < CFArrayGetCount(array); ++index) {
            languages.push_back(toUtf8(CFArrayGetValueAtIndex(array, index)));
        }
    }
    CFRelease(preference);
    return languages;
}

}  // namespace portability
