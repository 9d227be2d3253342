// Reader of property lists in their XML form. Private to the layer.
//
// Own code, because libplist 2.2 takes damaged lists for whole ones: numbers and dates without digits, keys
// without values, bytes that are not UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace portability {

/// One value. Scalars keep the text of their element, with its references resolved.
struct PropertyListNode {
    enum class Kind { string, integer, real, boolean, date, data, array, dictionary };

    Kind kind = Kind::string;
    std::string text;  ///< of a scalar; "true" or "false" for a boolean
    std::vector<std::pair<std::string, PropertyListNode>> members;  ///< the keys are empty in an array
};

/// Whether the document says of itself that it is XML in UTF-8, or in no named encoding.
bool isXmlPropertyList(std::string_view document);

/// The value of the document; nothing when it is not well-formed, not a property list, or nested beyond 128
/// levels.
std::optional<PropertyListNode> readXmlPropertyList(std::string_view document);

}  // namespace portability
