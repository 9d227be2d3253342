#include "tools/texts/TextsCheck.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "platform/text/ReadableText.h"
#include "platform/text/TextConversions.h"
#include "settings/Languages.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel::tools {

namespace {

constexpr size_t kLongestSequence = 4;  // bytes of a character in UTF-8

using Problems = std::vector<LineProblem>;

bool isKnownKey(std::string_view key) {
    return std::find(std::begin(kAllTextKeys), std::end(kAllTextKeys), key) != std::end(kAllTextKeys);
}

bool isKnownLanguage(const std::string& name) {
    return std::find(std::begin(kAllLanguages), std::end(kAllLanguages), name) != std::end(kAllLanguages);
}

void checkLanguage(const LanguageTexts& language, std::set<std::string>& names, Problems& problems) {
    const std::string& name = language.name;
    if (name.empty()) {
        problems.push_back({language.line, "the entries from here on belong to no language"});
    } else if (!isKnownLanguage(name)) {
        problems.push_back({language.line, "the library does not know the language \"" + name + "\""});
    } else if (languageWithTexts(name) != name) {
        problems.push_back({language.line, "the texts in " + name +
                                               " are never used; the library shows those in " +
                                               languageWithTexts(name)});
    } else if (!names.insert(name).second) {
        problems.push_back({language.line, name + " occurs twice; the library uses the first section"});
    }
}

void findMissingLanguages(const std::set<std::string>& names, Problems& problems) {
    for (const char* language : kAllLanguages) {
        if (languageWithTexts(language) == language && names.count(language) == 0)
            problems.push_back({0, std::string("there are no texts in ") + language});
    }
}

void findMissingKeys(const LanguageTexts& language, Problems& problems) {
    for (const std::string_view key : kAllTextKeys) {
        const bool isThere = std::any_of(language.texts.begin(), language.texts.end(),
                                         [key](const TextEntry& entry) { return entry.key == key; });
        if (!isThere)
            problems.push_back({language.line, language.name + " has no text for " + std::string(key)});
    }
}

// Returns the length of the character of several bytes in UTF-8 at the beginning, or 0 if there is none.
size_t sequenceLength(std::string_view bytes) {
    if (static_cast<uint8_t>(bytes.front()) < 0x80) return 0;
    for (size_t length = 2; length <= kLongestSequence && length <= bytes.size(); ++length) {
        const std::string sequence(bytes.substr(0, length));
        if (readableText(sequence) == sequence) return length;
    }
    return 0;
}

void checkCharacters(const TextEntry& entry, Problems& problems) {
    const size_t line = entry.valueLine;
    std::string_view rest = entry.value;
    if (!rest.empty() && rest.back() == '\r') rest.remove_suffix(1);  // a problem of its own
    while (!rest.empty()) {
        const auto byte = static_cast<uint8_t>(rest.front());
        const size_t length = sequenceLength(rest);
        const std::string key(entry.key);
        if (length != 0) {
            const std::string sequence(rest.substr(0, length));
            problems.push_back({line, "the text of " + readableText(key) + " contains \"" + sequence +
                                          "\" in UTF-8 (" +
                                          bytesToHexText(sequence.data(), static_cast<uint32_t>(length)) +
                                          "); the file is in Mac Roman"});
        } else if (byte < ' ' || byte == 0x7F) {
            problems.push_back({line, "the text of " + readableText(key) +
                                          " contains the control character " + numberToText(byte, 16, 2)});
        }
        rest.remove_prefix(std::max<size_t>(length, 1));
    }
}

void checkText(const TextEntry& entry, Problems& problems) {
    const std::string key = readableText(std::string(entry.key));
    if (!isKnownKey(entry.key)) problems.push_back({entry.keyLine, "the library does not use " + key});
    if (entry.type != PropertyType::kString) {
        problems.push_back({entry.valueLine, "the value of " + key + " is not a string"});
        return;
    }
    if (entry.value.empty()) problems.push_back({entry.valueLine, "the text of " + key + " is empty"});
    checkCharacters(entry, problems);
}

}  // namespace

std::vector<LineProblem> checkTexts(const TextsFile& file) {
    Problems problems = listEntries(file.text(), kLanguageSectionKey, true).problems;
    std::set<std::string> names;
    for (const LanguageTexts& language : file.languages()) {
        checkLanguage(language, names, problems);
        if (!language.name.empty()) findMissingKeys(language, problems);
        for (const TextEntry& entry : language.texts)
            checkText(entry, problems);
    }
    findMissingLanguages(names, problems);
    std::stable_sort(problems.begin(), problems.end(),
                     [](const LineProblem& a, const LineProblem& b) { return a.line < b.line; });
    return problems;
}

}  // namespace dovrel::tools
