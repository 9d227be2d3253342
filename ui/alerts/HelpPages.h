// Opens the help pages. They are in the resources of the main bundle, one folder per language. The library's
// bundle contains the original (resources/Helpsystem); an application that offers help contains a copy.
#pragma once

#include <CoreServices/CoreServices.h>

#include <string>

namespace dovrel {

/// Returns the name of the help folder for a language of MultiLanguageSupport. For a language without help
/// pages it returns the English folder.
const char* helpFolderName(const std::string& language);

/// Opens the start page in the user's language with the user's preferred application for such pages. Returns
/// the platform's status. Also returns 0 if there is no main bundle or if it has no help folder.
OSStatus openHelp();

}  // namespace dovrel
