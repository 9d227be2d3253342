// Lists the entries of a text in the line grammar (settings/LineGrammar.h) with their places, and everything in
// it that readers ignore.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "settings/EntryReader.h"

namespace dovrel::tools {

/// A key with its value. The views refer to the text.
struct TextEntry {
    std::string_view key;
    PropertyType type = PropertyType::kUnknown;
    std::string_view value;   ///< the text after the type word; for bytes all of their lines
    size_t keyLine = 0;       ///< number of the key's line, counted from 1
    size_t valueLine = 0;     ///< number of the first line of the value
    size_t keyBegin = 0;      ///< offsets in the text: from the key line
    size_t keyEnd = 0;        ///< to the line after it
    size_t valueBegin = 0;    ///< and from the value line
    size_t valueEnd = 0;      ///< to the line after its last line
    size_t section = 0;       ///< index in EntryList::sectionBegins
    bool isRepeated = false;  ///< readers use an earlier entry of its section
};

struct LineProblem {
    size_t line = 0;  ///< counted from 1
    std::string text;
};

struct EntryList {
    std::vector<TextEntry> entries;
    std::vector<size_t> sectionBegins{0};  ///< offsets in the text: 0, and each key line of the section key
    std::vector<LineProblem> problems;     ///< in the order of the lines
};

/// Reads the whole text. A section begins with each entry of `sectionKey`; the empty key means that the text
/// has no sections. With a section key, a key line begins with two slashes and the text may begin with a version
/// entry, as ConfigFileSystem reads it; otherwise one slash is enough, as Properties reads it.
///
/// The problems are keys without a value, keys that occur twice in a section, values of an unknown type, numbers
/// that are not 32-bit integers, bytes that are not pairs of hexadecimal digits, key lines that do not begin
/// with two slashes, carriage returns, and NUL bytes, where readers of files stop. Lines that are not part of an
/// entry are comments if `allowsComments` is set, otherwise problems.
EntryList listEntries(std::string_view text, std::string_view sectionKey, bool allowsComments);

}  // namespace dovrel::tools
