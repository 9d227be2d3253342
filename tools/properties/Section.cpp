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
    const EntryList list = listEntries(text, sectionKey, true);
    std::vector<Section> sections;
    size_t last = list.sectionBegins.size();
    for (const TextEntry& entry : list.entries) {
        if (entry.type == PropertyType::kUnknown || entry.isRepeated) continue;
        if (entry.section != last) {
            last = entry.section;
            const bool isLast = last + 1 == list.sectionBegins.size();
            const size_t end = isLast ? text.size() : list.sectionBegins[last + 1];
            sections.push_back({{}, list.sectionBegins[last], end, sections.size()});
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
