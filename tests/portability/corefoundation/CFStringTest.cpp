// Contract tests of strings.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <string>
#include <vector>

#include "tests/portability/support/Held.h"

namespace {

std::vector<int> getUnits(CFStringRef string) {
    std::vector<UniChar> units(static_cast<std::size_t>(CFStringGetLength(string)));
    CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)), units.data());
    return std::vector<int>(units.begin(), units.end());
}

bool isAccepted(const char* bytes, CFStringEncoding encoding) {
    const Held<CFStringRef> string(CFStringCreateWithCString(kCFAllocatorDefault, bytes, encoding));
    return string.get() != nullptr;
}

}  // namespace

TEST(CFString, CreateWithCString_UTF8_ReturnsUTF16UnitsWithSurrogatePairs) {
    const Held<CFStringRef> string(newString("a\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E"));
    EXPECT_EQ(getUnits(string.get()), (std::vector<int>{'a', 0x00E4, 0x20AC, 0xD834, 0xDD1E}));
}

TEST(CFString, CreateWithCString_MacRoman_ReturnsItsCharacters) {
    const Held<CFStringRef> string(CFStringCreateWithCString(
        kCFAllocatorDefault, "\x80\xA7\xDB\xBD\xF0\xCA\xFF", kCFStringEncodingMacRoman));
    EXPECT_EQ(getUnits(string.get()),
              (std::vector<int>{0x00C4, 0x00DF, 0x20AC, 0x03A9, 0xF8FF, 0x00A0, 0x02C7}));
}

TEST(CFString, CreateWithCString_EveryByteInMacRoman_IsAcceptedAndComesBack) {
    std::string bytes;
    for (int byte = 1; byte <= 255; ++byte) {
        bytes += static_cast<char>(byte);
    }
    const Held<CFStringRef> string(
        CFStringCreateWithCString(kCFAllocatorDefault, bytes.c_str(), kCFStringEncodingMacRoman));
    ASSERT_NE(string.get(), nullptr);
    ASSERT_EQ(CFStringGetLength(string.get()), 255);
    std::array<char, 256> back;
    ASSERT_TRUE(CFStringGetCString(string.get(), back.data(), 256, kCFStringEncodingMacRoman));
    EXPECT_EQ(std::string(back.data()), bytes);
}

TEST(CFString, CreateWithCString_BytesInvalidForTheEncoding_IsNull) {
    EXPECT_FALSE(isAccepted("\x80", kCFStringEncodingUTF8)) << "continuation without a beginning";
    EXPECT_FALSE(isAccepted("\xC3", kCFStringEncodingUTF8)) << "cut sequence";
    EXPECT_FALSE(isAccepted("\xC3z", kCFStringEncodingUTF8)) << "broken sequence";
    EXPECT_FALSE(isAccepted("\xC0\xAF", kCFStringEncodingUTF8)) << "longer than needed";
    EXPECT_FALSE(isAccepted("\xED\xA0\x80", kCFStringEncodingUTF8)) << "half a surrogate pair";
    EXPECT_FALSE(isAccepted("\xF4\x90\x80\x80", kCFStringEncodingUTF8)) << "beyond the last character";
    EXPECT_FALSE(isAccepted("\xF8\x88\x80\x80\x80", kCFStringEncodingUTF8)) << "five bytes";
    EXPECT_FALSE(isAccepted("\x80", kCFStringEncodingASCII));
}

TEST(CFString, CreateWithCString_EmptyText_IsAStringOfLengthZero) {
    const Held<CFStringRef> string(newString(""));
    ASSERT_NE(string.get(), nullptr);
    EXPECT_EQ(CFStringGetLength(string.get()), 0);
    EXPECT_EQ(toText(string.get()), "");
}

TEST(CFString, GetCString_BufferOfExactlyTextAndZero_Succeeds) {
    std::array<char, 6> buffer = {'#', '#', '#', '#', '#', '#'};
    EXPECT_TRUE(CFStringGetCString(CFSTR("abcd"), buffer.data(), 5, kCFStringEncodingUTF8));
    EXPECT_EQ(std::string(buffer.data()), "abcd");
    EXPECT_EQ(buffer[5], '#');
}

TEST(CFString, GetCString_BufferTooSmall_IsFalseWithEmptyBufferAndNothingCutOff) {
    std::array<char, 5> buffer = {'#', '#', '#', '#', '#'};
    EXPECT_FALSE(CFStringGetCString(CFSTR("abcd"), buffer.data(), 4, kCFStringEncodingUTF8));
    EXPECT_EQ(buffer[0], '\0');
    EXPECT_EQ(buffer[4], '#');
}

TEST(CFString, GetCString_NoRoomAtAll_IsFalseAndTouchesNothing) {
    char buffer = '#';
    EXPECT_FALSE(CFStringGetCString(CFSTR(""), &buffer, 0, kCFStringEncodingUTF8));
    EXPECT_EQ(buffer, '#');
    EXPECT_TRUE(CFStringGetCString(CFSTR(""), &buffer, 1, kCFStringEncodingUTF8));
    EXPECT_EQ(buffer, '\0');
}

TEST(CFString, GetCString_NotExpressibleInTheEncoding_IsFalseWithEmptyBuffer) {
    const Held<CFStringRef> string(newString("x\xD0\x96"));  // a Cyrillic letter
    for (const CFStringEncoding encoding :
         {CFStringEncoding{kCFStringEncodingMacRoman}, CFStringEncoding{kCFStringEncodingASCII},
          CFStringEncoding{kCFStringEncodingISOLatin1}}) {
        std::array<char, 16> buffer = {'#'};
        EXPECT_FALSE(CFStringGetCString(string.get(), buffer.data(), 16, encoding)) << encoding;
        EXPECT_EQ(buffer[0], '\0') << encoding;
    }
}

TEST(CFString, GetMaximumSizeForEncoding_IsEnoughForTheLongestText) {
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingMacRoman), 10);
    EXPECT_GE(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingUTF8), 30);
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(0, kCFStringEncodingUTF8), 0);
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(LONG_MAX, kCFStringEncodingUTF8), kCFNotFound);
}

TEST(CFString, GetCharacters_OfARange_CopiesOnlyThat) {
    std::array<UniChar, 4> units = {'#', '#', '#', '#'};
    CFStringGetCharacters(CFSTR("abcdef"), CFRangeMake(2, 3), units.data());
    EXPECT_EQ(units, (std::array<UniChar, 4>{'c', 'd', 'e', '#'}));
}

TEST(CFString, Compare_WithoutOptions_OrdersByUnits) {
    EXPECT_EQ(CFStringCompare(CFSTR("de"), CFSTR("de"), 0), kCFCompareEqualTo);
    EXPECT_EQ(CFStringCompare(CFSTR("de"), CFSTR("fr"), 0), kCFCompareLessThan);
    EXPECT_EQ(CFStringCompare(CFSTR("fr"), CFSTR("de"), 0), kCFCompareGreaterThan);
    EXPECT_EQ(CFStringCompare(CFSTR("de"), CFSTR("de-CH"), 0), kCFCompareLessThan);
    EXPECT_EQ(CFStringCompare(CFSTR("German"), CFSTR("german"), 0), kCFCompareLessThan);
    EXPECT_EQ(CFStringCompare(CFSTR(""), CFSTR("a"), 0), kCFCompareLessThan);
}

TEST(CFString, Compare_WithoutOptions_TellsComposedFromDecomposed) {
    const Held<CFStringRef> composed(newString("\xC3\xA9"));
    const Held<CFStringRef> decomposed(newString("e\xCC\x81"));
    EXPECT_NE(CFStringCompare(composed.get(), decomposed.get(), 0), kCFCompareEqualTo);
}

TEST(CFString, Compare_CaseInsensitive_IgnoresCase) {
    EXPECT_EQ(CFStringCompare(CFSTR("com.Quernvale.Halcon"), CFSTR("COM.quernvale.halcon"),
                              kCFCompareCaseInsensitive),
              kCFCompareEqualTo);
    EXPECT_EQ(CFStringCompare(CFSTR("a"), CFSTR("B"), kCFCompareCaseInsensitive), kCFCompareLessThan);
}

TEST(CFString, GetMostCompatibleMacStringEncoding_FollowsTheFamily) {
    EXPECT_EQ(CFStringGetMostCompatibleMacStringEncoding(kCFStringEncodingMacRoman), 0U);
    EXPECT_EQ(CFStringGetMostCompatibleMacStringEncoding(1), 1U);
    EXPECT_EQ(CFStringGetMostCompatibleMacStringEncoding(kCFStringEncodingUTF16), 0x0100U);
    EXPECT_EQ(CFStringGetMostCompatibleMacStringEncoding(kCFStringEncodingUTF8), 0x0100U);
    EXPECT_EQ(CFStringGetMostCompatibleMacStringEncoding(kCFStringEncodingISOLatin1), 0U);
    EXPECT_EQ(CFStringGetMostCompatibleMacStringEncoding(kCFStringEncodingWindowsLatin1), 0U);
    EXPECT_EQ(CFStringGetMostCompatibleMacStringEncoding(0x0B01), kCFStringEncodingInvalidId);
}

TEST(CFString, ConvertEncodingToNSStringEncoding_KnowsTheUsualOnesAndMarksTheOthers) {
    EXPECT_EQ(CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingMacRoman), 30UL);
    EXPECT_EQ(CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingWindowsLatin1), 12UL);
    EXPECT_EQ(CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingISOLatin1), 5UL);
    EXPECT_EQ(CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingASCII), 1UL);
    EXPECT_EQ(CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingUTF16), 10UL);
    EXPECT_EQ(CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingUTF8), 4UL);
    EXPECT_EQ(CFStringConvertEncodingToNSStringEncoding(0x0627), 0x80000627UL);
}

TEST(CFString, GetSystemEncoding_WesternSystem_IsMacRoman) {
    EXPECT_EQ(CFStringGetSystemEncoding(), CFStringEncoding{kCFStringEncodingMacRoman});
}

TEST(CFString, MakeConstantString_IsTheStringOfTheTextAndNeedsNoRelease) {
    const CFStringRef string = __CFStringMakeConstantString("once");
    EXPECT_EQ(toText(string), "once");
    EXPECT_EQ(CFStringCompare(string, CFSTR("once"), 0), kCFCompareEqualTo);
}

TEST(CFString, CFSTR_OfTheSameText_IsTheSameString) {
    EXPECT_EQ(CFStringCompare(CFSTR("once"), CFSTR("once"), 0), kCFCompareEqualTo);
    EXPECT_EQ(CFGetTypeID(CFSTR("once")), CFStringGetTypeID());
    CFRelease(CFRetain(CFSTR("once")));
    EXPECT_EQ(toText(CFSTR("once")), "once");
}
