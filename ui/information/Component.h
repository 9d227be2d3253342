// The bundles of the product that can be installed on this machine: their names, identifiers and paths.
#pragma once

#include <string>

namespace dovrel {

struct Component {
    std::string name;        ///< the name that the system report shows
    std::string identifier;  ///< identifier of the bundle
    std::string path;        ///< path of the bundle, as in platform/files/Places.h
};

Component serverComponent();
Component libraryComponent();
Component siblingComponent();
Component compatibilityComponent();
Component managementComponent();

/// Return the identifiers of this library's bundle, of its sibling bundle, and of the compatibility bundle.
std::string libraryIdentifier();
std::string siblingIdentifier();
std::string compatibilityIdentifier();

/// Returns whether this process is the management application. Compares the identifier of the
/// main bundle, ignoring case. Only in this application alerts have a Help button.
bool isManagementApplication();

}  // namespace dovrel
