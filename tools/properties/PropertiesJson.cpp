#include "tools/properties/PropertiesJson.h"

#include <limits>

#include "platform/text/ReadableText.h"
#include "platform/text/TextConversions.h"
#include "settings/LineGrammar.h"
#include "tools/Subcommand.h"
#include "tools/properties/Section.h"
#include "tools/properties/StoredEntry.h"

namespace dovrel::tools {

namespace {

using Json = nlohmann::ordered_json;

constexpr char kStringBytes[] = "string";
constexpr char kBytes[] = "bytes";

bool isUTF8(const std::string& text) {
    return readableText(text) == text;
}

std::string toHexText(const std::string& bytes) {
    return bytesToHexText(bytes.data(), static_cast<uint32_t>(bytes.size()));
}

Json sectionToJson(const Section& section) {
    Json object = Json::object();
    for (const TextEntry& entry : section.entries) {
        const std::string key(entry.key);
        if (!isUTF8(key))
            throw ToolFailure("the key \"" + readableText(key) + "\" in line " +
                              std::to_string(entry.keyLine) + " is not UTF-8, so JSON cannot contain it");
        object[key] = valueToJson(entry);
    }
    return object;
}

std::string integerEntry(const std::string& key, const Json& value) {
    using Limits = std::numeric_limits<int32_t>;
    const bool fits = value.is_number_unsigned()
                          ? value.get<uint64_t>() <= uint64_t{Limits::max()}
                          : value.get<int64_t>() >= Limits::min() && value.get<int64_t>() <= Limits::max();
    if (!fits) throw ToolFailure("the value of \"" + key + "\" is not a 32-bit number: " + value.dump());
    return makeEntryText(key, PropertyValue::ofInt(value.get<int32_t>()));
}

std::string hexEntry(const std::string& key, const Json& value) {
    const bool isHex = value.size() == 1 && value.begin().value().is_string() &&
                       (value.contains(kBytes) || value.contains(kStringBytes));
    if (!isHex)
        throw ToolFailure("the value of \"" + key +
                          "\" is neither {\"bytes\": …} nor {\"string\": …}: " + value.dump());
    const std::string bytes = parseBytes(key, value.begin().value().get<std::string>());
    if (value.contains(kStringBytes)) return makeEntryText(key, PropertyValue::ofString(bytes));
    return makeEntryText(key, PropertyValue::ofBinary(bytes.data(), bytes.size()));
}

std::string entryFromJson(const std::string& key, const Json& value) {
    if (value.is_number_integer()) return integerEntry(key, value);
    if (value.is_string())
        return makeEntryText(key, PropertyValue::ofString(value.get_ref<const std::string&>()));
    if (value.is_object()) return hexEntry(key, value);
    throw ToolFailure("the value of \"" + key +
                      "\" is neither a whole number, a string nor bytes: " + value.dump());
}

void appendSection(std::string& text, const Json& object) {
    if (!object.is_object()) throw ToolFailure("the JSON is neither an object nor an array of objects");
    for (const auto& [key, value] : object.items())
        text += entryFromJson(key, value);
}

}  // namespace

Json valueToJson(const TextEntry& entry) {
    const std::string value(entry.value);
    switch (entry.type) {
        case PropertyType::kInteger:
            return leadingInteger(value);
        case PropertyType::kString:
            return isUTF8(value) ? Json(value) : Json{{kStringBytes, toHexText(value)}};
        case PropertyType::kBinary:
            return {{kBytes, toHexText(decodeHexText(value))}};
        case PropertyType::kUnknown:
            break;
    }
    return nullptr;
}

Json propertiesToJson(std::string_view text, const std::string& sectionKey) {
    const std::vector<Section> sections = splitSections(text, sectionKey);
    if (sectionKey.empty()) return sections.empty() ? Json::object() : sectionToJson(sections.front());
    Json array = Json::array();
    for (const Section& section : sections)
        array.push_back(sectionToJson(section));
    return array;
}

std::string propertiesFromJson(const Json& json) {
    std::string text;
    if (!json.is_array()) {
        appendSection(text, json);
        return text;
    }
    for (const Json& object : json) {
        if (!text.empty()) text += kLineFeed;
        appendSection(text, object);
    }
    return text;
}

}  // namespace dovrel::tools
