#include "settings/ConfigFileSystem.h"

#include <cstdio>
#include <exception>
#include <optional>

#include "client/exceptions/CPPException.h"
#include "platform/files/FileUtilities.h"
#include "settings/EncipheredText.h"
#include "settings/EntryReader.h"
#include "settings/LineGrammar.h"
#include "settings/PropertiesStringObj.h"

namespace dovrel {

namespace {

constexpr std::string_view kVersionLine = "//version";

void skipVersionEntry(PropertiesStringObj& cursor) {
    PropertiesStringObj ahead = cursor;
    if (ahead.takeLine() != kVersionLine) return;
    cursor = ahead;
    const std::string_view next = ahead.takeLine();
    if (!startsAsKeyLine(next) && parseValueLine(next)) cursor = ahead;
}

void closeSection(Properties& section, std::vector<Properties>& sections) {
    if (section.size() != 0) sections.push_back(std::move(section));
    section = Properties();
}

}  // namespace

std::string ConfigFileSystem::readText(const std::string& path) {
    std::string content = readWholeFile(path, false);
    if (!isEnciphered(content)) return content;

    std::optional<std::string> text = decipher(content);
    if (!text) throw new CPPException(("Could not decipher file: " + path).c_str());
    return *std::move(text);
}

std::vector<Properties> ConfigFileSystem::readSections(std::string_view text, const std::string& sectionKey) {
    return readSections(text, sectionKey, [](EntryReader::Step, const EntryReader&) { return true; });
}

std::vector<Properties> ConfigFileSystem::readSections(std::string_view text, const std::string& sectionKey,
                                                       const StepFilter& filter) {
    using Step = EntryReader::Step;
    PropertiesStringObj cursor(text);
    skipVersionEntry(cursor);

    std::vector<Properties> sections;
    Properties section;
    EntryReader reader(cursor, KeyLineRule::kTwoSlashes);
    for (Step step = Step::kOther; step != Step::kEnd;) {
        step = reader.next();
        const bool isAccepted = filter(step, reader);
        if (step == Step::kKey && reader.key() == sectionKey) closeSection(section, sections);
        if (step == Step::kValue && isAccepted)
            section.addParsed(reader.key(), reader.type(), reader.value());
    }
    closeSection(section, sections);
    return sections;
}

bool ConfigFileSystem::writeProperties(const std::string& path, const Properties& store) {
    std::string text;
    store.save(text);
    return writeWholeFile(path, text);
}

bool ConfigFileSystem::writeEnciphered(const std::string& path, std::string_view text) {
    try {
        return writeWholeFile(path, encipher(text));
    } catch (const std::exception&) {
        return false;  // the system gave no random numbers or no memory
    }
}

void ConfigFileSystem::removeFile(const std::string& path) {
    std::remove(path.c_str());
}

}  // namespace dovrel
