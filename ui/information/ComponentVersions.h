// The versions of the installed components of the product.
//
// All texts are in UTF-8. A version that is not a string is formatted as "%@" does; one that cannot be found
// reads "n/a". What Foundation makes on the way is freed before a function returns. Any thread.
#pragma once

#include <string>

#include "ui/information/Component.h"

namespace dovrel {

/// Replaces a version that is not there.
inline constexpr char kMissingVersion[] = "n/a";

/// The version of the bundle that the process knows under `identifier`, wherever it lies; when it knows none,
/// of the one at `path` (absolute). "n/a" when there is no bundle or it does not tell its version.
std::string bundleVersionText(const std::string& identifier, const std::string& path);

// The same of one component each.
std::string serverVersionText();
std::string libraryVersionText();
std::string siblingVersionText();
std::string compatibilityVersionText();
std::string managementVersionText();

/// The version of the installer that put the bundle at `bundlePath` (absolute) there; "n/a" when its property
/// list is missing or damaged, or does not tell it.
std::string installerVersion(const std::string& bundlePath);

/// The management application's installer version, with a "*" behind it when the server application, this
/// library or its sibling comes from another one. Components that are not installed count as "n/a".
std::string componentsInstallerVersion();

}  // namespace dovrel
