// Converts entries from and to JSON. A file without sections is an object, a file with sections is an array of
// objects. The entries keep their order.
//
//     INT:5       5
//     STR:text    "text"; {"string": "8A"} with the bytes in hexadecimal if the text is not UTF-8
//     BAR:00FF    {"bytes": "00FF"}
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "tools/properties/EntryList.h"

namespace dovrel::tools {

/// Returns the JSON of one value.
nlohmann::ordered_json valueToJson(const TextEntry& entry);

/// Returns the entries that readers of the text use. Throws a ToolFailure if a key is not UTF-8.
nlohmann::ordered_json propertiesToJson(std::string_view text, const std::string& sectionKey);

/// Returns the text for such JSON, with the entries in their order. Throws a ToolFailure if the JSON has another
/// form, or if a key or value cannot be stored (see makeEntryText).
std::string propertiesFromJson(const nlohmann::ordered_json& json);

}  // namespace dovrel::tools
