#include "settings/MultiLanguageSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/files/Places.h"
#include "settings/EncipheredText.h"
#include "tests/support/InstalledTexts.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::InstalledTexts;

const std::string kTexts =
    "//version\nINT:1\n"
    "//LANGUAGE\nSTR:English\n//hello\nSTR:Hello\n//only english\nSTR:yes\n"
    "//LANGUAGE\nSTR:German\n//hello\nSTR:Hallo\n"
    "//LANGUAGE\nSTR:Francais\n//hello\nSTR:Bonjour\n";

std::string helloIn(const std::string& language) {
    MultiLanguageSupport::initialize(language);
    return MultiLanguageSupport::getText("hello");
}

// Installs a file with this text and returns the text that the library shows.
std::string shown(const InstalledTexts& installation, const std::string& text) {
    installation.install("//LANGUAGE\nSTR:English\n//t\nSTR:" + text + "\n");
    MultiLanguageSupport::initialize("English");
    return MultiLanguageSupport::getText("t");
}

TEST(MultiLanguageSupport, BeforeInitialize_NothingIsLoadedAndTextsAreEmpty) {
    // Holds only in a new process. Each of these tests runs in one.
    EXPECT_FALSE(MultiLanguageSupport::isLoaded());
    EXPECT_EQ(MultiLanguageSupport::getText("hello"), "");
}

TEST(MultiLanguageSupport, DetectLanguage_FirstPreferredLanguage) {
    const InstalledTexts installation;
    installation.preferLanguages("<array><string>fr</string><string>de</string></array>");
    EXPECT_EQ(MultiLanguageSupport::detectLanguage(), "Francais");
    installation.preferLanguages("<array><string>German</string></array>");
    EXPECT_EQ(MultiLanguageSupport::detectLanguage(), "German");
    installation.preferLanguages("<array><string>ja</string></array>");
    EXPECT_EQ(MultiLanguageSupport::detectLanguage(), "Japanese");
}

TEST(MultiLanguageSupport, DetectLanguage_UnknownEntryEmptyArrayOrNoPreference_IsEnglish) {
    const InstalledTexts installation;
    EXPECT_EQ(MultiLanguageSupport::detectLanguage(), "English");
    installation.preferLanguages("<array><string>nl</string><string>de</string></array>");
    EXPECT_EQ(MultiLanguageSupport::detectLanguage(), "English");
    installation.preferLanguages("<array/>");
    EXPECT_EQ(MultiLanguageSupport::detectLanguage(), "English");
    installation.preferLanguages("<string>de</string>");
    EXPECT_EQ(MultiLanguageSupport::detectLanguage(), "English");
}

TEST(MultiLanguageSupport, Initialize_LanguageGiven_LoadsItsSection) {
    const InstalledTexts installation;
    installation.install(kTexts);
    EXPECT_EQ(helloIn("German"), "Hallo");
    EXPECT_EQ(helloIn("Francais"), "Bonjour");
    EXPECT_EQ(helloIn("English"), "Hello");
    EXPECT_TRUE(MultiLanguageSupport::isLoaded());
}

TEST(MultiLanguageSupport, Initialize_NoLanguageGiven_TakesThePreferredOne) {
    const InstalledTexts installation;
    installation.install(kTexts);
    EXPECT_EQ(helloIn(""), "Hello");
    installation.preferLanguages("<array><string>fr</string></array>");
    EXPECT_EQ(helloIn(""), "Bonjour");
    installation.preferLanguages("<array><string>French</string></array>");
    EXPECT_EQ(helloIn(""), "Bonjour");
    installation.preferLanguages("<array><string>de</string></array>");
    EXPECT_EQ(helloIn(""), "Hallo");
}

TEST(MultiLanguageSupport, Initialize_JapanesePreferred_ReturnsEnglishTexts) {
    const InstalledTexts installation;
    installation.install(kTexts);
    installation.preferLanguages("<array><string>ja</string></array>");
    EXPECT_EQ(helloIn(""), "Hello");
}

TEST(MultiLanguageSupport, Initialize_SpanishItalianAndJapanese_FallBackToEnglishEvenIfTheFileHasThem) {
    const InstalledTexts installation;
    installation.install(kTexts + "//LANGUAGE\nSTR:Spanish\n//hello\nSTR:Hola\n");
    EXPECT_EQ(helloIn("Spanish"), "Hello");
    EXPECT_EQ(helloIn("Italian"), "Hello");
    EXPECT_EQ(helloIn("Japanese"), "Hello");
}

TEST(MultiLanguageSupport, Initialize_AgainWithAnotherLanguage_KeepsNothingOfTheFirst) {
    const InstalledTexts installation;
    installation.install(kTexts);
    MultiLanguageSupport::initialize("English");
    EXPECT_EQ(MultiLanguageSupport::getText("only english"), "yes");
    MultiLanguageSupport::initialize("German");
    EXPECT_EQ(MultiLanguageSupport::getText("only english"), "");
}

TEST(MultiLanguageSupport, Initialize_FileMissing_IsNotLoadedAndEveryTextIsEmpty) {
    const InstalledTexts installation;
    installation.install(kTexts);
    ASSERT_EQ(helloIn("German"), "Hallo");
    installation.remove();
    EXPECT_EQ(helloIn("German"), "");
    EXPECT_FALSE(MultiLanguageSupport::isLoaded());
}

TEST(MultiLanguageSupport, Initialize_FileWithoutASection_IsNotLoaded) {
    const InstalledTexts installation;
    for (const char* content : {"", "words only\n", "//key without value\n"}) {
        installation.install(content);
        EXPECT_EQ(helloIn("German"), "") << content;
        EXPECT_FALSE(MultiLanguageSupport::isLoaded()) << content;
    }
}

TEST(MultiLanguageSupport, Initialize_NoSectionOfTheLanguage_IsLoadedAndEveryTextIsEmpty) {
    const InstalledTexts installation;
    installation.install("//LANGUAGE\nSTR:English\n//hello\nSTR:Hello\n");
    EXPECT_EQ(helloIn("German"), "");
    EXPECT_TRUE(MultiLanguageSupport::isLoaded());
    EXPECT_EQ(helloIn("Klingon"), "");
}

TEST(MultiLanguageSupport, Initialize_TwoSectionsOfTheLanguage_FirstOneCounts) {
    const InstalledTexts installation;
    installation.install(
        "//LANGUAGE\nSTR:German\n//hello\nSTR:Hallo\n//LANGUAGE\nSTR:German\n//hello\nSTR:Moin\n");
    EXPECT_EQ(helloIn("German"), "Hallo");
}

TEST(MultiLanguageSupport, Initialize_EncipheredFile_IsRead) {
    const InstalledTexts installation;
    installation.install(encipher(kTexts));
    EXPECT_EQ(helloIn("German"), "Hallo");
}

TEST(MultiLanguageSupport, Initialize_DamagedFile_IsNotLoadedAndThrowsNothing) {
    const InstalledTexts installation;
    installation.install("ENC is how an enciphered file begins");
    EXPECT_EQ(helloIn("German"), "");
    EXPECT_FALSE(MultiLanguageSupport::isLoaded());
}

TEST(MultiLanguageSupport, GetText_UnknownKeyOrNull_IsEmpty) {
    const InstalledTexts installation;
    installation.install(kTexts);
    MultiLanguageSupport::initialize("English");
    EXPECT_EQ(MultiLanguageSupport::getText("no such key"), "");
    EXPECT_EQ(MultiLanguageSupport::getText(""), "");
    EXPECT_EQ(MultiLanguageSupport::getText(nullptr), "");
}

TEST(MultiLanguageSupport, GetText_OnlyTheFirstUnderscoreGoesAndSDNLIsACarriageReturn) {
    const InstalledTexts installation;
    EXPECT_EQ(shown(installation, "_OKSDNLnext_"), "OK\rnext_");
}

TEST(MultiLanguageSupport, GetText_EverySDNL_IsACarriageReturn) {
    const InstalledTexts installation;
    EXPECT_EQ(shown(installation, "SDNLaSDNLSDNLb"), "\ra\r\rb");
}

TEST(MultiLanguageSupport, GetText_UnderscoreInsideSDNL_GoesFirst) {
    const InstalledTexts installation;
    EXPECT_EQ(shown(installation, "aSD_NLb_c"), "a\rb_c");
}

TEST(MultiLanguageSupport, GetText_CarriageReturnBetweenHalves_MakesNoNewSDNL) {
    const InstalledTexts installation;
    EXPECT_EQ(shown(installation, "SDSDNLNL"), "SD\rNL");
}

TEST(MultiLanguageSupport, GetText_BytesOfTheFile_AreReturnedUnchanged) {
    const InstalledTexts installation;
    EXPECT_EQ(shown(installation, "\x8A\xD5\xCA"), "\x8A\xD5\xCA");
}

TEST(MultiLanguageSupport, GetText_OfAnInteger_IsItsDecimalText) {
    const InstalledTexts installation;
    installation.install("//LANGUAGE\nSTR:English\n//t\nINT:-5\n");
    MultiLanguageSupport::initialize("English");
    EXPECT_EQ(MultiLanguageSupport::getText("t"), "-5");
}

TEST(MultiLanguageSupport, ManyThreads_LookUpWhileTheLanguageChanges) {
    const InstalledTexts installation;
    installation.install(kTexts);
    MultiLanguageSupport::initialize("English");
    std::atomic<bool> isWrong{false};
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) {
        readers.emplace_back([&isWrong] {
            for (int n = 0; n < 2000; ++n) {
                const std::string text = MultiLanguageSupport::getText("hello");
                if (text != "Hello" && text != "Hallo") isWrong = true;
            }
        });
    }
    for (int i = 0; i < 20; ++i)
        MultiLanguageSupport::initialize(i % 2 == 0 ? "German" : "English");
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_FALSE(isWrong);
}

TEST(MultiLanguageSupport, TextsFilePath_IsInTheResourcesOfTheLibrarysBundle) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(MultiLanguageSupport::textsFilePath(folder.path() + "/"),
              folder.path("Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls"));
    EXPECT_EQ(MultiLanguageSupport::textsFilePath(folder.path("a b%20\xC3\xA9") + "/"),
              folder.path("a b%20\xC3\xA9/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls"));
}

TEST(MultiLanguageSupport, TextsFilePath_OfTheInstallFolder_EndsWithItsPlace) {
    const std::string path = MultiLanguageSupport::textsFilePath(places::kInstallFolder);
    const std::string end =
        "/Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls";
    ASSERT_GE(path.size(), end.size());
    EXPECT_EQ(path.substr(path.size() - end.size()), end);
}

TEST(MultiLanguageSupport, TextsFilePath_FolderThatIsNotText_ThrowsTheSorryMessage) {
    EXPECT_EQ(test::failureText([] { MultiLanguageSupport::textsFilePath("/folder\xFF/"); }),
              "Sorry, could not read file 'MultiLanguageTexts.mls'...");
}

TEST(MultiLanguageSupport, TextsFilePath_PathTooLongForTheSystem_ThrowsTheSorryMessage) {
    EXPECT_EQ(
        test::failureText([] { MultiLanguageSupport::textsFilePath("/" + std::string(5000, 'a') + "/"); }),
        "Sorry, could not read file 'MultiLanguageTexts.mls'...");
}

}  // namespace
}  // namespace dovrel
