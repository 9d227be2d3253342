#include "portability/corefoundation/PropertyList.h"

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "portability/corefoundation/BinaryPropertyList.h"
#include "portability/corefoundation/Object.h"
#include "portability/corefoundation/OldStylePropertyList.h"
#include "portability/corefoundation/TextEncoding.h"
#include "portability/corefoundation/XmlPropertyList.h"
#include "portability/posix/FileContent.h"

namespace portability {
namespace {

using Kind = PropertyListNode::Kind;

constexpr std::size_t kLargestFile = 16 << 20;
constexpr double kSecondsFrom1970To2001 = 978307200;

ObjectHolder newObject(const PropertyListNode& node);

ObjectHolder newInteger(const std::string& text) {
    char* end = nullptr;
    const long long value = std::strtoll(text.c_str(), &end, 0);
    return ObjectHolder(end == text.c_str() ? nullptr : new __CFNumber(value));
}

// Reads a decimal point in every locale of the host. (Not std::from_chars: it returns no value for numbers
// outside the range of double, which the platform reads as infinity or 0.)
ObjectHolder newReal(const std::string& text) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    char* end = nullptr;
    const double value = strtod_l(text.c_str(), &end, cLocale);
    return ObjectHolder(end == text.c_str() ? nullptr : new __CFNumber(value));
}

ObjectHolder newDate(const std::string& text) {
    struct tm time = {};
    const char* const end = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &time);
    const bool isDate = end != nullptr && *end == '\0';
    return ObjectHolder(isDate ? new __CFDate(static_cast<double>(timegm(&time)) - kSecondsFrom1970To2001)
                               : nullptr);
}

// White space is skipped. Any other character that is not base64 makes the list invalid.
ObjectHolder newData(const std::string& base64) {
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0;
    unsigned count = 0;
    for (const char character : base64) {
        if (std::string_view(" \t\r\n").find(character) != std::string_view::npos) {
            continue;
        }
        if (character == '=') {
            break;
        }
        const std::size_t digit = kDigits.find(character);
        if (digit == std::string_view::npos) {
            return ObjectHolder();
        }
        bits = bits << 6 | static_cast<unsigned>(digit);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return ObjectHolder(new __CFData(std::move(bytes)));
}

ObjectHolder newArray(const PropertyListNode& node) {
    __CFArray::Values values;
    for (const auto& member : node.members) {
        values.push_back(newObject(member.second));
        if (!values.back()) {
            return ObjectHolder();
        }
    }
    return ObjectHolder(new __CFArray(std::move(values)));
}

ObjectHolder newDictionary(const PropertyListNode& node) {
    __CFDictionary::Values values;
    for (const auto& member : node.members) {
        auto key = decodeText(member.first, kCFStringEncodingUTF8);
        ObjectHolder value = newObject(member.second);
        if (!key || !value) {
            return ObjectHolder();
        }
        values.insert_or_assign(std::move(*key), std::move(value));
    }
    return ObjectHolder(new __CFDictionary(std::move(values)));
}

ObjectHolder newObject(const PropertyListNode& node) {
    switch (node.kind) {
        case Kind::string:
            return newString(node.text);
        case Kind::integer:
            return newInteger(node.text);
        case Kind::real:
            return newReal(node.text);
        case Kind::boolean:
            return ObjectHolder(new __CFBoolean(node.text == "true"));
        case Kind::date:
            return newDate(node.text);
        case Kind::data:
            return newData(node.text);
        case Kind::array:
            return newArray(node);
        case Kind::dictionary:
            return newDictionary(node);
    }
    return ObjectHolder();
}

// Returns the text in UTF-8. Text with a UTF-16 byte order mark is converted; other text counts as UTF-8.
std::string inUtf8(std::string_view content) {
    const bool isBigEndian = content.substr(0, 2) == "\xFE\xFF";
    if (!isBigEndian && content.substr(0, 2) != "\xFF\xFE") {
        return std::string(content);
    }
    std::vector<UniChar> units;
    for (std::size_t at = 2; at + 1 < content.size(); at += 2) {
        const auto first = static_cast<unsigned char>(content[at]);
        const auto second = static_cast<unsigned char>(content[at + 1]);
        units.push_back(static_cast<UniChar>(isBigEndian ? first << 8 | second : second << 8 | first));
    }
    return encodeText(units.data(), units.size(), kCFStringEncodingUTF8).value_or(std::string());
}

ObjectHolder readPropertyList(std::string_view content, CFPropertyListFormat& form) {
    if (content.size() > kLargestFile) {
        return ObjectHolder();
    }
    if (isBinaryPropertyList(content)) {
        form = kCFPropertyListBinaryFormat_v1_0;
        return readBinaryPropertyList(content);
    }
    const std::string text = inUtf8(content);
    if (isXmlPropertyList(text)) {
        form = kCFPropertyListXMLFormat_v1_0;
        const auto node = readXmlPropertyList(text);
        return node ? newObject(*node) : ObjectHolder();
    }
    form = kCFPropertyListOpenStepFormat;
    return readOldStylePropertyList(text);
}

}  // namespace

CFPropertyListRef copyPropertyListIn(std::string_view content, CFPropertyListFormat* format) {
    CFPropertyListFormat form = kCFPropertyListXMLFormat_v1_0;
    ObjectHolder list = readPropertyList(content, form);
    if (list && format != nullptr) {
        *format = form;
    }
    return list.release();
}

CFPropertyListRef copyPropertyList(const std::string& path) {
    const auto content = readFile(path, kLargestFile);
    return content ? copyPropertyListIn(*content) : nullptr;
}

CFDictionaryRef copyDictionary(const std::string& path) {
    const CFPropertyListRef list = copyPropertyList(path);
    if (list == nullptr || CFGetTypeID(list) == CFDictionaryGetTypeID()) {
        return static_cast<CFDictionaryRef>(list);
    }
    CFRelease(list);
    return nullptr;
}

CFDictionaryRef copyStrings(const std::string& path) {
    const auto content = readFile(path, kLargestFile);
    if (!content) {
        return nullptr;
    }
    if (isXmlPropertyList(*content)) {
        return copyDictionary(path);
    }
    return static_cast<CFDictionaryRef>(readStringsFile(inUtf8(*content)).release());
}

CFStringRef stringValue(CFDictionaryRef dictionary, CFStringRef key) {
    const void* value = dictionary == nullptr ? nullptr : CFDictionaryGetValue(dictionary, key);
    const bool isString = value != nullptr && CFGetTypeID(value) == CFStringGetTypeID();
    return isString ? static_cast<CFStringRef>(value) : nullptr;
}

}  // namespace portability
