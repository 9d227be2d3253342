// Reads the versions of the installed components of the product.
//
// All texts are in UTF-8. A version that is not a string is formatted as Foundation's "%@" does. A
// version that cannot be found is "n/a". All temporary objects of Foundation are released before a
// function returns. Any thread.
#pragma once

#include <string>

#include "ui/information/Component.h"

namespace dovrel {

/// The text for a version that cannot be found.
inline constexpr char kMissingVersion[] = "n/a";

/// Returns the version of the bundle with this identifier that the process uses or has loaded, wherever its
/// files are. If there is no such bundle, returns the version of the bundle at `path` (absolute). Returns
/// "n/a" if there is no bundle, or if it has no version.
std::string bundleVersionText(const std::string& identifier, const std::string& path);

// Each returns the version of one component.
std::string serverVersionText();
std::string libraryVersionText();
std::string siblingVersionText();
std::string compatibilityVersionText();
std::string managementVersionText();

/// Returns the version of the installer that installed the bundle at `bundlePath` (absolute). Returns "n/a"
/// if the bundle's property list is missing, is damaged or has no installer version.
std::string installerVersion(const std::string& bundlePath);

/// Returns the version of the installer that installed the management application. A "*" is appended if
/// another version installed the server application, this library or its sibling. A component that is not
/// installed counts as "n/a".
std::string componentsInstallerVersion();

}  // namespace dovrel
