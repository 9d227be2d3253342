// The sections of a configuration text: whatever the text, every section has entries and begins anew at the
// section key, and the sections written one after the other are read back as they were.

#include <string>
#include <vector>

#include "FuzzTarget.h"
#include "settings/ConfigFileSystem.h"

namespace {

using dovrel::ConfigFileSystem;
using dovrel::Properties;

constexpr char kSectionKey[] = "LANGUAGE";

// The section's text with the section key's entry in front, where a section begins.
std::string textOf(const Properties& section) {
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

    // The version entry is skipped at the beginning of a text, so the written one gets one of its own.
    std::string written = "//version\nINT:1\n";
    bool isReadable = true;
    for (size_t i = 0; i < sections.size(); ++i) {
        FUZZ_CHECK(sections[i].size() != 0);
        // The value of a section key's entry may be of an unknown type and dropped; such a section cannot be
        // told from the one before it any more.
        if (i != 0 && !sections[i].contains(kSectionKey)) isReadable = false;
        written += textOf(sections[i]);
    }
    if (!isReadable) return 0;

    const std::vector<Properties> again = ConfigFileSystem::readSections(written, kSectionKey);
    FUZZ_CHECK(again.size() == sections.size());
    for (size_t i = 0; i < sections.size(); ++i)
        FUZZ_CHECK(textOf(again[i]) == textOf(sections[i]));
    return 0;
}
