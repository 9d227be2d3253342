// MultiLanguageSupport: all texts for the user, in the user's language. One file in the resources of the
// installed bundle contains the texts of all languages. One language is selected at the start, and its texts
// stay in memory as long as the process.
#pragma once

#include <string>

#include "settings/Languages.h"

namespace dovrel {

/// The key of the entry in which each section of the texts file names its language (Languages.h).
inline constexpr const char* kLanguageSectionKey = "LANGUAGE";

/// The state belongs to the process and is never destroyed, so exit handlers can still use it. Every member
/// may be called from any thread.
class MultiLanguageSupport {
  public:
    MultiLanguageSupport() = delete;

    /// Returns the name of the language that the user prefers. It is the language of the first entry of the
    /// system preference "AppleLanguages" if the library knows that language, otherwise kLanguageEnglish.
    static std::string detectLanguage();

    /// Replaces the loaded texts by those of `language`, or of detectLanguage() if it is empty. Spanish,
    /// Italian and Japanese have no texts and use the English texts.
    ///
    /// - If the file is missing, unreadable or without sections, no texts are loaded and
    ///   isLoaded() returns false.
    /// - If the file has no section for the language, no texts are loaded but isLoaded() returns true.
    /// - Throws a CPPException if the file's path cannot be built. The loaded texts then stay.
    static void initialize(const std::string& language);

    /// Returns the text of `key` in the encoding of the texts file (Mac Roman). Its first "_" is removed, and
    /// each "SDNL" becomes a carriage return. Returns "" if `key` is null, if there is no such text, and
    /// before initialize(). Does not throw exceptions of the library.
    static std::string getText(const char* key);

    /// Returns a text of the texts file as getText returns it.
    static std::string toDisplayText(std::string stored);

    /// Returns whether the last initialize() found a section in the file; false before the first call.
    static bool isLoaded();

    /// Returns the path of the texts file in the resources of the library's bundle, for `fopen` and other C
    /// library functions. `installFolder` is UTF-8 with a slash at its end. Does not check whether the file
    /// exists. Throws a CPPException if the path cannot be built.
    static std::string textsFilePath(const std::string& installFolder);
};

}  // namespace dovrel
