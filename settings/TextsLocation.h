// Where the user's language and the texts in it are found on this machine: the two questions that the texts
// put to the platform.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

namespace dovrel {

/// The name of the language (MultiLanguageSupport.h) for a value of the preference "AppleLanguages": its
/// first entry decides, "de" and "German" for German and so on, case counts. English for null, for anything
/// but an array, for an empty array, and for an entry that is not known.
std::string languageOfPreference(CFPropertyListRef preference);

/// The path of the texts file in the resources of the library's bundle in `installFolder` (UTF-8, with the
/// slash at its end), as the language's file calls take it. Whether the file exists is not asked. Throws a
/// CPPException when the path cannot be built.
std::string textsFilePath(const std::string& installFolder);

}  // namespace dovrel
