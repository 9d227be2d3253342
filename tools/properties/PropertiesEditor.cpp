#include "tools/properties/PropertiesEditor.h"

#include <algorithm>
#include <utility>

#include "settings/ConfigFileSystem.h"
#include "settings/Properties.h"
#include "tools/Subcommand.h"
#include "tools/properties/StoredEntry.h"

namespace dovrel::tools {

namespace {

// Returns the sections as the library reads them.
std::vector<Properties> readSections(const std::string& text, const std::string& sectionKey) {
    if (!sectionKey.empty()) return ConfigFileSystem::readSections(text, sectionKey);
    std::string copy = text;
    std::vector<Properties> whole(1);
    whole.front().load(copy, true);
    return whole;
}

std::string saveAll(const std::vector<Properties>& sections) {
    std::string text;
    for (const Properties& section : sections) {
        section.save(text);
        text += '\n';
    }
    return text;
}

void change(Properties& store, const std::string& key, const PropertyValue* value) {
    store.remove(key);
    if (value == nullptr) return;
    const std::string text = Properties::toText(*value);
    const ValueLine line = parseValueLine(text).value_or(ValueLine{PropertyType::kUnknown, {}});
    store.addParsed(key, line.type, line.value);
}

// Returns the end of the value without the blank lines after it, which also belong to a value of bytes.
size_t endWithoutBlankLines(const std::string& text, const TextEntry& entry) {
    const size_t last = text.find_last_not_of(" \t\r\n", entry.valueEnd - 1);
    return std::min(text.find(kLineFeed, last), entry.valueEnd - 1) + 1;
}

}  // namespace

PropertiesEditor::PropertiesEditor(std::string text, SectionChoice section)
    : text_(std::move(text)), choice_(std::move(section)) {}

void PropertiesEditor::set(const std::string& key, const PropertyValue& value) {
    const std::string entryText = makeEntryText(key, value);
    const Section section = findSection(text_, choice_);
    std::string changed = text_;
    for (const TextEntry& entry : section.entries) {
        if (entry.key != key) continue;
        const size_t end = endWithoutBlankLines(text_, entry);
        changed.replace(entry.valueBegin, end - entry.valueBegin,
                        entryText.substr(entryText.find(kLineFeed) + 1));
        return replaceChecked(changed, key, &value);
    }
    const size_t place =
        section.entries.empty() ? section.end : endWithoutBlankLines(text_, section.entries.back());
    const bool isInLine = place != 0 && text_[place - 1] != kLineFeed;
    changed.insert(place, isInLine ? kLineFeed + entryText : entryText);
    replaceChecked(changed, key, &value);
}

bool PropertiesEditor::remove(const std::string& key) {
    if (!key.empty() && key == choice_.key)
        throw ToolFailure("the entry \"" + key + "\" begins the section, so it cannot be removed");
    const Section section = findSection(text_, choice_);
    std::vector<TextEntry> entries = listEntries(text_, choice_.key, true).entries;
    std::string changed = text_;
    bool isFound = false;
    // From the end, so that the offsets before stay valid.
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        const bool isInside = entry->keyBegin >= section.begin && entry->keyBegin < section.end;
        if (!isInside || entry->key != key) continue;
        isFound = true;
        changed.erase(entry->valueBegin, endWithoutBlankLines(text_, *entry) - entry->valueBegin);
        changed.erase(entry->keyBegin, entry->keyEnd - entry->keyBegin);
    }
    if (isFound) replaceChecked(changed, key, nullptr);
    return isFound;
}

// The library reads the old and the new text. The only difference must be the entry.
void PropertiesEditor::replaceChecked(const std::string& newText, const std::string& key,
                                      const PropertyValue* value) {
    std::vector<Properties> expected = readSections(text_, choice_.key);
    const size_t index = findSection(text_, choice_).index;
    if (index < expected.size()) change(expected[index], key, value);
    if (saveAll(readSections(newText, choice_.key)) != saveAll(expected))
        throw ToolFailure("the entry \"" + key +
                          "\" cannot be changed without changing what readers find elsewhere");
    text_ = newText;
}

}  // namespace dovrel::tools
