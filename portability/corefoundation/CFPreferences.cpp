#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFPreferences.h>
#include <CoreFoundation/CFString.h>

#include "portability/corefoundation/Languages.h"
#include "portability/corefoundation/Object.h"
#include "portability/corefoundation/PropertyList.h"
#include "portability/posix/HomeFolder.h"

namespace {

bool areEqual(CFStringRef first, CFStringRef second) {
    return CFStringCompare(first, second, 0) == kCFCompareEqualTo;
}

// Reads the value from the file in which GNUstep's tools store the user's defaults of the global domain.
CFPropertyListRef copyGlobalDefault(CFStringRef key) {
    const std::string home = portability::homeFolder();
    const CFDictionaryRef defaults =
        portability::copyDictionary(home + "/GNUstep/Defaults/NSGlobalDomain.plist");
    if (defaults == nullptr) {
        return nullptr;
    }
    const CFPropertyListRef value = CFDictionaryGetValue(defaults, key);
    if (value != nullptr) {
        CFRetain(value);
    }
    CFRelease(defaults);
    return value;
}

CFArrayRef copyLocaleLanguages() {
    const std::string language = portability::localeLanguage();
    portability::ObjectHolder string = portability::newString(language);
    if (language.empty() || !string) {
        return nullptr;
    }
    __CFArray::Values languages;
    languages.push_back(std::move(string));
    return new __CFArray(std::move(languages));
}

}  // namespace

CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef applicationID, CFStringRef userName,
                                         CFStringRef hostName) {
    const bool isGlobalDomain = areEqual(applicationID, kCFPreferencesAnyApplication) &&
                                areEqual(userName, kCFPreferencesCurrentUser) &&
                                areEqual(hostName, kCFPreferencesAnyHost);
    if (!isGlobalDomain) {
        return nullptr;
    }
    const CFPropertyListRef value = copyGlobalDefault(key);
    if (value == nullptr && areEqual(key, CFSTR("AppleLanguages"))) {
        return copyLocaleLanguages();
    }
    return value;
}
