// PropertiesEditor: changes one entry of a text and leaves all other lines as they are, including comments and
// the order of the entries.
#pragma once

#include <string>

#include "settings/PropertyValue.h"
#include "tools/properties/Section.h"

namespace dovrel::tools {

class PropertiesEditor {
  public:
    /// Edits the entries of one section of the text.
    PropertiesEditor(std::string text, SectionChoice section);

    const std::string& text() const { return text_; }

    /// Replaces the value of the key, or adds the entry after the last one of the section. Throws a ToolFailure and
    /// changes nothing if readers of the new text would not find exactly this change.
    void set(const std::string& key, const PropertyValue& value);

    /// Removes all entries of the key, because readers would otherwise use the next one. Returns whether there was
    /// one. Throws as set.
    bool remove(const std::string& key);

  private:
    void replaceChecked(const std::string& newText, const std::string& key, const PropertyValue* value);

    std::string text_;
    SectionChoice choice_;
};

}  // namespace dovrel::tools
