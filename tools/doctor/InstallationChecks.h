// Checks of what is installed.
#pragma once

#include <string>

#include "tools/doctor/CheckResult.h"

namespace dovrel::tools {

/// The folder that takes the place of "/", and whether the variable for it is right.
void checkRoot(CheckResults& results);

/// The library's bundle: whether it is there, can be loaded and used, and has the version of this tool.
void checkLibrary(CheckResults& results);

/// The texts file, and the language of the user.
void checkTexts(CheckResults& results);

/// Returns the version in the property list of the bundle at `path` (a path of the platform); "" if there is none.
std::string readBundleVersion(const std::string& path);

}  // namespace dovrel::tools
