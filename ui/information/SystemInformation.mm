#include "ui/information/SystemInformation.h"

#import <Foundation/Foundation.h>

#include "platform/files/Places.h"
#include "ui/information/PropertyText.h"

namespace dovrel {

namespace {

constexpr char kProductName[] = "ProductName";
constexpr char kProductVersion[] = "ProductVersion";
constexpr char kProductBuildVersion[] = "ProductBuildVersion";
constexpr char kArchitecture[] = "x86";
constexpr char kMissingText[] = "-";

/// Returns nil if there is no text; "%@" formats nil as "(null)".
NSString* toFoundationString(const std::optional<std::string>& text) {
    return text ? [NSString stringWithUTF8String:text->c_str()] : nil;
}

std::string pairText(const std::optional<std::string>& first, const std::optional<std::string>& second) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSString* const pair =
        [NSString stringWithFormat:@"%@ (%@)", toFoundationString(first), toFoundationString(second)];
    const char* const bytes = [pair UTF8String];
    const std::string text = bytes != nullptr && *bytes != '\0' ? bytes : kMissingText;
    [pool release];
    return text;
}

}  // namespace

std::optional<std::string> systemVersionValue(const std::string& key) {
    return textInPropertyList(places::kSystemVersionFile, key);
}

std::string osNameText() { return pairText(systemVersionValue(kProductName), kArchitecture); }

std::string osVersionText() {
    return pairText(systemVersionValue(kProductVersion), systemVersionValue(kProductBuildVersion));
}

}  // namespace dovrel
