#include "settings/LineGrammar.h"

#include <array>
#include <limits>

#include "platform/text/TextConversions.h"

namespace dovrel {

namespace {

constexpr uint8_t kNoHexDigit = 0xFF;

constexpr std::array<uint8_t, 256> makeHexDigitValues() {
    std::array<uint8_t, 256> values{};
    for (size_t i = 0; i < values.size(); ++i)
        values[i] = kNoHexDigit;
    for (uint8_t i = 0; i < 10; ++i)
        values[static_cast<size_t>('0') + i] = i;
    for (uint8_t i = 0; i < 6; ++i) {
        values[static_cast<size_t>('A') + i] = static_cast<uint8_t>(10 + i);
        values[static_cast<size_t>('a') + i] = static_cast<uint8_t>(10 + i);
    }
    return values;
}

constexpr std::array<uint8_t, 256> kHexDigitValues = makeHexDigitValues();

// The white space of the C locale, independent of the locale that the host has set.
bool isWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr size_t kTypeWordLength = 3;
static_assert(kIntegerWord.size() == kTypeWordLength && kStringWord.size() == kTypeWordLength &&
              kBinaryWord.size() == kTypeWordLength);

PropertyType typeFromWord(std::string_view word) {
    if (word == kStringWord) return PropertyType::kString;
    if (word == kIntegerWord) return PropertyType::kInteger;
    if (word == kBinaryWord) return PropertyType::kBinary;
    return PropertyType::kUnknown;
}

bool containsTypeWord(std::string_view line, std::string_view word) {
    for (size_t at = line.find(word); at != std::string_view::npos; at = line.find(word, at + 1)) {
        const size_t end = at + word.size();
        if (end < line.size() && line[end] == kTypeWordEnd) return true;
    }
    return false;
}

}  // namespace

std::string_view typeWord(PropertyType type) {
    switch (type) {
        case PropertyType::kInteger:
            return kIntegerWord;
        case PropertyType::kString:
            return kStringWord;
        case PropertyType::kBinary:
            return kBinaryWord;
        case PropertyType::kUnknown:
            break;
    }
    return std::string_view();
}

std::string_view keyFromLine(std::string_view line) {
    return line.substr(line.size() < kKeyLineMark.size() ? line.size() : kKeyLineMark.size());
}

std::optional<ValueLine> parseValueLine(std::string_view line) {
    // Nearly every line begins with its type word. Only the other lines must be searched.
    if (line.size() > kTypeWordLength && line[kTypeWordLength] == kTypeWordEnd) {
        const PropertyType type = typeFromWord(line.substr(0, kTypeWordLength));
        if (type != PropertyType::kUnknown) return ValueLine{type, line.substr(kTypeWordLength + 1)};
    }
    const bool hasTypeWord = containsTypeWord(line, kIntegerWord) || containsTypeWord(line, kStringWord) ||
                             containsTypeWord(line, kBinaryWord);
    if (!hasTypeWord) return std::nullopt;
    return ValueLine{PropertyType::kUnknown, line.substr(line.find(kTypeWordEnd) + 1)};
}

void appendKeyLine(std::string& output, std::string_view key) {
    output += kKeyLineMark;
    appendLine(output, key);
}

void appendLine(std::string& output, std::string_view line) {
    output += line;
    output += kLineFeed;
}

void appendIntEntry(std::string& output, std::string_view key, int32_t value) {
    appendKeyLine(output, key);
    (output += kIntegerWord) += kTypeWordEnd;
    appendLine(output, std::to_string(value));
}

void appendStringEntry(std::string& output, std::string_view key, std::string_view value) {
    appendKeyLine(output, key);
    (output += kStringWord) += kTypeWordEnd;
    appendLine(output, value);
}

int32_t leadingInteger(std::string_view text) {
    while (!text.empty() && isWhiteSpace(text.front()))
        text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);

    const int64_t limit = negative ? -static_cast<int64_t>(std::numeric_limits<int32_t>::min())
                                   : std::numeric_limits<int32_t>::max();
    int64_t value = 0;
    for (; !text.empty() && text.front() >= '0' && text.front() <= '9' && value < limit;
         text.remove_prefix(1)) {
        value = value * 10 + (text.front() - '0');
    }
    if (value > limit) value = limit;
    return static_cast<int32_t>(negative ? -value : value);
}

std::string decodeHexText(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 2);
    uint8_t first = kNoHexDigit;
    for (const char c : text) {
        const uint8_t digit = kHexDigitValues[static_cast<uint8_t>(c)];
        if (digit == kNoHexDigit) continue;
        if (first == kNoHexDigit) {
            first = digit;
            continue;
        }
        bytes += static_cast<char>(first << 4 | digit);
        first = kNoHexDigit;
    }
    return bytes;
}

bool isHexText(std::string_view text) {
    size_t digits = 0;
    for (const char c : text) {
        if (kHexDigitValues[static_cast<uint8_t>(c)] != kNoHexDigit) {
            ++digits;
        } else if (!isWhiteSpace(c)) {
            return false;
        }
    }
    return digits % 2 == 0;
}

std::string escapeLineFeeds(std::string_view text) {
    return replaceAll(text, std::string_view(&kLineFeed, 1), kEscapedLineFeed);
}

std::string restoreLineFeeds(std::string_view text) {
    return replaceAll(text, kEscapedLineFeed, std::string_view(&kLineFeed, 1));
}

}  // namespace dovrel
