#include "settings/TextsLocation.h"

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "platform/CFObject.h"
#include "platform/Places.h"
#include "tests/settings/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel {
namespace {

// The language for a preference that is this value of an XML property list.
std::string languageOfValue(const std::string& value) {
    const std::string list = "<plist version=\"1.0\">" + value + "</plist>";
    const CFObject<CFDataRef> data(CFDataCreate(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(list.data()), static_cast<CFIndex>(list.size())));
    const CFObject<CFPropertyListRef> preference(CFPropertyListCreateWithData(
        kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, nullptr, nullptr));
    EXPECT_TRUE(preference) << list;
    return languageOfPreference(preference.get());
}

// The language for a preference of these entries.
std::string languageOf(std::initializer_list<const char*> entries) {
    std::string array;
    for (const char* entry : entries)
        array += std::string("<string>") + entry + "</string>";
    return languageOfValue("<array>" + array + "</array>");
}

TEST(TextsLocation, LanguageOfPreference_EveryRowOfTheTable) {
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

TEST(TextsLocation, LanguageOfPreference_FirstEntryDecides) {
    EXPECT_EQ(languageOf({"fr", "de"}), "Francais");
    EXPECT_EQ(languageOf({"nl", "de"}), "English");
}

TEST(TextsLocation, LanguageOfPreference_EntryNotInTheTable_IsEnglish) {
    for (const char* entry : {"nl", "DE", "german", "de-DE", "fr_FR", "", " de",
                              "Fran\xC3\xA7"
                              "ais"}) {
        EXPECT_EQ(languageOf({entry}), "English") << entry;
    }
}

TEST(TextsLocation, LanguageOfPreference_EmptyArray_IsEnglish) {
    EXPECT_EQ(languageOf({}), "English");
}

TEST(TextsLocation, LanguageOfPreference_NoPreference_IsEnglish) {
    EXPECT_EQ(languageOfPreference(nullptr), "English");
}

TEST(TextsLocation, LanguageOfPreference_AnythingButAnArrayOfStrings_IsEnglish) {
    EXPECT_EQ(languageOfValue("<string>de</string>"), "English");
    EXPECT_EQ(languageOfValue("<array><integer>1</integer></array>"), "English");
}

TEST(TextsLocation, TextsFilePath_IsInTheResourcesOfTheLibrarysBundle) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(textsFilePath(folder.path() + "/"),
              folder.path("Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls"));
    EXPECT_EQ(textsFilePath(folder.path("a b%20\xC3\xA9") + "/"),
              folder.path("a b%20\xC3\xA9/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls"));
}

TEST(TextsLocation, TextsFilePath_OfTheInstallFolder_EndsWithItsPlace) {
    const std::string path = textsFilePath(places::kInstallFolder);
    const std::string end =
        "/Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls";
    ASSERT_GE(path.size(), end.size());
    EXPECT_EQ(path.substr(path.size() - end.size()), end);
}

TEST(TextsLocation, TextsFilePath_FolderThatIsNoText_ThrowsTheSorryMessage) {
    EXPECT_EQ(test::failureOf([] { textsFilePath("/folder\xFF/"); }),
              "Sorry, could not read file 'MultiLanguageTexts.mls'...");
}

TEST(TextsLocation, TextsFilePath_PathTooLongForTheSystem_ThrowsTheSorryMessage) {
    EXPECT_EQ(test::failureOf([] { textsFilePath("/" + std::string(5000, 'a') + "/"); }),
              "Sorry, could not read file 'MultiLanguageTexts.mls'...");
}

}  // namespace
}  // namespace dovrel
