#include "tools/properties/Section.h"

#include "tools/Subcommand.h"

namespace dovrel::tools {

SectionChoice SectionChoice::parse(const std::string& text) {
    const size_t equals = text.find('=');
    if (equals == 0 || equals == std::string::npos)
        rejectArguments("a section is chosen by KEY=VALUE, not by \"" + text + "\"");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

std::vector<Section> splitSections(std::string_view text, const std::string& sectionKey) {
    std::vector<Section> sections;
    for (const TextEntry& entry : listEntries(text, sectionKey, true).entries) {
        if (entry.type == PropertyType::kUnknown || entry.isRepeated) continue;
        const bool isStart = !sectionKey.empty() && entry.key == sectionKey;
        if (sections.empty() || isStart) {
            if (!sections.empty()) sections.back().end = entry.keyBegin;
            sections.push_back({{}, entry.keyBegin, text.size(), sections.size()});
        }
        sections.back().entries.push_back(entry);
    }
    return sections;
}

Section findSection(std::string_view text, const SectionChoice& choice) {
    std::vector<Section> sections = splitSections(text, choice.key);
    if (choice.key.empty()) return sections.empty() ? Section{{}, 0, text.size(), 0} : sections.front();
    for (Section& section : sections) {
        const TextEntry& first = section.entries.front();
        if (first.key == choice.key && first.type == PropertyType::kString && first.value == choice.value)
            return std::move(section);
    }
    throw ToolFailure("there is no section " + choice.key + "=" + choice.value);
}

}  // namespace dovrel::tools
