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

/// The line without the blanks and tabs at both of its ends. Every other character, the carriage return too,
/// stays.
std::string_view trimmed(std::string_view line);

/// Whether the (trimmed) line is a key line where one "/" is enough to make it one, as in a properties text.
bool startsAsKeyLine(std::string_view line);

/// The key of a key line: all but its first two characters, whatever they are.
std::string_view keyOfKeyLine(std::string_view line);

/// Whether a value line's type word stands anywhere in the (trimmed) line.
bool isValueLine(std::string_view line);

/// The type that a value line names: what stands before its first ":", to the letter; unknown for everything
/// else.
PropertyType typeOfValueLine(std::string_view line);

/// What stands after the first ":" of a value line.
std::string_view valueOfValueLine(std::string_view line);

/// Append one line, its line feed included.
void appendKeyLine(std::string& output, std::string_view key);
void appendLine(std::string& output, std::string_view line);

/// Append what follows the type word on a value line of an integer, or a whole entry, key line and value
/// line.
void appendDecimal(std::string& output, int32_t value);
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
