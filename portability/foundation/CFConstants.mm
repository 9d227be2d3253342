// Core Foundation's constant strings.
#import <Foundation/Foundation.h>

#include <CoreFoundation/CoreFoundation.h>

const CFStringRef kCFPreferencesAnyApplication = (CFStringRef) @"kCFPreferencesAnyApplication";
const CFStringRef kCFPreferencesCurrentApplication = (CFStringRef) @"kCFPreferencesCurrentApplication";
const CFStringRef kCFPreferencesAnyHost = (CFStringRef) @"kCFPreferencesAnyHost";
const CFStringRef kCFPreferencesCurrentHost = (CFStringRef) @"kCFPreferencesCurrentHost";
const CFStringRef kCFPreferencesAnyUser = (CFStringRef) @"kCFPreferencesAnyUser";
const CFStringRef kCFPreferencesCurrentUser = (CFStringRef) @"kCFPreferencesCurrentUser";
const CFStringRef kCFBundleInfoDictionaryVersionKey = (CFStringRef) @"CFBundleInfoDictionaryVersion";
const CFStringRef kCFBundleExecutableKey = (CFStringRef) @"CFBundleExecutable";
const CFStringRef kCFBundleIdentifierKey = (CFStringRef) @"CFBundleIdentifier";
const CFStringRef kCFBundleVersionKey = (CFStringRef) @"CFBundleVersion";
const CFStringRef kCFBundleDevelopmentRegionKey = (CFStringRef) @"CFBundleDevelopmentRegion";
const CFStringRef kCFBundleNameKey = (CFStringRef) @"CFBundleName";
const CFStringRef kCFBundleLocalizationsKey = (CFStringRef) @"CFBundleLocalizations";
