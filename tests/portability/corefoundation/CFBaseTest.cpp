// Contract tests of object ownership.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include "tests/portability/support/Held.h"

TEST(CFBase, Retain_ReturnsTheSameObjectAndKeepsItPastOneRelease) {
    const CFStringRef string = newString("kept for long enough to need memory");
    EXPECT_EQ(CFRetain(string), string);
    CFRelease(string);
    EXPECT_EQ(toText(string), "kept for long enough to need memory");
    CFRelease(string);
}

TEST(CFBase, GetTypeID_TellsTheKindsApart) {
    const Held<CFURLRef> url(newFileURL("/tmp"));
    const Held<CFBundleRef> bundle(CFBundleCreate(kCFAllocatorDefault, url.get()));
    ASSERT_NE(bundle.get(), nullptr);
    EXPECT_EQ(CFGetTypeID(CFSTR("x")), CFStringGetTypeID());
    EXPECT_EQ(CFGetTypeID(url.get()), CFURLGetTypeID());
    EXPECT_EQ(CFGetTypeID(bundle.get()), CFBundleGetTypeID());
    EXPECT_NE(CFStringGetTypeID(), CFURLGetTypeID());
    EXPECT_NE(CFURLGetTypeID(), CFBundleGetTypeID());
    EXPECT_NE(CFArrayGetTypeID(), CFDictionaryGetTypeID());
    EXPECT_NE(CFArrayGetTypeID(), CFStringGetTypeID());
}

TEST(CFBaseDeathTest, NullReference_EndsTheProgram) {
    EXPECT_DEATH(CFRelease(nullptr), "");
    EXPECT_DEATH(CFRetain(nullptr), "");
    EXPECT_DEATH(CFGetTypeID(nullptr), "");
    EXPECT_DEATH(CFStringCompare(nullptr, CFSTR("x"), 0), "");
    EXPECT_DEATH(CFStringCompare(CFSTR("x"), nullptr, 0), "");
}

TEST(CFBase, AllocatorDefault_IsNull) {
    EXPECT_EQ(kCFAllocatorDefault, nullptr);
}

TEST(CFBase, RangeMake_TakesLocationAndLength) {
    const CFRange range = CFRangeMake(3, 4);
    EXPECT_EQ(range.location, 3);
    EXPECT_EQ(range.length, 4);
}
