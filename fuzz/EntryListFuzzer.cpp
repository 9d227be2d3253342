// Fuzz target for the classes of "dovrel properties". They find the sections and keys that the library reads, and a
// changed text contains exactly the change.
#include <string>
#include <vector>

#include "FuzzTarget.h"
#include "settings/ConfigFileSystem.h"
#include "tools/Subcommand.h"
#include "tools/properties/PropertiesEditor.h"
#include "tools/properties/PropertiesJson.h"
#include "tools/properties/Section.h"

namespace {

using namespace dovrel;
using namespace dovrel::tools;

constexpr char kSectionKey[] = "L";

std::vector<Properties> readSections(const std::string& text, const std::string& sectionKey) {
    if (!sectionKey.empty()) return ConfigFileSystem::readSections(text, sectionKey);
    std::string copy = text;
    std::vector<Properties> sections(1);
    sections.front().load(copy, true);
    if (sections.front().size() == 0) sections.clear();
    return sections;
}

void checkSections(const std::string& text, const std::string& sectionKey) {
    const std::vector<Section> sections = splitSections(text, sectionKey);
    const std::vector<Properties> expected = readSections(text, sectionKey);
    FUZZ_CHECK(sections.size() == expected.size());
    for (size_t i = 0; i < sections.size(); ++i) {
        FUZZ_CHECK(sections[i].entries.size() == expected[i].size());
        for (const TextEntry& entry : sections[i].entries)
            FUZZ_CHECK(expected[i].contains(std::string(entry.key)));
    }
}

void checkChange(const std::string& text) {
    PropertiesEditor editor(text, {});
    try {
        editor.set("new", PropertyValue::ofInt(7));
    } catch (const ToolFailure&) {
        FUZZ_CHECK(editor.text() == text);
        return;
    }
    std::string changed = editor.text();
    Properties store;
    store.load(changed, true);
    FUZZ_CHECK(store.getInt("new") == 7);
    FUZZ_CHECK(editor.remove("new"));
}

// JSON cannot hold keys that are not UTF-8, and some keys cannot be written.
void checkJson(const std::string& text) {
    try {
        const nlohmann::ordered_json json = propertiesToJson(text, "");
        FUZZ_CHECK(propertiesToJson(propertiesFromJson(json), "") == json);
    } catch (const ToolFailure&) {
        return;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    checkSections(text, kSectionKey);
    checkSections(text, "");
    checkChange(text);
    checkJson(text);
    return 0;
}
