// ConfigFileSystem: configuration files as a whole. Reads one into memory, splits it into sections of
// properties, writes a store back to a file, and removes files.
//
// A configuration file is a text in the line grammar (LineGrammar.h), possibly with a version entry in front,
// possibly enciphered as a whole (EncipheredText.h). Paths are those of the language's file calls. All
// members may be called from any thread; what two threads do to one file at the same time is up to the file
// system.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/EntryReader.h"
#include "settings/Properties.h"

namespace dovrel {

class ConfigFileSystem {
  public:
    ConfigFileSystem() = delete;

    /// The content of a file up to its first NUL byte, its line ends as they are, deciphered where it is
    /// enciphered. Throws a CPPException that names the path when the file cannot be opened, or begins with
    /// the mark of an enciphered file and is none.
    static std::string readText(const std::string& path);

    /// The sections of a text in their order. A section begins with the entry of `sectionKey`, which it
    /// contains, and ends before the next one; entries in front of the first such entry are also a section.
    /// Inside a section the first entry of a key counts. Sections without entries, and the version entry at
    /// the beginning, are left out.
    static std::vector<Properties> readSections(std::string_view text, const std::string& sectionKey);

    /// Sees every step of the reader after the version entry, kEnd included. The result says whether the
    /// value is entered; after the other steps it does not matter.
    using StepFilter = std::function<bool(EntryReader::Step step, const EntryReader& reader)>;

    /// The same without the values that the filter rejects. Exceptions of the filter pass through.
    static std::vector<Properties> readSections(std::string_view text, const std::string& sectionKey,
                                                const StepFilter& filter);

    /// Writes the text form of a store to a file, which is created or emptied first and opened to all users.
    /// The text is complete before the file is touched. False when the file could not be opened or written.
    static bool writeProperties(const std::string& path, const Properties& store);

    /// The same for a text, which is enciphered on its way into the file.
    static bool writeEnciphered(const std::string& path, std::string_view text);

    /// Deletes a file; one that cannot be deleted stays without a word.
    static void removeFile(const std::string& path);
};

}  // namespace dovrel
