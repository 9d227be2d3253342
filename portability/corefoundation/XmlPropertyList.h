// Reads property lists in the XML format. Private to the layer.
//
// This is our own code because libplist 2.2 accepts damaged lists: numbers and dates without digits, keys
// without values, bytes that are not UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace portability {

/// One value. Scalars keep the text of their element, with its character references replaced.
struct PropertyListNode {
    enum class Kind { string, integer, real, boolean, date, data, array, dictionary };

    Kind kind = Kind::string;
    std::string text;  ///< the text of a scalar; "true" or "false" for a boolean
    std::vector<std::pair<std::string, PropertyListNode>> members;  ///< the keys are empty in an array
};

/// Returns whether the document begins like an XML property list. Its XML declaration, if there is one, must
/// name UTF-8 or no encoding.
bool isXmlPropertyList(std::string_view document);

/// Returns the value of the document. Returns nothing if it is not well-formed, is not a property list, or is
/// nested more than 128 levels deep.
std::optional<PropertyListNode> readXmlPropertyList(std::string_view document);

}  // namespace portability
