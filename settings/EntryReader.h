// Reads the entries of a text in the line grammar, one step per key line and per value.
//
// A value belongs to the last key line before it; lines that are neither key line nor value line are passed
// over, and the key waits. A value line without a key before it is passed over, too. The value of a binary
// entry goes on over all lines up to the next one that begins with "/".
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
    enum class Step { kKey, kValue, kEnd };

    /// Reads from where the cursor stands. The cursor must outlive the reader.
    EntryReader(PropertiesStringObj& cursor, KeyLineRule rule) : cursor_(cursor), rule_(rule) {}

    /// Goes on to the next key line or value. After kKey, key() is valid, after kValue everything is.
    Step next();

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
    std::string_view key_;
    PropertyType type_ = PropertyType::kUnknown;
    std::string_view value_;
};

}  // namespace dovrel
