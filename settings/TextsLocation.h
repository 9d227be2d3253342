// Where the file with the texts is on this machine.
#pragma once

#include <string>

namespace dovrel {

inline constexpr const char* kTextsFileName = "MultiLanguageTexts.mls";

/// Returns the path of the texts file in the resources of the library's bundle in `installFolder` (UTF-8, with
/// the slash at its end), in the form that the language's file functions take. Does not ask whether the file
/// exists. Throws a CPPException if the path cannot be built. Any thread.
std::string textsFilePath(const std::string& installFolder);

}  // namespace dovrel
