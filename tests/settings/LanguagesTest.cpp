#include "settings/Languages.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "platform/CFObject.h"

namespace dovrel {
namespace {

// Returns the language for a preference with this value (in an XML property list).
std::string parseLanguage(const std::string& value) {
    const std::string list = "<plist version=\"1.0\">" + value + "</plist>";
    const CFObject<CFDataRef> data(CFDataCreate(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(list.data()), static_cast<CFIndex>(list.size())));
    const CFObject<CFPropertyListRef> preference(CFPropertyListCreateWithData(
        kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, nullptr, nullptr));
    EXPECT_TRUE(preference) << list;
    return languageFromPreference(preference.get());
}

// Returns the language for a preference with these entries.
std::string readLanguage(std::initializer_list<const char*> entries) {
    std::string array;
    for (const char* entry : entries)
        array += std::string("<string>") + entry + "</string>";
    return parseLanguage("<array>" + array + "</array>");
}

TEST(Languages, LanguageFromPreference_EveryRowOfTheTable) {
    EXPECT_EQ(readLanguage({"de"}), "German");
    EXPECT_EQ(readLanguage({"German"}), "German");
    EXPECT_EQ(readLanguage({"fr"}), "Francais");
    EXPECT_EQ(readLanguage({"French"}), "Francais");
    EXPECT_EQ(readLanguage({"es"}), "Spanish");
    EXPECT_EQ(readLanguage({"Spanish"}), "Spanish");
    EXPECT_EQ(readLanguage({"it"}), "Italian");
    EXPECT_EQ(readLanguage({"Italian"}), "Italian");
    EXPECT_EQ(readLanguage({"ja"}), "Japanese");
    EXPECT_EQ(readLanguage({"Japanese"}), "Japanese");
    EXPECT_EQ(readLanguage({"en"}), "English");
}

TEST(Languages, LanguageFromPreference_FirstEntryDecides) {
    EXPECT_EQ(readLanguage({"fr", "de"}), "Francais");
    EXPECT_EQ(readLanguage({"nl", "de"}), "English");
}

TEST(Languages, LanguageFromPreference_EntryNotInTheTable_IsEnglish) {
    for (const char* entry : {"nl", "DE", "german", "de-DE", "fr_FR", "", " de",
                              "Fran\xC3\xA7"
                              "ais"}) {
        EXPECT_EQ(readLanguage({entry}), "English") << entry;
    }
}

TEST(Languages, LanguageFromPreference_EmptyArray_IsEnglish) {
    EXPECT_EQ(readLanguage({}), "English");
}

TEST(Languages, LanguageFromPreference_NoPreference_IsEnglish) {
    EXPECT_EQ(languageFromPreference(nullptr), "English");
}

TEST(Languages, LanguageFromPreference_AnythingButAnArrayOfStrings_IsEnglish) {
    EXPECT_EQ(parseLanguage("<string>de</string>"), "English");
    EXPECT_EQ(parseLanguage("<array><integer>1</integer></array>"), "English");
}

TEST(Languages, LanguageWithTexts_IsEnglishForThoseWithoutTexts) {
    for (const char* language : {"Spanish", "Italian", "Japanese", "English"})
        EXPECT_EQ(languageWithTexts(language), "English");
    EXPECT_EQ(languageWithTexts("German"), "German");
    EXPECT_EQ(languageWithTexts("Francais"), "Francais");
    EXPECT_EQ(languageWithTexts("Other"), "Other");
}

}  // namespace
}  // namespace dovrel
