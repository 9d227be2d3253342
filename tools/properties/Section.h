// A section of a configuration file, chosen by the value of its first entry: LANGUAGE=German.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/properties/EntryList.h"

namespace dovrel::tools {

/// Without a key, it is the whole text of a file without sections.
struct SectionChoice {
    std::string key;
    std::string value;

    /// Returns the choice for "KEY=VALUE". Rejects the arguments if the text has another form.
    static SectionChoice parse(const std::string& text);
};

/// The entries of a section and its place in the text.
struct Section {
    std::vector<TextEntry> entries;
    size_t begin = 0;  ///< offsets in the text
    size_t end = 0;
    size_t index = 0;  ///< counted as ConfigFileSystem::readSections returns the sections
};

/// Returns the entries that readers return for each section, in their order. The first one contains the entries
/// before the first section key, and is omitted if there are none.
std::vector<Section> splitSections(std::string_view text, const std::string& sectionKey);

/// Returns the chosen section. Throws a ToolFailure if the text does not contain it.
Section findSection(std::string_view text, const SectionChoice& choice);

}  // namespace dovrel::tools
