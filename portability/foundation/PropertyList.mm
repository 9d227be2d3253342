#include "foundation/PropertyList.h"

#include "foundation/FoundationObject.h"

#include <CoreFoundation/CFString.h>

#include <ctime>

#include "foundation/BinaryPropertyList.h"
#include "foundation/FileContent.h"
#include "foundation/XmlPropertyList.h"

namespace portability {
namespace {

using Kind = PropertyListNode::Kind;

constexpr std::size_t kLargestFile = 16 << 20;

id newObject(const PropertyListNode& node);

NSNumber* newInteger(const std::string& text) {
    char* end = nullptr;
    const long long value = std::strtoll(text.c_str(), &end, 0);
    return end == text.c_str() ? nil : [[NSNumber alloc] initWithLongLong:value];
}

NSNumber* newReal(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    return end == text.c_str() ? nil : [[NSNumber alloc] initWithDouble:value];
}

NSDate* newDate(const std::string& text) {
    struct tm time = {};
    const char* end = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &time);
    return end == nullptr || *end != '\0'
               ? nil
               : [[NSDate alloc] initWithTimeIntervalSince1970:static_cast<NSTimeInterval>(timegm(&time))];
}

NSData* newData(const std::string& base64) {
    NSString* text = newString(std::string_view(base64));
    if (text == nil) {
        return nil;
    }
    NSData* data = [[NSData alloc] initWithBase64EncodedString:text
                                                       options:NSDataBase64DecodingIgnoreUnknownCharacters];
    [text release];
    return data;
}

NSArray* newArray(const PropertyListNode& node) {
    NSMutableArray* array = [[NSMutableArray alloc] initWithCapacity:node.members.size()];
    for (const auto& member : node.members) {
        const id value = newObject(member.second);
        if (value == nil) {
            [array release];
            return nil;
        }
        [array addObject:value];
        [value release];
    }
    return array;
}

NSDictionary* newDictionary(const PropertyListNode& node) {
    NSMutableDictionary* dictionary = [[NSMutableDictionary alloc] initWithCapacity:node.members.size()];
    for (const auto& member : node.members) {
        NSString* key = newString(std::string_view(member.first));
        const id value = newObject(member.second);
        const bool isComplete = key != nil && value != nil;
        if (isComplete) {
            [dictionary setObject:value forKey:key];
        }
        [key release];
        [value release];
        if (!isComplete) {
            [dictionary release];
            return nil;
        }
    }
    return dictionary;
}

id newObject(const PropertyListNode& node) {
    switch (node.kind) {
        case Kind::string:
            return newString(std::string_view(node.text));
        case Kind::integer:
            return newInteger(node.text);
        case Kind::real:
            return newReal(node.text);
        case Kind::boolean:
            return [[NSNumber alloc] initWithBool:node.text == "true"];
        case Kind::date:
            return newDate(node.text);
        case Kind::data:
            return newData(node.text);
        case Kind::array:
            return newArray(node);
        case Kind::dictionary:
            return newDictionary(node);
    }
    return nil;
}

// Foundation looks for the beginnings of some forms without regard to the end of the data. Blanks at the end
// are no part of a list; in two-byte texts, which it tells by their first byte, they would be.
NSData* newPaddedData(std::string_view content) {
    constexpr std::size_t kPadding = 32;
    const bool isTwoByteText = !content.empty() && static_cast<unsigned char>(content[0]) >= 0xFE;
    std::string padded(content);
    padded.append(isTwoByteText ? 0 : kPadding, ' ');
    return [[NSData alloc] initWithBytes:padded.data() length:padded.size()];
}

// Foundation knows binary forms of its own, which the platform does not have.
bool isFoundationsOwn(std::string_view content) {
    return !content.empty() && (content[0] == '\0' || content[0] == '\1');
}

// Foundation raises exceptions at damaged input.
id newObjectByFoundation(NSData* content, NSPropertyListFormat& format) {
    @try {
        NSString* error = nil;
        return [[NSPropertyListSerialization propertyListFromData:content
                                                 mutabilityOption:NSPropertyListImmutable
                                                           format:&format
                                                 errorDescription:&error] retain];
    } @catch (...) {
        return nil;
    }
}

NSDictionary* newStringsByFoundation(NSString* text) {
    @try {
        return [[text propertyListFromStringsFileFormat] retain];
    } @catch (...) {
        return nil;
    }
}

NSStringEncoding encodingOfStrings(const std::string& content) {
    const std::string_view start = std::string_view(content).substr(0, 2);
    return start == "\xFE\xFF" || start == "\xFF\xFE" ? NSUnicodeStringEncoding : NSUTF8StringEncoding;
}

}  // namespace

CFPropertyListRef copyPropertyListIn(std::string_view content, CFPropertyListFormat* format) {
    if (content.size() > kLargestFile) {
        return nullptr;
    }
    const AutoreleasePool pool;
    NSPropertyListFormat form = NSPropertyListXMLFormat_v1_0;
    id object = nil;
    if (isXmlPropertyList(content)) {
        const auto node = readXmlPropertyList(content);
        object = node ? newObject(*node) : nil;
    } else if (isBinaryPropertyList(content)) {
        form = NSPropertyListBinaryFormat_v1_0;
        object = newObjectOfBinaryPropertyList(content);
    } else if (!isFoundationsOwn(content)) {
        NSData* data = newPaddedData(content);
        object = newObjectByFoundation(data, form);
        [data release];
    }
    if (object != nil && format != nullptr) {
        *format = static_cast<CFPropertyListFormat>(form);
    }
    return object;
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
    const AutoreleasePool pool;
    NSString* text = [[NSString alloc] initWithBytes:content->data()
                                              length:content->size()
                                            encoding:encodingOfStrings(*content)];
    NSDictionary* strings = newStringsByFoundation(text);
    [text release];
    return (CFDictionaryRef)strings;
}

CFStringRef stringValue(CFDictionaryRef dictionary, CFStringRef key) {
    const void* value = dictionary == nullptr ? nullptr : CFDictionaryGetValue(dictionary, key);
    const bool isString = value != nullptr && CFGetTypeID(value) == CFStringGetTypeID();
    return isString ? static_cast<CFStringRef>(value) : nullptr;
}

}  // namespace portability
