// The library's version as the error log tells it.
#pragma once

#include <string>

namespace dovrel {

/// "Dovrel Version " and the version of this library as the system report tells it, with `bundlePath`
/// (absolute, UTF-8) as the place where its bundle is installed.
std::string versionBanner(const std::string& bundlePath);

}  // namespace dovrel
