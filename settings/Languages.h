// The names of the languages that the library knows, as the texts file spells them.
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

/// All of these names.
inline constexpr const char* kAllLanguages[] = {kLanguageGerman,  kLanguageFrench,   kLanguageSpanish,
                                                kLanguageItalian, kLanguageJapanese, kLanguageEnglish};

/// Returns the language whose texts are shown to a user of this language: English for Spanish, Italian and
/// Japanese, which have no texts, otherwise the language itself.
std::string languageWithTexts(const std::string& language);

/// Returns the name of the language for a value of the preference "AppleLanguages". The array's first entry
/// decides: "de" and "German" mean German, and so on; upper and lower case differ. Returns English for null,
/// for a value that is not an array, for an empty array, and for an unknown entry. Any thread.
std::string languageFromPreference(CFPropertyListRef preference);

}  // namespace dovrel
