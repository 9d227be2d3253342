#include "platform/text/CFStrings.h"

#include <gtest/gtest.h>

#include <string>

namespace dovrel {
namespace {

std::u16string toUtf16(const CFObject<CFStringRef>& string) {
    const CFIndex length = CFStringGetLength(string.get());
    std::u16string characters(static_cast<size_t>(length), u'\0');
    CFStringGetCharacters(string.get(), CFRangeMake(0, length),
                          reinterpret_cast<UniChar*>(characters.data()));
    return characters;
}

TEST(CFStrings, NewCFString_ReadsUTF8UnlessToldOtherwise) {
    EXPECT_EQ(toUtf16(newCFString("a\u00e9\U0001d11e")), u"a\u00e9\U0001d11e");
    EXPECT_EQ(toUtf16(newCFString("a\x8E", kCFStringEncodingMacRoman)), u"a\u00e9");
}

TEST(CFStrings, NewCFString_OfBytesThatAreNotValid_IsEmpty) {
    EXPECT_FALSE(newCFString("\x8E"));
}

TEST(CFStrings, UTF8Text_IsTheTextOfTheString) {
    for (const char* text : {"", "a", "a\u00e9\u65e5\U0001d11e"})
        EXPECT_EQ(utf8Text(newCFString(text).get()), text);
}

TEST(CFStrings, IsEqual_ComparesTheCharactersWithTheOptions) {
    const CFObject<CFStringRef> string = newCFString("Caf\u00e9");
    EXPECT_TRUE(isEqual(string.get(), "Caf\u00e9", 0));
    EXPECT_FALSE(isEqual(string.get(), "Caf", 0));
    EXPECT_FALSE(isEqual(string.get(), "CAF\u00e9", 0));
    EXPECT_TRUE(isEqual(string.get(), "CAF\u00e9", kCFCompareCaseInsensitive));
}

TEST(CFStrings, IsEqual_ToBytesThatAreNotValid_IsFalse) {
    EXPECT_FALSE(isEqual(newCFString("").get(), "\xFF", 0));
}

}  // namespace
}  // namespace dovrel
