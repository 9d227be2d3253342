// The installed components of the product: what they are called, under which identifier they are known, and
// where they lie.
#pragma once

#include <string>

namespace dovrel {

struct Component {
    std::string name;        ///< for readers of a report
    std::string identifier;  ///< of the bundle
    std::string path;        ///< of the bundle, one of the platform's
};

Component serverComponent();
Component libraryComponent();
Component siblingComponent();
Component compatibilityComponent();
Component managementComponent();

/// The identifier of this library's bundle, of its sibling's, and of the compatibility bundle.
std::string libraryIdentifier();
std::string siblingIdentifier();
std::string compatibilityIdentifier();

}  // namespace dovrel
