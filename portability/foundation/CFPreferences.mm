#include "foundation/FoundationObject.h"

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFPreferences.h>
#include <CoreFoundation/CFString.h>

#include "foundation/HomeFolder.h"
#include "foundation/Languages.h"
#include "foundation/PropertyList.h"

using portability::objectOf;

namespace {

bool areEqual(CFStringRef first, CFStringRef second) {
    return [objectOf<NSString*>(first) isEqualToString:objectOf<NSString*>(second)];
}

// Foundation's defaults keep a domain per file. Reading the file starts none of their machinery.
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
    NSString* string = language.empty() ? nil : portability::newString(std::string_view(language));
    if (string == nil) {
        return nullptr;
    }
    NSArray* languages = [[NSArray alloc] initWithObjects:&string count:1];
    [string release];
    return (CFArrayRef)languages;
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
