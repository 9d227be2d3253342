// Launch Services: launching applications, and opening documents.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreServices/AEDataModel.h>

typedef OptionBits LSLaunchFlags;
enum {
    kLSLaunchDefaults = 0x00000001,
    kLSLaunchAndPrint = 0x00000002,
    kLSLaunchAndDisplayErrors = 0x00000040,
    kLSLaunchInhibitBGOnly = 0x00000080,
    kLSLaunchDontAddToRecents = 0x00000100,
    kLSLaunchDontSwitch = 0x00000200,
    kLSLaunchNoParams = 0x00000800,
    kLSLaunchAsync = 0x00010000,
    kLSLaunchStartClassic = 0x00020000,
    kLSLaunchInClassic = 0x00040000,
    kLSLaunchNewInstance = 0x00080000,
    kLSLaunchAndHide = 0x00100000,
    kLSLaunchAndHideOthers = 0x00200000,
    kLSLaunchHasUntrustedContents = 0x00400000
};

#pragma pack(push, 2)
/// The items to open and the application for them. Every pointer except the first may be NULL.
typedef struct LSLaunchURLSpec {
    CFURLRef appURL;
    CFArrayRef itemURLs;
    const AEDesc* passThruParams;
    LSLaunchFlags launchFlags;
    void* asyncRefCon;
} LSLaunchURLSpec;
#pragma pack(pop)

CF_EXTERN_C_BEGIN

/// Launches the application `appURL` unless it is already running, which also counts as success.
/// `outLaunchedURL` may be NULL; otherwise it is set to the application's URL, which the caller
/// releases. Thread-safe.
OSStatus LSOpenFromURLSpec(const LSLaunchURLSpec* inLaunchSpec, CFURLRef* outLaunchedURL);

/// Opens a document or web page with the application that the user prefers for it, or launches an
/// application. `outLaunchedURL` is as for LSOpenFromURLSpec. Thread-safe.
OSStatus LSOpenCFURLRef(CFURLRef inURL, CFURLRef* outLaunchedURL);

CF_EXTERN_C_END

#if defined(__cplusplus)
static_assert(sizeof(LSLaunchURLSpec) == (sizeof(void*) == 8 ? 36 : 20), "packed");
static_assert(alignof(LSLaunchURLSpec) == 2, "packed");
static_assert(offsetof(LSLaunchURLSpec, launchFlags) == 3 * sizeof(void*), "packed");
static_assert(offsetof(LSLaunchURLSpec, asyncRefCon) == 3 * sizeof(void*) + 4, "packed");
#endif
