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

/// The value of `key` in exactly this domain; the caller releases it. NULL without one. No argument may be
/// NULL.
CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef applicationID, CFStringRef userName,
                                         CFStringRef hostName);

CF_EXTERN_C_END
