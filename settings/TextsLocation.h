// Finds the file with the texts for the user on this machine.
#pragma once

#include <string>

namespace dovrel {

inline constexpr const char* kTextsFileName = "MultiLanguageTexts.mls";

/// Returns the path of the texts file in the resources of the library's bundle, for `fopen` and other C
/// library functions. `installFolder` is UTF-8 with a slash at its end. Does not check whether the file
/// exists. Throws a CPPException if the path cannot be built. Any thread.
std::string textsFilePath(const std::string& installFolder);

}  // namespace dovrel
