#include "ui/information/PropertyListFormat.h"

#import <Foundation/Foundation.h>

#include <new>

namespace dovrel {

namespace {

// Returns null if Foundation raises an exception, which it does for a text that it cannot parse. The
// Objective-C exception is caught here. No C++ exception passes through this function. The text is autoreleased.
const char* description(const char* list) {
    @try {
        const id value = [[NSString stringWithUTF8String:list] propertyList];
        return value != nil ? [[NSString stringWithFormat:@"%@", value] UTF8String] : nullptr;
    } @catch (...) {
        return nullptr;
    }
}

}  // namespace

std::optional<std::string> formatPropertyList(const std::string& list) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    const char* const text = description(list.c_str());
    std::optional<std::string> copy;
    try {
        if (text != nullptr) copy = text;
    } catch (const std::bad_alloc&) {
        // The pool must be released all the same. Without memory there is no text.
    }
    [pool release];
    return copy;
}

}  // namespace dovrel
