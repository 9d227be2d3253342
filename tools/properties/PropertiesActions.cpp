#include "tools/properties/PropertiesActions.h"

#include <iostream>

#include "settings/EncipheredText.h"
#include "tools/Subcommand.h"
#include "tools/WholeFile.h"
#include "tools/properties/EntryText.h"
#include "tools/properties/LineProblems.h"
#include "tools/properties/PropertiesEditor.h"
#include "tools/properties/PropertiesFile.h"
#include "tools/properties/PropertiesJson.h"
#include "tools/properties/StoredEntry.h"

namespace dovrel::tools {

namespace {

SectionChoice chosenSection(const PropertiesOptions& options) {
    return options.section.empty() ? SectionChoice() : SectionChoice::parse(options.section);
}

const TextEntry* findEntry(const Section& section, const std::string& key) {
    for (const TextEntry& entry : section.entries)
        if (entry.key == key) return &entry;
    return nullptr;
}

// Returns the type that an option selects, or that of the entry, or the type of a string.
PropertyType selectedType(const PropertiesOptions& options, const std::string& text) {
    if (options.isInteger) return PropertyType::kInteger;
    if (options.isString) return PropertyType::kString;
    if (options.isBytes) return PropertyType::kBinary;
    const Section section = findSection(text, chosenSection(options));
    const TextEntry* const entry = findEntry(section, options.key);
    return entry != nullptr ? entry->type : PropertyType::kString;
}

bool isJsonText(const std::string& text) {
    const size_t start = text.find_first_not_of(" \t\r\n");
    return start != std::string::npos && (text[start] == '{' || text[start] == '[');
}

// Returns the text for JSON. Each object of an array must become a section again.
std::string convertFromJson(const std::string& input, const std::string& sectionKey) {
    const auto json = nlohmann::ordered_json::parse(input, nullptr, false);
    if (json.is_discarded()) throw ToolFailure("the input begins like JSON, but is not JSON");
    const std::string text = propertiesFromJson(json);
    if (!json.is_array()) return text;
    if (sectionKey.empty()) rejectArguments("--section-key is needed, because the input has sections");
    for (const auto& object : json) {
        if (object.empty() || object.begin().key() != sectionKey)
            throw ToolFailure("not every object of the array begins with the key \"" + sectionKey + "\"");
    }
    return text;
}

std::string outputPath(const PropertiesOptions& options) {
    return options.isInPlace ? options.file : options.output;
}

}  // namespace

void showProperties(const PropertiesOptions& options) {
    const PropertiesFile file(options.file);
    if (options.isJson) {
        std::cout << propertiesToJson(file.text(), options.sectionKey).dump(2) << "\n";
        return;
    }
    const char* separator = "";
    for (const Section& section : splitSections(file.text(), options.sectionKey)) {
        std::cout << separator;
        for (const TextEntry& entry : section.entries)
            std::cout << entryText(entry) << "\n";
        separator = "\n";
    }
}

void getProperty(const PropertiesOptions& options) {
    const PropertiesFile file(options.file);
    const Section section = findSection(file.text(), chosenSection(options));
    const TextEntry* const entry = findEntry(section, options.key);
    if (entry == nullptr) throw ToolFailure(options.file + " has no entry \"" + options.key + "\"");
    std::cout << (options.isJson ? valueToJson(*entry).dump() : bareValue(*entry)) << "\n";
}

void setProperty(const PropertiesOptions& options) {
    PropertiesFile file = PropertiesFile::openOrCreate(options.file);
    PropertiesEditor editor(file.text(), chosenSection(options));
    switch (selectedType(options, file.text())) {
        case PropertyType::kInteger:
            editor.set(options.key, PropertyValue::ofInt(parseInteger(options.key, options.value)));
            break;
        case PropertyType::kBinary: {
            const std::string bytes = parseBytes(options.key, options.value);
            editor.set(options.key, PropertyValue::ofBinary(bytes.data(), bytes.size()));
            break;
        }
        case PropertyType::kString:
        case PropertyType::kUnknown:
            editor.set(options.key, PropertyValue::ofString(options.value));
            break;
    }
    file.replaceText(editor.text());
}

void removeProperties(const PropertiesOptions& options) {
    PropertiesFile file(options.file);
    PropertiesEditor editor(file.text(), chosenSection(options));
    for (const std::string& key : options.keys)
        if (!editor.remove(key)) throw ToolFailure(options.file + " has no entry \"" + key + "\"");
    file.replaceText(editor.text());
}

void checkProperties(const PropertiesOptions& options) {
    std::vector<FileProblem> problems;
    for (const std::string& path : options.files) {
        const PropertiesFile file(path);
        for (const LineProblem& problem :
             listEntries(file.text(), options.sectionKey, options.allowsComments).problems)
            problems.push_back({path, problem});
    }
    printProblems(problems, options.isJson);
    if (!problems.empty()) exitFailed();
}

void convertProperties(const PropertiesOptions& options) {
    const PropertiesFile file(options.file);
    const std::string& text = file.text();
    writeOutput(options.output, isJsonText(text) ? convertFromJson(text, options.sectionKey)
                                                 : propertiesToJson(text, options.sectionKey).dump(2) + "\n");
}

void encipherFile(const PropertiesOptions& options) {
    const std::string content = readInput(options.file);
    if (isEnciphered(content)) throw ToolFailure(options.file + " is enciphered already");
    writeOutput(outputPath(options), encipher(content));
}

void decipherFile(const PropertiesOptions& options) {
    const PropertiesFile file(options.file);
    if (!file.isEnciphered()) throw ToolFailure(options.file + " is not enciphered");
    writeOutput(outputPath(options), file.text());
}

}  // namespace dovrel::tools
