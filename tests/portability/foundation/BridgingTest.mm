// Core Foundation's objects are Foundation's own: a reference of one kind may be used as the other.
#import <Foundation/Foundation.h>

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <string>

#include "Held.h"

namespace {

class Bridging : public testing::Test {
   protected:
    ~Bridging() override { [pool_ release]; }

    static std::string utf8(NSString* string) { return string == nil ? "(nil)" : [string UTF8String]; }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
};

}  // namespace

TEST_F(Bridging, CFString_IsAnNSString) {
    const Held<CFStringRef> string(newString("caf\xC3\xA9"));
    EXPECT_EQ(utf8((NSString*)string.get()), "caf\xC3\xA9");
    EXPECT_TRUE([(NSString*)CFSTR("constant") isEqualToString:@"constant"]);
}

TEST_F(Bridging, NSString_IsACFString) {
    EXPECT_EQ(textOf((CFStringRef) @"constant"), "constant");
    EXPECT_EQ(textOf((CFStringRef)[NSMutableString stringWithString:@"changing"]), "changing");
    EXPECT_EQ(CFGetTypeID(@"constant"), CFStringGetTypeID());
}

TEST_F(Bridging, CFURL_IsAnNSURLWhoseSlashTellsADirectory) {
    const Held<CFURLRef> file(newFileURL("/tmp/a b;c", false));
    const Held<CFURLRef> folder(newFileURL("/tmp/a b;c", true));
    EXPECT_EQ(utf8([(NSURL*)file.get() absoluteString]), "file:///tmp/a%20b%3Bc");
    EXPECT_EQ(utf8([(NSURL*)folder.get() absoluteString]), "file:///tmp/a%20b%3Bc/");
    EXPECT_EQ(utf8([(NSURL*)file.get() path]), "/tmp/a b;c");
}

TEST_F(Bridging, NSURL_IsACFURL) {
    NSURL* url = [NSURL fileURLWithPath:@"/tmp/some file#1"];
    EXPECT_EQ(pathOf((CFURLRef)url), "/tmp/some file#1");
    EXPECT_EQ(CFGetTypeID(url), CFURLGetTypeID());
}

TEST_F(Bridging, NSURLsOfOtherKinds_TakeComponentsInTheirPathAlone) {
    const Held<CFURLRef> page(CFURLCreateCopyAppendingPathComponent(
        nullptr, (CFURLRef)[NSURL URLWithString:@"http://host.example/a?query#part"], CFSTR("b"), false));
    EXPECT_EQ(utf8([(NSURL*)page.get() absoluteString]), "http://host.example/a/b?query#part");
    EXPECT_EQ(CFURLCreateCopyAppendingPathComponent(
                  nullptr, (CFURLRef)[NSURL URLWithString:@"mailto:a@b.example"], CFSTR("b"), false),
              nullptr);
    EXPECT_EQ(CFURLCreateCopyAppendingPathComponent(
                  nullptr, (CFURLRef)[NSURL URLWithString:@"http://host.example"], CFSTR("b"), false),
              nullptr);
}

TEST_F(Bridging, GetFileSystemRepresentation_BytesThatAreNotUTF8_AreKept) {
    EXPECT_EQ(pathOf((CFURLRef)[NSURL URLWithString:@"file:///tmp/%FFname"]), "/tmp/\xFFname");
}

TEST_F(Bridging, NSArrayAndNSDictionary_AreReadByCoreFoundation) {
    NSArray* array = [NSArray arrayWithObjects:@"one", @"two", nil];
    EXPECT_EQ(CFArrayGetCount((CFArrayRef)array), 2);
    EXPECT_EQ(textOf(CFArrayGetValueAtIndex((CFArrayRef)array, 1)), "two");
    NSDictionary* dictionary = [NSDictionary dictionaryWithObject:@"value" forKey:@"key"];
    EXPECT_EQ(textOf(CFDictionaryGetValue((CFDictionaryRef)dictionary, CFSTR("key"))), "value");
    EXPECT_EQ(CFGetTypeID(array), CFArrayGetTypeID());
    EXPECT_EQ(CFGetTypeID(dictionary), CFDictionaryGetTypeID());
    EXPECT_NE(CFGetTypeID([NSNumber numberWithInt:1]), CFStringGetTypeID());
}

TEST_F(Bridging, RetainAndRelease_CountForBothSides) {
    NSMutableString* string = [[NSMutableString alloc] initWithString:@"counted"];
    CFRetain(string);
    EXPECT_EQ([string retainCount], 2U);
    CFRelease(string);
    EXPECT_EQ([string retainCount], 1U);
    [string release];
}
