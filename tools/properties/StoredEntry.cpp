#include "tools/properties/StoredEntry.h"

#include <charconv>

#include "platform/trace/TraceText.h"
#include "settings/LineGrammar.h"
#include "settings/Properties.h"
#include "tools/Subcommand.h"
#include "tools/decode/HexText.h"

namespace dovrel::tools {

namespace {

std::string quoted(const std::string& text) {
    return '"' + traceOneLineText(text) + '"';
}

// Returns why the text cannot be on a line of its own, or "".
std::string findReason(std::string_view text) {
    if (text.find(kLineFeed) != std::string_view::npos) return "it contains a line feed";
    if (text.find('\0') != std::string_view::npos) return "it contains a NUL byte";
    return "";
}

std::string findKeyReason(std::string_view key) {
    if (key.empty()) return "it is empty";
    if (trimmed(key) != key) return "readers remove the blanks at its ends";
    return findReason(key);
}

std::string findValueReason(const PropertyValue& value) {
    if (value.type != PropertyType::kString) return "";
    const std::string_view text = value.stringValue;
    if (!text.empty() && isBlankOrTab(text.back())) return "readers remove the blanks at its end";
    return findReason(text);
}

bool isReadBack(const std::string& text, const std::string& key, const PropertyValue& value) {
    std::string copy = text;
    Properties store;
    store.load(copy, true);
    std::string saved;
    store.save(saved);
    return store.size() == 1 && store.contains(key) && saved == text && value.type != PropertyType::kUnknown;
}

}  // namespace

std::string makeEntryText(const std::string& key, const PropertyValue& value) {
    const std::string keyReason = findKeyReason(key);
    if (!keyReason.empty()) throw ToolFailure("the key " + quoted(key) + " cannot be stored: " + keyReason);
    const std::string reason = findValueReason(value);
    if (!reason.empty()) throw ToolFailure("the value of " + quoted(key) + " cannot be stored: " + reason);
    std::string text;
    appendKeyLine(text, key);
    appendLine(text, Properties::toText(value));
    if (!isReadBack(text, key, value))
        throw ToolFailure("readers would not return the same key and value for " + quoted(key));
    return text;
}

std::optional<int32_t> findInteger(std::string_view text) {
    int32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || last != end) return std::nullopt;
    return number;
}

int32_t parseInteger(const std::string& key, const std::string& text) {
    const std::optional<int32_t> number = findInteger(text);
    if (!number)
        throw ToolFailure("the value of " + quoted(key) + " is not a 32-bit number: " + quoted(text));
    return *number;
}

std::string parseBytes(const std::string& key, const std::string& digits) {
    const HexText bytes = parseHexText(digits);
    if (!bytes.problem.empty())
        throw ToolFailure("the value of " + quoted(key) + " is not bytes in hexadecimal: " + bytes.problem);
    return bytes.bytes;
}

}  // namespace dovrel::tools
