// TextsFile: the texts for the user in all languages of a texts file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/properties/Section.h"

namespace dovrel::tools {

/// The texts in one language. The views refer to the text of the file.
struct LanguageTexts {
    std::string name;  ///< as the file spells it; "" for entries that belong to no language
    std::vector<TextEntry> texts;
    size_t line = 0;  ///< where the section begins, counted from 1
};

class TextsFile {
  public:
    /// Reads the file. Throws a ToolFailure if it cannot be read or deciphered.
    explicit TextsFile(const std::string& path);

    /// Uses this content of a file.
    static TextsFile fromText(const std::string& text);

    TextsFile(const TextsFile&) = delete;
    TextsFile& operator=(const TextsFile&) = delete;

    const std::string& text() const { return text_; }
    const std::vector<LanguageTexts>& languages() const { return languages_; }

    /// Returns the first section of the language, which readers use. Throws a ToolFailure that names all languages of
    /// the file if there is none.
    const LanguageTexts& find(const std::string& language) const;

    /// Returns the text in UTF-8 as the user sees it: with line feeds for line breaks, and without the mark of the
    /// mnemonic. With `asStored`, the marks of the file stay.
    static std::string shownText(const TextEntry& entry, bool asStored);

  private:
    struct Content {
        std::string text;
    };
    explicit TextsFile(Content content);

    const std::string text_;
    std::vector<LanguageTexts> languages_;
};

}  // namespace dovrel::tools
