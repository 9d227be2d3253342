#include "platform/text/TextConversions.h"

#include <algorithm>

namespace dovrel {

bool lastConversionFailed = false;

namespace {

constexpr std::string_view kUpperDigits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kLowerDigits = "0123456789abcdefghijklmnopqrstuvwxyz";

constexpr char kCaseDistance = 'a' - 'A';

bool isLowerLetter(char c) {
    return c >= 'a' && c <= 'z';
}

bool isUpperLetter(char c) {
    return c >= 'A' && c <= 'Z';
}

}  // namespace

std::string bytesToHexText(const void* bytes, uint32_t count) {
    const uint8_t* const first = static_cast<const uint8_t*>(bytes);
    std::string text;
    text.reserve(size_t{2} * count);
    for (uint32_t i = 0; i < count; ++i) {
        text += kUpperDigits[first[i] >> 4];
        text += kUpperDigits[first[i] & 0x0F];
    }
    return text;
}

std::string bytesToHexText(const CPPByteArray& bytes) {
    return bytesToHexText(bytes.data(), bytes.getSize());
}

std::string bytesToText(const CPPByteArray& bytes) {
    std::string text(bytes.getSize(), '\0');
    bytes.readBytes(0, text.data(), bytes.getSize());
    return text;
}

std::string replaceChar(const std::string& text, char from, char to) {
    std::string result = text;
    std::replace(result.begin(), result.end(), from, to);
    return result;
}

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string result;
    result.reserve(text.size());
    size_t begin = 0;
    for (size_t at = text.find(from); at != std::string_view::npos; at = text.find(from, begin)) {
        result.append(text.substr(begin, at - begin)).append(to);
        begin = at + from.size();
    }
    return result.append(text.substr(begin));
}

std::string withLineFeedsOnly(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isReturn = text[i] == '\r';
        if (isReturn && i + 1 < text.size() && text[i + 1] == '\n') continue;
        result += isReturn ? '\n' : text[i];
    }
    return result;
}

std::string toLowerAscii(const std::string& text) {
    std::string result = text;
    for (char& c : result) {
        if (isUpperLetter(c)) c = static_cast<char>(c + kCaseDistance);
    }
    return result;
}

std::string toUpperAscii(const std::string& text) {
    std::string result = text;
    for (char& c : result) {
        if (isLowerLetter(c)) c = static_cast<char>(c - kCaseDistance);
    }
    return result;
}

std::string numberToText(uint64_t value, uint32_t base, uint32_t minimumDigits) {
    std::string reversed;
    do {
        reversed += kUpperDigits[static_cast<size_t>(value % base)];
        value /= base;
    } while (value != 0 || reversed.size() < minimumDigits);
    return {reversed.rbegin(), reversed.rend()};
}

int64_t textToNumber(const std::string& text, uint32_t base) {
    const std::string lower = toLowerAscii(text);
    std::string_view digits = lower;
    const bool isNegative = !digits.empty() && digits.front() == '-';
    if (isNegative || (!digits.empty() && digits.front() == '+')) digits.remove_prefix(1);

    lastConversionFailed = false;
    uint64_t value = 0;
    for (const char c : digits) {
        value *= base;
        const size_t digit = kLowerDigits.find(c);
        if (digit == std::string_view::npos || digit >= base) {
            lastConversionFailed = true;
            // Returns the value multiplied by the base and without the sign, because
            // existing callers rely on it.
            return static_cast<int64_t>(value);
        }
        value += digit;
    }
    return static_cast<int64_t>(isNegative ? uint64_t{0} - value : value);
}

uint32_t parseNumberLiteral(const std::string& text) {
    uint32_t base = 10;
    size_t prefixLength = 0;
    if (!text.empty() && text[0] == '0') {
        const char kind = text.size() > 1 ? text[1] : '\0';
        base = kind == 'x' || kind == 'X' ? 16 : kind == 'b' || kind == 'B' ? 2 : 8;
        prefixLength = base == 8 ? 1 : 2;
    }
    return static_cast<uint32_t>(textToNumber(text.substr(prefixLength), base));
}

uint16_t textChecksum16(const char* text) {
    uint32_t sum = 0;
    for (; *text != '\0'; ++text) {
        const uint32_t byte = static_cast<uint8_t>(*text);
        sum = (sum ^ byte) + byte;
    }
    return static_cast<uint16_t>(sum & 0xFFFF);
}

}  // namespace dovrel
