// The help pages, which lie in the resources of the main bundle, one folder per language. They ship in the
// library's bundle (resources/Helpsystem); an application that is to have help carries a copy.
#pragma once

#include <CoreServices/CoreServices.h>

#include <string>

namespace dovrel {

/// The name of the help folder for a language of MultiLanguageSupport; languages without help get the English
/// one.
const char* helpFolderName(const std::string& language);

/// Opens the start page in the user's language with the application that the user prefers for pages. Returns
/// the platform's status; 0, too, when there is no main bundle or it has no help folder.
OSStatus openHelp();

}  // namespace dovrel
