#include "tools/texts/TextsFile.h"

#include "platform/text/ReadableText.h"
#include "platform/text/TextConversions.h"
#include "settings/MultiLanguageSupport.h"
#include "tools/Subcommand.h"
#include "tools/properties/PropertiesFile.h"

namespace dovrel::tools {

TextsFile::TextsFile(const std::string& path) : TextsFile(Content{PropertiesFile(path).text()}) {}

TextsFile TextsFile::fromText(const std::string& text) {
    return TextsFile(Content{text});
}

TextsFile::TextsFile(Content content) : text_(std::move(content.text)) {
    for (const Section& section : splitSections(text_, kLanguageSectionKey)) {
        LanguageTexts language;
        language.line = section.entries.front().keyLine;
        for (const TextEntry& entry : section.entries) {
            if (entry.key == kLanguageSectionKey) {
                language.name = readableText(std::string(entry.value));
            } else {
                language.texts.push_back(entry);
            }
        }
        languages_.push_back(language);
    }
}

const LanguageTexts& TextsFile::find(const std::string& language) const {
    std::string names;
    for (const LanguageTexts& candidate : languages_) {
        if (candidate.name == language) return candidate;
        if (!candidate.name.empty()) names += (names.empty() ? "" : ", ") + candidate.name;
    }
    throw ToolFailure("there are no texts in " + language +
                      (names.empty() ? ", nor in any other language" : "; the languages are " + names));
}

std::string TextsFile::shownText(const TextEntry& entry, bool asStored) {
    const std::string stored(entry.value);
    if (asStored) return readableText(stored);
    return withLineFeedsOnly(readableText(MultiLanguageSupport::toDisplayText(stored)));
}

}  // namespace dovrel::tools
