#include "ui/PropertyText.h"

#import <Foundation/Foundation.h>

#include "platform/CFObject.h"
#include "platform/Places.h"

namespace dovrel {

namespace {

/// The content of a file that is there. An absent one is asked for first, because reading it would be logged.
NSData* contentOfFile(NSString* path) {
    NSFileManager* const files = [NSFileManager defaultManager];
    return path != nil && [files fileExistsAtPath:path] ? [files contentsAtPath:path] : nil;
}

/// Core Foundation is asked, because not every Foundation bears with damaged lists, or reads all forms.
std::optional<std::string> textInContent(NSData* content, NSString* key) {
    const CFObject<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, static_cast<const UInt8*>([content bytes]),
                                                static_cast<CFIndex>([content length])));
    const CFObject<CFPropertyListRef> list(CFPropertyListCreateWithData(
        kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, nullptr, nullptr));
    if (!list || CFGetTypeID(list.get()) != CFDictionaryGetTypeID()) return std::nullopt;
    return textOfValue(CFDictionaryGetValue((CFDictionaryRef)list.get(), key));
}

}  // namespace

std::optional<std::string> textOfValue(CFTypeRef value) {
    if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID()) return std::nullopt;
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSData* const bytes = [(NSString*)value dataUsingEncoding:NSUTF8StringEncoding];
    std::optional<std::string> text;
    if (bytes != nil) text.emplace(static_cast<const char*>([bytes bytes]), [bytes length]);
    [pool release];
    return text;
}

std::optional<std::string> textInPropertyList(const std::string& path, const std::string& key) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSData* const content = contentOfFile([NSString stringWithUTF8String:fileSystemPath(path).c_str()]);
    NSString* const name = [NSString stringWithUTF8String:key.c_str()];
    std::optional<std::string> text;
    if (content != nil && name != nil) text = textInContent(content, name);
    [pool release];
    return text;
}

}  // namespace dovrel
