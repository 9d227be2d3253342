// The line grammar of settings files, text tables and log files, one place for its words and for writing it:
//
//     //key            a key line: "//" and the key
//     STR:value        a value line: type word, ":", value ("INT:" decimal, "STR:" as is, "BAR:" hexadecimal)
//
// Lines end with a single line feed. EntryReader reads the grammar, Properties and LogFileWriter write it.
// Keys and texts must hold no line feed and no blank or tab at their ends, because reading removes them;
// texts with line feeds go through escapeLineFeeds first. All functions work on bytes and may be called from
// any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "settings/PropertyType.h"

namespace dovrel {

inline constexpr char kLineFeed = '\n';
inline constexpr std::string_view kKeyLineMark = "//";
inline constexpr char kTypeWordEnd = ':';
inline constexpr std::string_view kIntegerWord = "INT";
inline constexpr std::string_view kStringWord = "STR";
inline constexpr std::string_view kBinaryWord = "BAR";
inline constexpr std::string_view kEscapedLineFeed = "chg-lf";

/// The word of a type on its value line, "" for kUnknown.
std::string_view wordOfType(PropertyType type);

inline bool isBlankOrTab(char c) {
    return c == ' ' || c == '\t';
}

/// The line without the blanks and tabs at both of its ends. Every other character, the carriage return too,
/// stays.
inline std::string_view trimmed(std::string_view line) {
    while (!line.empty() && isBlankOrTab(line.front()))
        line.remove_prefix(1);
    while (!line.empty() && isBlankOrTab(line.back()))
        line.remove_suffix(1);
    return line;
}

/// Whether the (trimmed) line is a key line where one "/" is enough to make it one, as in a properties text.
inline bool startsAsKeyLine(std::string_view line) {
    return !line.empty() && line.front() == kKeyLineMark.front();
}

/// The key of a key line: all but its first two characters, whatever they are.
std::string_view keyOfKeyLine(std::string_view line);

/// A value line taken apart: the type that the word before its first ":" names, to the letter, and all that
/// stands behind that ":".
struct ValueLine {
    PropertyType type;
    std::string_view value;
};

/// Nothing when no type word with its ":" stands anywhere in the (trimmed) line. One that stands behind
/// another word and ":" makes a value line of an unknown type.
std::optional<ValueLine> valueLineOf(std::string_view line);

/// Append one line, its line feed included.
void appendKeyLine(std::string& output, std::string_view key);
void appendLine(std::string& output, std::string_view line);

/// Append a key line and the value line of an integer or of a text.
void appendIntEntry(std::string& output, std::string_view key, int32_t value);
void appendStringEntry(std::string& output, std::string_view key, std::string_view value);

/// The decimal number at the front of the text, after white space and a sign; 0 where there is none. A number
/// beyond 32 bits gives the nearest that fits.
int32_t leadingInteger(std::string_view text);

/// The bytes that the hexadecimal digits of the text stand for, two digits each, in either case. All other
/// characters are skipped, an odd last digit is dropped.
std::string bytesOfHexText(std::string_view text);

/// A copy with "chg-lf" in place of every line feed, and the way back.
std::string escapeLineFeeds(std::string_view text);
std::string restoreLineFeeds(std::string_view text);

}  // namespace dovrel
