// EntryReader: reads the entries of a text in the line grammar. Each step reads one key line,
// one value or one other line.
//
// A value belongs to the last key line before it. Other lines are ignored, and the key still waits for its
// value. These are lines that are neither a key line nor a value line, and value lines without a waiting key.
// The value of a binary entry extends over all lines up to the next line that begins with "/".
#pragma once

#include <string_view>

#include "settings/LineGrammar.h"
#include "settings/PropertiesStringObj.h"
#include "settings/PropertyValue.h"

namespace dovrel {

/// Which lines are key lines. In a properties text, one "/" at the beginning is enough. In the sections of a
/// configuration file, a key line begins with two.
enum class KeyLineRule { kOneSlash, kTwoSlashes };

class EntryReader {
  public:
    enum class Step { kKey, kValue, kOther, kEnd };

    /// Reads from the cursor's current position. The cursor must outlive the reader.
    EntryReader(PropertiesStringObj& cursor, KeyLineRule rule) : cursor_(cursor), rule_(rule) {}

    /// Reads the next key line, value or other line. After kKey, key() is valid. After kValue, type() and
    /// value() are also valid. kOther changes none of them.
    Step next();

    /// Returns the last line that was read, without blanks and tabs at its ends. For a binary
    /// value it is the first line.
    std::string_view line() const { return line_; }

    std::string_view key() const { return key_; }

    /// Returns kUnknown if the value's type word is not in the grammar.
    PropertyType type() const { return type_; }

    /// Returns the text after the type word. For a binary value it contains all lines.
    std::string_view value() const { return value_; }

  private:
    bool isKeyLine(std::string_view line) const;
    void takeValue(const ValueLine& line);

    PropertiesStringObj& cursor_;
    KeyLineRule rule_;
    bool keyWaits_ = false;
    std::string_view line_;
    std::string_view key_;
    PropertyType type_ = PropertyType::kUnknown;
    std::string_view value_;
};

}  // namespace dovrel
