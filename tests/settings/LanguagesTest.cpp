#include "settings/Languages.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "platform/CFObject.h"

namespace dovrel {
namespace {

// Returns the language for a preference with this value (in an XML property list).
std::string languageOfValue(const std::string& value) {
    const std::string list = "<plist version=\"1.0\">" + value + "</plist>";
    const CFObject<CFDataRef> data(CFDataCreate(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(list.data()), static_cast<CFIndex>(list.size())));
    const CFObject<CFPropertyListRef> preference(CFPropertyListCreateWithData(
        kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, nullptr, nullptr));
    EXPECT_TRUE(preference) << list;
    return languageFromPreference(preference.get());
}

// Returns the language for a preference with these entries.
std::string languageOf(std::initializer_list<const char*> entries) {
    std::string array;
    for (const char* entry : entries)
        array += std::string("<string>") + entry + "</string>";
    return languageOfValue("<array>" + array + "</array>");
}

TEST(Languages, LanguageFromPreference_EveryRowOfTheTable) {
    EXPECT_EQ(languageOf({"de"}), "German");
    EXPECT_EQ(languageOf({"German"}), "German");
    EXPECT_EQ(languageOf({"fr"}), "Francais");
    EXPECT_EQ(languageOf({"French"}), "Francais");
    EXPECT_EQ(languageOf({"es"}), "Spanish");
    EXPECT_EQ(languageOf({"Spanish"}), "Spanish");
    EXPECT_EQ(languageOf({"it"}), "Italian");
    EXPECT_EQ(languageOf({"Italian"}), "Italian");
    EXPECT_EQ(languageOf({"ja"}), "Japanese");
    EXPECT_EQ(languageOf({"Japanese"}), "Japanese");
    EXPECT_EQ(languageOf({"en"}), "English");
}

TEST(Languages, LanguageFromPreference_FirstEntryDecides) {
    EXPECT_EQ(languageOf({"fr", "de"}), "Francais");
    EXPECT_EQ(languageOf({"nl", "de"}), "English");
}

TEST(Languages, LanguageFromPreference_EntryNotInTheTable_IsEnglish) {
    for (const char* entry : {"nl", "DE", "german", "de-DE", "fr_FR", "", " de",
                              "Fran\xC3\xA7"
                              "ais"}) {
        EXPECT_EQ(languageOf({entry}), "English") << entry;
    }
}

TEST(Languages, LanguageFromPreference_EmptyArray_IsEnglish) {
    EXPECT_EQ(languageOf({}), "English");
}

TEST(Languages, LanguageFromPreference_NoPreference_IsEnglish) {
    EXPECT_EQ(languageFromPreference(nullptr), "English");
}

TEST(Languages, LanguageFromPreference_AnythingButAnArrayOfStrings_IsEnglish) {
    EXPECT_EQ(languageOfValue("<string>de</string>"), "English");
    EXPECT_EQ(languageOfValue("<array><integer>1</integer></array>"), "English");
}

}  // namespace
}  // namespace dovrel
