// The languages that the library knows, by the names that the texts file has for them.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

namespace dovrel {

inline constexpr const char* kLanguageGerman = "German";
inline constexpr const char* kLanguageFrench = "Francais";
inline constexpr const char* kLanguageSpanish = "Spanish";
inline constexpr const char* kLanguageItalian = "Italian";
inline constexpr const char* kLanguageJapanese = "Japanese";
inline constexpr const char* kLanguageEnglish = "English";

/// Returns the name of the language for a value of the preference "AppleLanguages". The first entry decides:
/// "de" and "German" mean German and so on; case counts. Returns English for null, for anything but an array,
/// for an empty array, and for an entry that is not known. Any thread.
std::string languageOfPreference(CFPropertyListRef preference);

}  // namespace dovrel
