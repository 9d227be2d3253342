// The imports from the frameworks. The portability layer's headers describe each function on both systems.
#import <AppKit/AppKit.h>
#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/Carbon.h>
#include <CoreServices/CoreServices.h>

#include "macho/imports/ReviewedLibraries.h"

namespace dovrel::macho {

namespace {

constexpr char kCoreFoundation[] =
    "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation";
constexpr char kCoreServices[] = "/System/Library/Frameworks/CoreServices.framework/Versions/A/CoreServices";
constexpr char kApplicationServices[] =
    "/System/Library/Frameworks/ApplicationServices.framework/Versions/A/ApplicationServices";
constexpr char kCarbon[] = "/System/Library/Frameworks/Carbon.framework/Versions/A/Carbon";
constexpr char kFoundation[] = "/System/Library/Frameworks/Foundation.framework/Versions/C/Foundation";
constexpr char kAppKit[] = "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit";

// Adds a function or a variable with its C name.
#define ENTER(library, name) table.add(library, "_" #name, (void*)&name)

void addCoreFoundation(ImportTable& table) {
    ENTER(kCoreFoundation, CFArrayGetCount);
    ENTER(kCoreFoundation, CFArrayGetTypeID);
    ENTER(kCoreFoundation, CFArrayGetValueAtIndex);
    ENTER(kCoreFoundation, CFBundleCopyResourceURL);
    ENTER(kCoreFoundation, CFBundleCreate);
    ENTER(kCoreFoundation, CFBundleGetBundleWithIdentifier);
    ENTER(kCoreFoundation, CFBundleGetIdentifier);
    ENTER(kCoreFoundation, CFBundleGetMainBundle);
    ENTER(kCoreFoundation, CFBundleGetValueForInfoDictionaryKey);
    ENTER(kCoreFoundation, CFDataCreate);
    ENTER(kCoreFoundation, CFDataGetBytePtr);
    ENTER(kCoreFoundation, CFDataGetLength);
    ENTER(kCoreFoundation, CFDictionaryGetTypeID);
    ENTER(kCoreFoundation, CFDictionaryGetValue);
    ENTER(kCoreFoundation, CFGetTypeID);
    ENTER(kCoreFoundation, CFPreferencesCopyValue);
    ENTER(kCoreFoundation, CFPropertyListCreateData);
    ENTER(kCoreFoundation, CFPropertyListCreateWithData);
    ENTER(kCoreFoundation, CFRelease);
    ENTER(kCoreFoundation, CFRetain);
    ENTER(kCoreFoundation, CFStringCompare);
    ENTER(kCoreFoundation, CFStringCreateWithCString);
    ENTER(kCoreFoundation, CFStringGetCharacters);
    ENTER(kCoreFoundation, CFStringGetCString);
    ENTER(kCoreFoundation, CFStringGetLength);
    ENTER(kCoreFoundation, CFStringGetMaximumSizeForEncoding);
    ENTER(kCoreFoundation, CFStringGetMostCompatibleMacStringEncoding);
    ENTER(kCoreFoundation, CFStringGetSystemEncoding);
    ENTER(kCoreFoundation, CFStringGetTypeID);
    ENTER(kCoreFoundation, CFURLCreateCopyAppendingPathComponent);
    ENTER(kCoreFoundation, CFURLCreateFromFSRef);
    ENTER(kCoreFoundation, CFURLCreateWithFileSystemPath);
    ENTER(kCoreFoundation, CFURLGetFileSystemRepresentation);
    ENTER(kCoreFoundation, CFURLGetFSRef);
    ENTER(kCoreFoundation, kCFAllocatorDefault);
    ENTER(kCoreFoundation, kCFBundleVersionKey);
    ENTER(kCoreFoundation, kCFPreferencesAnyApplication);
    ENTER(kCoreFoundation, kCFPreferencesAnyHost);
    ENTER(kCoreFoundation, kCFPreferencesCurrentUser);
    ENTER(kCoreFoundation, __CFStringMakeConstantString);
    // The class of constant strings. The strings get this system's class after the image is linked.
    static char constantStringClass[64];
    table.add(kCoreFoundation, "___CFConstantStringClassReference", constantStringClass);
}

void addCoreServices(ImportTable& table) {
    ENTER(kCoreServices, AECreateAppleEvent);
    ENTER(kCoreServices, AECreateDesc);
    ENTER(kCoreServices, AEDisposeDesc);
    ENTER(kCoreServices, AEGetParamPtr);
    ENTER(kCoreServices, AEPutParamPtr);
    ENTER(kCoreServices, AESendMessage);
    ENTER(kCoreServices, FSCreateDirectoryUnicode);
    ENTER(kCoreServices, FSDeleteObject);
    ENTER(kCoreServices, FSFindFolder);
    ENTER(kCoreServices, FSGetCatalogInfo);
    ENTER(kCoreServices, FSSetCatalogInfo);
    ENTER(kCoreServices, LSOpenCFURLRef);
    ENTER(kCoreServices, LSOpenFromURLSpec);
    ENTER(kCoreServices, Microseconds);
    ENTER(kCoreServices, MPCreateCriticalRegion);
    ENTER(kCoreServices, MPCreateEvent);
    ENTER(kCoreServices, MPCreateSemaphore);
    ENTER(kCoreServices, MPCreateTask);
    ENTER(kCoreServices, MPDeleteCriticalRegion);
    ENTER(kCoreServices, MPDeleteEvent);
    ENTER(kCoreServices, MPDeleteSemaphore);
    ENTER(kCoreServices, MPEnterCriticalRegion);
    ENTER(kCoreServices, MPExitCriticalRegion);
    ENTER(kCoreServices, MPRemoteCall);
    ENTER(kCoreServices, MPSignalSemaphore);
    ENTER(kCoreServices, MPTaskIsPreemptive);
    ENTER(kCoreServices, MPWaitForEvent);
    ENTER(kCoreServices, MPWaitOnSemaphore);
    ENTER(kCoreServices, _MPIsFullyInitialized);
}

void addApplicationLayer(ImportTable& table) {
    ENTER(kApplicationServices, GetCurrentProcess);
    ENTER(kApplicationServices, GetProcessPID);
    ENTER(kCarbon, AESend);
    ENTER(kFoundation, NSLog);
    ENTER(kAppKit, NSApplicationLoad);
}

#undef ENTER

}  // namespace

void addFrameworks(ImportTable& table) {
    addCoreFoundation(table);
    addCoreServices(table);
    addApplicationLayer(table);
}

}  // namespace dovrel::macho
