#include "ui/information/PropertyText.h"

#import <Foundation/Foundation.h>

#include <vector>

#include "platform/CFObject.h"
#include "platform/files/Places.h"

namespace dovrel {

namespace {

/// The content of a file that is there. An absent one is asked for first, because reading it would be logged.
NSData* contentOfFile(NSString* path) {
    NSFileManager* const files = [NSFileManager defaultManager];
    return path != nil && [files fileExistsAtPath:path] ? [files contentsAtPath:path] : nil;
}

std::optional<std::string> textOfString(CFStringRef string) {
    const CFIndex length =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
    std::vector<char> bytes(static_cast<size_t>(length) + 1);
    if (!CFStringGetCString(string, bytes.data(), length + 1, kCFStringEncodingUTF8)) return std::nullopt;
    return bytes.data();
}

// Foundation raises for a text that it cannot read. Objective-C exceptions end here; no C++ exception passes
// through.
NSString* newDescription(const char* list) {
    @try {
        const id value = [[NSString stringWithUTF8String:list] propertyList];
        return value != nil ? [[NSString stringWithFormat:@"%@", value] retain] : nil;
    } @catch (...) {
        return nil;
    }
}

/// "%@" shows Foundation's objects, so the value passes to Foundation as text.
std::optional<std::string> formattedValue(CFPropertyListRef value) {
    const CFObject<CFDataRef> list(
        CFPropertyListCreateData(kCFAllocatorDefault, value, kCFPropertyListXMLFormat_v1_0, 0, nullptr));
    if (!list) return std::nullopt;
    const UInt8* const bytes = CFDataGetBytePtr(list.get());
    const std::string xml(bytes, bytes + CFDataGetLength(list.get()));
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSString* const description = newDescription(xml.c_str());
    std::optional<std::string> text;
    if (description != nil) text = [description UTF8String];
    [description release];
    [pool release];
    return text;
}

std::optional<std::string> textInContent(CFDataRef content, const std::string& key) {
    const CFObject<CFPropertyListRef> list(CFPropertyListCreateWithData(
        kCFAllocatorDefault, content, kCFPropertyListImmutable, nullptr, nullptr));
    const CFObject<CFStringRef> name(
        CFStringCreateWithCString(kCFAllocatorDefault, key.c_str(), kCFStringEncodingUTF8));
    if (!list || !name || CFGetTypeID(list.get()) != CFDictionaryGetTypeID()) return std::nullopt;
    return textOfValue(CFDictionaryGetValue(static_cast<CFDictionaryRef>(list.get()), name.get()));
}

}  // namespace

std::optional<std::string> textOfValue(CFTypeRef value) {
    if (value == nullptr) return std::nullopt;
    const bool isString = CFGetTypeID(value) == CFStringGetTypeID();
    return isString ? textOfString(static_cast<CFStringRef>(value)) : formattedValue(value);
}

std::optional<std::string> textInPropertyList(const std::string& path, const std::string& key) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSData* const content = contentOfFile([NSString stringWithUTF8String:fileSystemPath(path).c_str()]);
    std::optional<std::string> text;
    if (content != nil) {
        const CFObject<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                                    static_cast<const UInt8*>([content bytes]),
                                                    static_cast<CFIndex>([content length])));
        if (data) text = textInContent(data.get(), key);
    }
    [pool release];
    return text;
}

}  // namespace dovrel
