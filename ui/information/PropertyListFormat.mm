#include "ui/information/PropertyListFormat.h"

#import <Foundation/Foundation.h>

namespace dovrel {

namespace {

// Returns null if Foundation raises an exception, which it does for a text that it cannot parse. The
// Objective-C exception is caught here. No C++ exception passes through this function.
NSString* newDescription(const char* list) {
    @try {
        const id value = [[NSString stringWithUTF8String:list] propertyList];
        return value != nil ? [[NSString stringWithFormat:@"%@", value] retain] : nil;
    } @catch (...) {
        return nil;
    }
}

}  // namespace

std::optional<std::string> formatPropertyList(const std::string& list) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSString* const description = newDescription(list.c_str());
    std::optional<std::string> text;
    if (description != nil) text = [description UTF8String];
    [description release];
    [pool release];
    return text;
}

}  // namespace dovrel
