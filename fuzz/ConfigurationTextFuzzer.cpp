// Fuzz target for the sections of a configuration text. For every text, each section has entries. Sections
// that are written one after the other are read back unchanged.

#include <string>
#include <vector>

#include "FuzzTarget.h"
#include "settings/ConfigFileSystem.h"

namespace {

using dovrel::ConfigFileSystem;
using dovrel::Properties;

constexpr char kSectionKey[] = "LANGUAGE";

// Returns the text of a section. The entry of the section key is first, because a section begins with it.
std::string toText(const Properties& section) {
    Properties rest = section;
    Properties first;
    std::string text;
    if (section.contains(kSectionKey)) {
        first.addString(kSectionKey, "name");
        rest.remove(kSectionKey);
        first.save(text);
    }
    rest.save(text);
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::vector<Properties> sections = ConfigFileSystem::readSections(text, kSectionKey);

    // A version entry at the beginning of a text is skipped, so the written text begins with one.
    std::string written = "//version\nINT:1\n";
    bool isReadable = true;
    for (size_t i = 0; i < sections.size(); ++i) {
        FUZZ_CHECK(sections[i].size() != 0);
        // The value of a section key can have an unknown type and is then ignored. Such a section cannot be
        // distinguished from the one before it in the written text.
        if (i != 0 && !sections[i].contains(kSectionKey)) isReadable = false;
        written += toText(sections[i]);
    }
    if (!isReadable) return 0;

    const std::vector<Properties> again = ConfigFileSystem::readSections(written, kSectionKey);
    FUZZ_CHECK(again.size() == sections.size());
    for (size_t i = 0; i < sections.size(); ++i)
        FUZZ_CHECK(toText(again[i]) == toText(sections[i]));
    return 0;
}
