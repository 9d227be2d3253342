// ConfigFileSystem: reads a configuration file into memory, splits its text into sections of properties,
// writes a store to a file, and removes files.
//
// A configuration file is a text in the line grammar (LineGrammar.h). It may begin with a version entry, and
// it may be enciphered as a whole (EncipheredText.h). Paths are passed to `fopen` and other C library
// functions unchanged. All members may be called from any thread. They do not lock files: if two threads use
// one file at the same time, the file system decides what happens.
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

    /// Returns the content of a file up to its first NUL byte, with its line ends unchanged. An enciphered
    /// file is deciphered. Throws a CPPException that names the path if the file cannot be opened. Also
    /// throws one if the file begins with the mark of an enciphered file but cannot be deciphered.
    static std::string readText(const std::string& path);

    /// Returns the sections of a text in their order. A section begins with the entry of `sectionKey`, which
    /// it contains, and ends before the next such entry. Entries before the first such entry are a section of
    /// their own. If a key occurs twice in a section, the first entry counts. Sections without entries and
    /// the version entry at the beginning are omitted.
    static std::vector<Properties> readSections(std::string_view text, const std::string& sectionKey);

    /// A function that readSections calls for every step of the reader after the version entry, including
    /// kEnd. After kValue, its result says whether the value is added to the section. After all other steps the
    /// result is ignored.
    using StepFilter = std::function<bool(EntryReader::Step step, const EntryReader& reader)>;

    /// As above, without the values for which the filter returns false. Exceptions of the filter reach
    /// the caller.
    static std::vector<Properties> readSections(std::string_view text, const std::string& sectionKey,
                                                const StepFilter& filter);

    /// Writes the text form of a store to a file, which is created or replaced. All users get all
    /// permissions on it. The text is complete before the file is opened. Returns false if the file could
    /// not be opened or written.
    static bool writeProperties(const std::string& path, const Properties& store);

    /// As above for a text, which is enciphered before it is written. Also returns false if that is impossible.
    static bool writeEnciphered(const std::string& path, std::string_view text);

    /// Deletes a file. A file that cannot be deleted is left; failures are ignored.
    static void removeFile(const std::string& path);
};

}  // namespace dovrel
