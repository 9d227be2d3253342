#include "ui/information/Component.h"

#include <CoreFoundation/CoreFoundation.h>

#include "platform/files/Places.h"
#include "platform/text/CFStrings.h"

namespace dovrel {

namespace {

constexpr char kServerIdentifier[] = "com.Tessilor.POS";
constexpr char kLibraryIdentifier[] = "com.Tessilor.POSAccess-DLL";
constexpr char kSiblingIdentifier[] = "com.Tessilor.Pell-DLL";
constexpr char kCompatibilityIdentifier[] = "com.Tessilor.Compatibility-DLL";
constexpr char kManagementIdentifier[] = "com.Quernvale.Halcon";

std::string inInstallFolder(const char* name) {
    return std::string(places::kInstallFolder) + name;
}

}  // namespace

Component serverComponent() {
    return {"Server application", kServerIdentifier, inInstallFolder(places::kServerBundleName)};
}

Component libraryComponent() {
    return {"Client library", kLibraryIdentifier, inInstallFolder(places::kLibraryBundleName)};
}

Component siblingComponent() {
    return {"Sibling bundle", kSiblingIdentifier, inInstallFolder(places::kSiblingBundleName)};
}

Component compatibilityComponent() {
    return {"Compatibility bundle", kCompatibilityIdentifier, places::kCompatibilityBundle};
}

Component managementComponent() {
    return {"Management application", kManagementIdentifier, places::kManagementApplication};
}

std::string libraryIdentifier() {
    return kLibraryIdentifier;
}

std::string siblingIdentifier() {
    return kSiblingIdentifier;
}

std::string compatibilityIdentifier() {
    return kCompatibilityIdentifier;
}

bool isManagementApplication() {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    const CFStringRef identifier = bundle != nullptr ? CFBundleGetIdentifier(bundle) : nullptr;
    return identifier != nullptr && isEqual(identifier, kManagementIdentifier, kCFCompareCaseInsensitive);
}

}  // namespace dovrel
