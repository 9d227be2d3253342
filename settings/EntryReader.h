// Reads the entries of a text in the line grammar, one step per key line, per value and per other line.
//
// A value belongs to the last key line before it. Other lines (neither a key line nor a value line, or a
// value line that no key waits for) change nothing; the key keeps waiting. The value of a binary entry
// extends over all lines up to the next one that begins with "/".
#pragma once

#include <string_view>

#include "settings/LineGrammar.h"
#include "settings/PropertiesStringObj.h"
#include "settings/PropertyType.h"

namespace dovrel {

/// Which lines are key lines: a properties text is content with one "/" at the front, the sections of a
/// configuration file ask for both.
enum class KeyLineRule { kOneSlash, kTwoSlashes };

class EntryReader {
  public:
    enum class Step { kKey, kValue, kOther, kEnd };

    /// Reads from where the cursor stands. The cursor must outlive the reader.
    EntryReader(PropertiesStringObj& cursor, KeyLineRule rule) : cursor_(cursor), rule_(rule) {}

    /// Reads the next key line, value or other line. After kKey, key() is valid; after kValue also type() and
    /// value(). kOther changes none of them.
    Step next();

    /// The last line that was read, without blanks and tabs at its ends; of a binary value the first one.
    std::string_view line() const { return line_; }

    std::string_view key() const { return key_; }

    /// kUnknown for a value whose type word is not one of the grammar's.
    PropertyType type() const { return type_; }

    /// The text after the type word; that of a binary value with all its lines.
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
