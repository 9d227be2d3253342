#include "portability/corefoundation/PropertyListWriter.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <ctime>

#include "portability/corefoundation/TextEncoding.h"

namespace portability {
namespace {

constexpr double kSecondsFrom1970To2001 = 978307200;

// The earliest date that is written. The format has years of four digits, and GNUstep 1.28 hangs when it
// formats a date before the year 1.
constexpr double kBeginningOfYear2 = -63082540800;
constexpr double kEndOfYear9999 = 252423993599;

// The largest document. A list of a few bytes in the binary format can refer to one object many times, and
// would become as large as memory.
constexpr std::size_t kLargestDocument = 16 << 20;

// Thrown and caught only in this file.
struct NotAPropertyList {};

// The rest of the room that the largest document has.
class Room {
  public:
    void take(std::size_t size) {
        if (size > left_) throw NotAPropertyList();
        left_ -= size;
    }

  private:
    std::size_t left_ = kLargestDocument;
};

std::string element(const std::string& name, const std::string& content) {
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string escaped(const std::string& text) {
    std::string result;
    for (const char character : text) {
        if (character == '<') {
            result += "&lt;";
        } else if (character == '>') {
            result += "&gt;";
        } else if (character == '&') {
            result += "&amp;";
        } else if (character == '\r') {
            result += "&#13;";  // an unescaped one would be read as a line feed
        } else {
            result += character;
        }
    }
    return result;
}

// Writes a decimal point in every locale of the host.
std::string realText(double value) {
    constexpr int kDigitsOfDouble = 17;
    char text[40];
    const auto result =
        std::to_chars(text, text + sizeof text, value, std::chars_format::general, kDigitsOfDouble);
    return std::string(text, result.ptr);
}

std::string dateText(double since2001) {
    const double shown = std::clamp(since2001, kBeginningOfYear2, kEndOfYear9999);
    const auto seconds = static_cast<std::time_t>(shown + kSecondsFrom1970To2001);
    struct tm time = {};
    gmtime_r(&seconds, &time);
    char text[80];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", time.tm_year + 1900, time.tm_mon + 1,
                  time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
    return text;
}

std::string base64(const std::string& bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        unsigned bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            bits = bits << 8 | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
        }
        for (std::size_t digit = 0; digit < 4; ++digit) {
            const bool isPadding = at + digit > bytes.size();
            text += isPadding ? '=' : kDigits[bits >> (18 - 6 * digit) & 0x3F];
        }
    }
    return text;
}

std::string written(const Object& value, Room& room);

std::string arrayText(const __CFArray& array, Room& room) {
    std::string content;
    for (const ObjectHolder& value : array.values) {
        content += written(*value.get(), room);
    }
    return element("array", content);
}

std::string dictionaryText(const __CFDictionary& dictionary, Room& room) {
    std::string content;
    for (const auto& [key, value] : dictionary.values) {
        const auto name = encodeText(key.data(), key.size(), kCFStringEncodingUTF8);
        if (!name) {
            throw NotAPropertyList();
        }
        const std::string keyText = element("key", escaped(*name));
        room.take(keyText.size());
        content += keyText + written(*value.get(), room);
    }
    return element("dict", content);
}

std::string stringText(const __CFString& string) {
    const std::string text = string.utf8();
    if (text.empty() && !string.units.empty()) {
        throw NotAPropertyList();
    }
    return element("string", escaped(text));
}

std::string simpleText(const Object& value) {
    switch (value.kind()) {
        case kStringKind:
            return stringText(static_cast<const __CFString&>(value));
        case kNumberKind: {
            const auto& number = static_cast<const __CFNumber&>(value);
            return number.isReal ? element("real", realText(number.real))
                                 : element("integer", std::to_string(number.integer));
        }
        case kBooleanKind:
            return static_cast<const __CFBoolean&>(value).value ? "<true/>" : "<false/>";
        case kDateKind:
            return element("date", dateText(static_cast<const __CFDate&>(value).time));
        case kDataKind:
            return element("data", base64(static_cast<const __CFData&>(value).bytes));
        case kArrayKind:
        case kDictionaryKind:
        case kErrorKind:
        case kURLKind:
        case kBundleKind:
            break;
    }
    throw NotAPropertyList();
}

std::string written(const Object& value, Room& room) {
    const bool isArray = value.kind() == kArrayKind;
    if (isArray || value.kind() == kDictionaryKind) {
        room.take(element("array", "").size());
        return isArray ? arrayText(static_cast<const __CFArray&>(value), room)
                       : dictionaryText(static_cast<const __CFDictionary&>(value), room);
    }
    std::string text = simpleText(value);
    room.take(text.size());
    return text;
}

}  // namespace

std::optional<std::string> writeXmlPropertyList(const Object& value) {
    try {
        const std::string start =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
            "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
            "<plist version=\"1.0\">";
        Room room;
        return start + written(value, room) + "</plist>\n";
    } catch (const NotAPropertyList&) {
        return std::nullopt;
    }
}

}  // namespace portability
