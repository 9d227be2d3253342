// The user's preferences.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

extern const CFStringRef kCFPreferencesAnyApplication;
extern const CFStringRef kCFPreferencesCurrentApplication;
extern const CFStringRef kCFPreferencesAnyHost;
extern const CFStringRef kCFPreferencesCurrentHost;
extern const CFStringRef kCFPreferencesAnyUser;
extern const CFStringRef kCFPreferencesCurrentUser;

/// Returns the value of `key` in exactly this domain, or NULL if there is none. The caller releases it. No
/// argument may be NULL.
CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef applicationID, CFStringRef userName,
                                         CFStringRef hostName);

CF_EXTERN_C_END
