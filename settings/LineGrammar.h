// The line grammar of settings files, text tables and log files: its words and the functions that write it.
//
//     //key            a key line: "//" and the key
//     STR:value        a value line: type word, ":", value ("INT:" decimal, "STR:" as is, "BAR:" hexadecimal)
//
// Lines end with a single line feed. EntryReader reads the grammar; Properties and LogFileWriter write it.
// Keys and texts must not contain line feeds, and must not begin or end with a blank or tab, because reading
// removes those. Escape texts that contain line feeds with escapeLineFeeds first. All functions work on bytes
// and may be called from any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "settings/PropertyValue.h"

namespace dovrel {

inline constexpr char kLineFeed = '\n';
inline constexpr std::string_view kKeyLineMark = "//";
inline constexpr char kTypeWordEnd = ':';
inline constexpr std::string_view kIntegerWord = "INT";
inline constexpr std::string_view kStringWord = "STR";
inline constexpr std::string_view kBinaryWord = "BAR";
inline constexpr std::string_view kEscapedLineFeed = "chg-lf";

/// Returns the word of a type on its value line, or "" for kUnknown.
std::string_view typeWord(PropertyType type);

inline bool isBlankOrTab(char c) {
    return c == ' ' || c == '\t';
}

/// Returns the line without the blanks and tabs at both ends. All other characters are kept (including
/// carriage returns).
inline std::string_view trimmed(std::string_view line) {
    while (!line.empty() && isBlankOrTab(line.front()))
        line.remove_prefix(1);
    while (!line.empty() && isBlankOrTab(line.back()))
        line.remove_suffix(1);
    return line;
}

/// Returns whether the trimmed line is a key line of a properties text. There, one "/" at the beginning
/// is enough.
inline bool startsAsKeyLine(std::string_view line) {
    return !line.empty() && line.front() == kKeyLineMark.front();
}

/// Returns the key of a key line: the line without its first two characters, whatever they are.
std::string_view keyFromLine(std::string_view line);

/// A value line split at its first ":": the type that the word before it names (case-sensitive), and the text
/// after it.
struct ValueLine {
    PropertyType type;
    std::string_view value;
};

/// Parses a value line. Returns nothing if the trimmed line contains no type word followed by ":". If such a
/// type word follows another word and ":", the line is a value line of unknown type.
std::optional<ValueLine> parseValueLine(std::string_view line);

/// Append one line including its line feed.
void appendKeyLine(std::string& output, std::string_view key);
void appendLine(std::string& output, std::string_view line);

/// Append a key line and the value line of an integer or of a text.
void appendIntEntry(std::string& output, std::string_view key, int32_t value);
void appendStringEntry(std::string& output, std::string_view key, std::string_view value);

/// Returns the decimal number at the beginning of the text, after optional white space and a sign. Returns 0
/// if there is no number. A number beyond 32 bits becomes the nearest 32-bit number.
int32_t leadingInteger(std::string_view text);

/// Decodes the hexadecimal digits of the text (either case), two per byte. All other characters are skipped.
/// An odd last digit is ignored.
std::string decodeHexText(std::string_view text);

/// Returns whether the text consists of an even number of hexadecimal digits and of white space. For programs
/// that check what people write: the readers of values skip everything else.
bool isHexText(std::string_view text);

/// escapeLineFeeds returns a copy with every line feed replaced by "chg-lf". restoreLineFeeds is the reverse.
std::string escapeLineFeeds(std::string_view text);
std::string restoreLineFeeds(std::string_view text);

}  // namespace dovrel
