#include "settings/Base64.h"

#include <array>
#include <cstdint>

namespace dovrel {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kPadding = '=';
constexpr uint8_t kNoDigit = 0xFF;

constexpr std::array<uint8_t, 256> makeDigitValues() {
    std::array<uint8_t, 256> values{};
    for (size_t i = 0; i < values.size(); ++i)
        values[i] = kNoDigit;
    for (size_t i = 0; i < kAlphabet.size(); ++i) {
        values[static_cast<uint8_t>(kAlphabet[i])] = static_cast<uint8_t>(i);
    }
    return values;
}

constexpr std::array<uint8_t, 256> kDigitValues = makeDigitValues();

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

uint32_t byteAt(std::string_view bytes, size_t index) {
    return index < bytes.size() ? static_cast<uint8_t>(bytes[index]) : 0;
}

}  // namespace

std::string encodeBase64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const uint32_t group = byteAt(bytes, i) << 16 | byteAt(bytes, i + 1) << 8 | byteAt(bytes, i + 2);
        for (uint32_t shift = 24; shift != 0;)
            text += kAlphabet[group >> (shift -= 6) & 0x3F];
    }
    for (size_t missing = (3 - bytes.size() % 3) % 3, i = 1; i <= missing; ++i)
        text[text.size() - i] = kPadding;
    return text;
}

std::optional<std::string> decodeBase64(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    uint32_t group = 0;
    size_t digits = 0;
    size_t padding = 0;
    for (const char c : text) {
        if (isSpace(c)) continue;
        const uint8_t digit = kDigitValues[static_cast<uint8_t>(c)];
        if (c == kPadding) {
            ++padding;
            continue;
        }
        if (digit == kNoDigit || padding != 0) return std::nullopt;
        group = group << 6 | digit;
        ++digits;
        // The second, third and fourth digit of a group each complete one byte.
        const size_t complete = digits % 4;
        if (complete == 2) bytes += static_cast<char>(group >> 4 & 0xFF);
        if (complete == 3) bytes += static_cast<char>(group >> 2 & 0xFF);
        if (complete == 0) bytes += static_cast<char>(group & 0xFF);
    }
    const size_t open = digits % 4;
    const size_t expectedPadding = open == 0 ? 0 : 4 - open;
    const uint32_t restMask = open == 2 ? 0xF : open == 3 ? 0x3 : 0;
    if (open == 1 || padding != expectedPadding || (group & restMask) != 0) return std::nullopt;
    return bytes;
}

}  // namespace dovrel
