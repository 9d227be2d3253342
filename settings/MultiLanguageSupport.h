// Every text that the user gets to see, in the user's language. The texts of all languages stand in one file
// in the resources of the installed bundle; one language is chosen at the start and its texts stay in memory
// for the process.
#pragma once

#include <string>

#include "settings/Languages.h"

namespace dovrel {

/// The key under which each section of the texts file names its language (Languages.h).
inline constexpr const char* kLanguageSectionKey = "LANGUAGE";

/// All state is the process's own and lives as long as the process, its exit handlers included. Every member
/// may be called from any thread.
class MultiLanguageSupport {
  public:
    MultiLanguageSupport() = delete;

    /// The name of the language that the user prefers: that of the first entry of the system preference
    /// "AppleLanguages" where it is one that the library knows, kLanguageEnglish otherwise.
    static std::string detectLanguage();

    /// Loads the texts of `language`, or of detectLanguage() when it is empty, in place of those that were
    /// loaded before. Spanish, Italian and Japanese have no texts of their own and give the English ones. A
    /// file that is missing, unreadable or without any section leaves isLoaded() false and no texts; a file
    /// without a section for the language leaves isLoaded() true and no texts. Throws a CPPException when the
    /// file's location cannot be built; what was loaded before then stays.
    static void initialize(const std::string& language);

    /// The text of `key` in the encoding of the texts file (Mac Roman): its first "_" is dropped, each "SDNL"
    /// is a carriage return. Empty when `key` is null, when there is no such text, and before initialize().
    /// Throws nothing of its own.
    static std::string getText(const char* key);

    /// Whether the last initialize() found texts; false before the first one.
    static bool isLoaded();
};

}  // namespace dovrel
