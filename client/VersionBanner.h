// The library's version as the error log tells it.
#pragma once

#include <string>

namespace dovrel {

/// "Dovrel Version " and the version of the bundle at the path (absolute, UTF-8); "n/a" stands in for the
/// version where there is no bundle or it does not tell one.
std::string versionBanner(const std::string& bundlePath);

}  // namespace dovrel
