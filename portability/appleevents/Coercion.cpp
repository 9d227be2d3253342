#include "portability/appleevents/Coercion.h"

#include <charconv>
#include <cstring>
#include <limits>
#include <string_view>

namespace portability {

namespace {

template <class Stored>
bool readNumber(const void* data, size_t size, int64_t& number) {
    Stored stored;
    if (size != sizeof stored) return false;
    std::memcpy(&stored, data, sizeof stored);
    number = static_cast<int64_t>(stored);
    return true;
}

template <class Stored>
bool writeNumber(int64_t number, CoercedValue& result) {
    if (number < std::numeric_limits<Stored>::min()) return false;
    if (number > int64_t{std::numeric_limits<Stored>::max()}) return false;
    const auto stored = static_cast<Stored>(number);
    std::memcpy(result.bytes.data(), &stored, sizeof stored);
    result.size = sizeof stored;
    return true;
}

bool parseNumber(std::string_view text, int64_t& number) {
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
}

bool isText(DescType type) {
    return type == typeChar || type == typeUTF8Text;
}

bool isCode(DescType type) {
    return type == typeType || type == typeEnumerated || type == typeKeyword || type == typeApplSignature;
}

bool toNumber(DescType from, const void* data, size_t size, int64_t& number) {
    switch (from) {
        case typeSInt16:
            return readNumber<int16_t>(data, size, number);
        case typeSInt32:
            return readNumber<int32_t>(data, size, number);
        case typeUInt32:
            return readNumber<uint32_t>(data, size, number);
        case typeSInt64:
            return readNumber<int64_t>(data, size, number);
        case typeBoolean:
            return readNumber<uint8_t>(data, size, number);
        case typeTrue:
        case typeFalse:
            number = from == typeTrue;
            return true;
        default:
            return isText(from) &&
                   parseNumber(std::string_view(static_cast<const char*>(data), size), number);
    }
}

bool fromNumber(int64_t number, DescType to, CoercedValue& result) {
    switch (to) {
        case typeSInt16:
            return writeNumber<int16_t>(number, result);
        case typeSInt32:
            return writeNumber<int32_t>(number, result);
        case typeUInt32:
            return writeNumber<uint32_t>(number, result);
        case typeSInt64:
            return writeNumber<int64_t>(number, result);
        case typeBoolean:
            return writeNumber<uint8_t>(number != 0, result);
        case typeTrue:
        case typeFalse:
            result.size = 0;
            return (number != 0) == (to == typeTrue);
        default:
            break;
    }
    if (!isText(to)) return false;
    char* text = reinterpret_cast<char*>(result.bytes.data());
    const auto written = std::to_chars(text, text + result.bytes.size(), number);
    result.size = static_cast<size_t>(written.ptr - text);
    return true;
}

// A four-character code is stored as a number in the machine's byte order; its text is in reading order.
bool coerceCode(DescType from, const void* data, size_t size, DescType to, CoercedValue& result) {
    const bool codeToText = isCode(from) && isText(to);
    const bool textToCode = isText(from) && isCode(to);
    if (size != sizeof(uint32_t) || !(codeToText || textToCode || (isCode(from) && isCode(to)))) return false;
    uint32_t code;
    std::memcpy(&code, data, sizeof code);
    if (codeToText || textToCode) code = __builtin_bswap32(code);
    std::memcpy(result.bytes.data(), &code, sizeof code);
    result.size = sizeof code;
    return true;
}

}  // namespace

bool coerce(DescType from, const void* data, size_t size, DescType to, CoercedValue& result) {
    if (isCode(from) || isCode(to)) return coerceCode(from, data, size, to, result);
    if (isText(from) && isText(to)) return false;
    int64_t number;
    return toNumber(from, data, size, number) && fromNumber(number, to, result);
}

}  // namespace portability
