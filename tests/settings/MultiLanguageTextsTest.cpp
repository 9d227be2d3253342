// The installed texts file: it is complete in every language, has the right
// encoding, and its texts can be combined.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "platform/text/ReadableText.h"
#include "settings/ConfigFileSystem.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"
#include "tests/support/Encodings.h"
#include "tests/support/InstalledTexts.h"

namespace dovrel {
namespace {

const std::string kSource = DOVREL_SOURCE_FOLDER;

std::string readFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << path;
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

std::string textsFile() {
    return readFile(kSource + "/resources/MultiLanguageTexts.mls");
}

std::map<std::string, Properties> sections() {
    std::map<std::string, Properties> result;
    for (const Properties& section : ConfigFileSystem::readSections(textsFile(), kLanguageSectionKey)) {
        EXPECT_TRUE(result.emplace(section.getString(kLanguageSectionKey), section).second)
            << "language twice";
    }
    return result;
}

// Returns the capital letters, digits and underscores at this position.
std::string capitalsAt(const std::string& text, size_t begin) {
    const size_t end = text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_", begin);
    return text.substr(begin, end - begin);
}

// Returns the quoted texts in a source file that look like keys. (The library's environment variables look
// like keys as well; they are recognised by their common prefix.)
std::set<std::string> readFileKeys(const std::string& path) {
    const std::string content = readFile(path);
    std::set<std::string> keys;
    for (size_t at = content.find('"'); at != std::string::npos; at = content.find('"', at + 1)) {
        const std::string word = capitalsAt(content, at + 1);
        const bool isWhole = content.compare(at + 1 + word.size(), 1, "\"") == 0;
        const bool isOfTheEnvironment = word.compare(0, 4, "POS_") == 0;
        if (isWhole && word.find('_', 1) != std::string::npos && !isOfTheEnvironment) keys.insert(word);
    }
    return keys;
}

std::set<std::string> findKeysOfTheCode() {
    std::set<std::string> keys;
    for (const char* folder :
         {"/client", "/ui", "/InterProcessCommunication", "/settings", "/platform", "/serialization"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(kSource + folder)) {
            if (entry.is_regular_file()) keys.merge(readFileKeys(entry.path()));
        }
    }
    return keys;
}

// Returns every key that the library can ask for. They are collected from all of its sources.
const std::set<std::string>& readCodeKeys() {
    static const std::set<std::string> keys = findKeysOfTheCode();
    return keys;
}

TEST(MultiLanguageTexts, KeysOfTheCode_AreOnlyInTheirHeader) {
    const std::set<std::string>& keys = readCodeKeys();
    EXPECT_EQ(keys, readFileKeys(kSource + "/settings/TextKeys.h"));
    EXPECT_EQ(keys.count(kErrorDialogTitle), 1u);
    EXPECT_EQ(keys.count(kDllMsgMerrowdIsCorrupt), 1u);
}

TEST(MultiLanguageTexts, ListOfAllKeys_HasEachKeyOfTheHeader) {
    const std::set<std::string> listed(std::begin(kAllTextKeys), std::end(kAllTextKeys));
    EXPECT_EQ(listed.size(), std::size(kAllTextKeys));
    EXPECT_EQ(listed, readFileKeys(kSource + "/settings/TextKeys.h"));
}

TEST(MultiLanguageTexts, Languages_AreEnglishGermanAndFrench) {
    std::string names;
    for (const auto& [name, section] : sections())
        names += name + " ";
    EXPECT_EQ(names, "English Francais German ");
}

TEST(MultiLanguageTexts, EveryKeyOfTheCode_HasATextInEveryLanguage) {
    for (const auto& [name, section] : sections()) {
        for (const std::string& key : readCodeKeys()) {
            std::string text;
            EXPECT_TRUE(section.findString(key, text)) << name << " " << key;
            EXPECT_NE(text, "") << name << " " << key;
        }
    }
}

TEST(MultiLanguageTexts, EveryKeyOfTheFile_IsAskedForByTheCode) {
    for (const auto& [name, section] : sections()) {
        for (int32_t i = 0; i < static_cast<int32_t>(section.size()); ++i) {
            const std::string key = section.getKeyAt(i);
            EXPECT_TRUE(key == kLanguageSectionKey || readCodeKeys().count(key) == 1) << name << " " << key;
        }
    }
}

TEST(MultiLanguageTexts, NoKey_OccursTwiceInALanguage) {
    // Loading silently ignores a second text for a key, so the entries are counted in the file itself.
    const std::string text = textsFile();
    size_t keyLines = 0;
    for (size_t at = text.find("\n//"); at != std::string::npos; at = text.find("\n//", at + 1))
        ++keyLines;
    EXPECT_EQ(keyLines, 3 * (readCodeKeys().size() + 1));
}

TEST(MultiLanguageTexts, Characters_AreLettersAndSignsOfTheThreeLanguagesInMacRoman) {
    // Ä Ö Ü à â ä ç è é ê ë î ï ô ö ù û ü • ß « » no-break space À É Ê œ “ ” ‘ ’ „
    const std::string wanted =
        "\x80\x85\x86\x88\x89\x8A\x8D\x8F\x8E\x90\x91\x94\x95\x99\x9A\x9D\x9E\x9F\xA5\xA7\xC7\xC8\xCA\xCB\x83"
        "\xE6\xCF"
        "\xD2\xD3\xD4\xD5\xE3";
    for (const char c : textsFile()) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isPlain = c == '\n' || (byte >= 0x20 && byte < 0x7F);
        EXPECT_TRUE(isPlain || wanted.find(c) != std::string::npos) << std::hex << int{byte};
    }
}

TEST(MultiLanguageTexts, Encoding_IsNotUtf8) {
    // In UTF-8 the letters and signs would be encoded with these bytes.
    const std::string text = textsFile();
    EXPECT_EQ(text.find("\xC3\xA4"), std::string::npos);
    EXPECT_EQ(text.find("\xE2\x80"), std::string::npos);
    EXPECT_NE(text.find("Vorgang nicht ausf\x9Fhren"), std::string::npos);
    EXPECT_NE(text.find("R\x8E"
                        "essayer"),
              std::string::npos);
}

std::string fromMacRoman(const std::string& text) {
    return test::toUTF8(text, "MACINTOSH").value();
}

// An apostrophe before an accented letter in Mac Roman is also a valid Armenian letter in UTF-8.
TEST(MultiLanguageTexts, NoText_HoldsBytesThatAreACharacterOfUTF8) {
    for (const auto& [name, section] : sections()) {
        for (const std::string& key : readCodeKeys()) {
            const std::string text = section.getString(key);
            EXPECT_EQ(readableText(text), fromMacRoman(text)) << name << " " << key;
        }
    }
}

TEST(MultiLanguageTexts, NameInAFailure_IsReadableInEitherEncodingWhateverItsFirstLetters) {
    for (const auto& [language, section] : sections()) {
        const std::string before = section.getString(kDllErrorMessageHeadPart1);
        const std::string after = section.getString(kDllErrorMessageHeadPart2);
        for (const char* name : {"\x85lpr\x9F"
                                 "fer",
                                 "\x86\x8A"
                                 "bc",
                                 "\x83"
                                 "diteur",
                                 "Gr\x9A\xA7"
                                 "enpr\x9F"
                                 "fer\xC9"}) {
            const std::string readableName = fromMacRoman(name);
            const std::string expected = fromMacRoman(before) + readableName + fromMacRoman(after);
            EXPECT_EQ(readableText(before + name + after), expected) << language;
            EXPECT_EQ(readableText(before + readableName + after), expected) << language;
        }
    }
}

TEST(MultiLanguageTexts, Texts_HaveNoUnderscoreWhichWouldBeDropped) {
    for (const auto& [name, section] : sections()) {
        for (const std::string& key : readCodeKeys()) {
            EXPECT_EQ(section.getString(key).find('_'), std::string::npos) << name << " " << key;
        }
    }
}

TEST(MultiLanguageTexts, ButtonsNamedInATextAreTheButtonsOfTheAlert) {
    for (const auto& [name, section] : sections()) {
        for (const char* key : {kDllErrorRegistration, kDllAttentionMessage}) {
            const std::string text = section.getString(key);
            EXPECT_NE(text.find(section.getString(kGeneralButtonRetry)), std::string::npos)
                << name << " " << key;
            EXPECT_NE(text.find(section.getString(kGeneralButtonCancel)), std::string::npos)
                << name << " " << key;
        }
    }
}

TEST(MultiLanguageTexts, DownloadAddress_IsInTheTextsThatAskToInstallSomething) {
    for (const auto& [name, section] : sections()) {
        for (const char* key : {kDllMsgMerrowdIsMissing, kDllMsgMerrowdIsCorrupt, kDllNoValidPosInterface}) {
            EXPECT_NE(section.getString(key).find("http://www.tessilor.example/download"), std::string::npos)
                << name << " " << key;
        }
    }
}

// Returns the body of an alert, combined in the same way as in a failure report.
std::string composedFailure(const char* message, const char* explanation) {
    return MultiLanguageSupport::getText(kDllErrorMessageHeadPart1) + "Notizbuch" +
           MultiLanguageSupport::getText(kDllErrorMessageHeadPart2) + MultiLanguageSupport::getText(message) +
           "\r" + "\r" + MultiLanguageSupport::getText(explanation);
}

TEST(MultiLanguageTexts, ComposedFailure_InGerman_TellsWhatHappenedAndWhatToDo) {
    const test::InstalledTexts installation;
    installation.install(textsFile());
    MultiLanguageSupport::initialize("German");
    EXPECT_EQ(
        composedFailure(kDllMsgMerrowdIsMissing, kDllErrorUnrecoverableError),
        "Das Programm \"Notizbuch\" konnte einen Vorgang nicht ausf\x9Fhren:\r\r"
        "Das Serverprogramm \xE3Merrowd\xD2 wurde nicht gefunden. Bitte laden Sie die neueste Version der "
        "Tessilor-Runtime-Software von http://www.tessilor.example/download, installieren Sie sie und "
        "versuchen "
        "Sie es noch einmal.\r\r"
        "Der Vorgang wurde abgebrochen. Bitte versuchen Sie es noch einmal. Wenn das Problem bestehen "
        "bleibt, "
        "beenden Sie alle Programme und starten Sie den Computer neu. Hilft auch das nicht, wenden Sie sich "
        "bitte "
        "an den Kundendienst des Programmherstellers.");
}

TEST(MultiLanguageTexts, ComposedFailure_InFrench_TellsWhatHappenedAndWhatToDo) {
    const test::InstalledTexts installation;
    installation.install(textsFile());
    MultiLanguageSupport::initialize("Francais");
    EXPECT_EQ(composedFailure(kGeneralErrorUnknownException, kDllErrorRegistration),
              "L\xD5"
              "application \"Notizbuch\" n\xD5"
              "a pas pu effectuer une op\x8Eration\xCA:\r\r"
              "Une erreur inattendue s\xD5"
              "est produite, sur laquelle on ne sait rien de plus.\r\r"
              "L\xD5"
              "application n\xD5"
              "a pas pu \x90tre enregistr\x8E"
              "e aupr\x8Fs du logiciel Tessilor Runtime. "
              "Cliquez sur \xC7\xCAR\x8E"
              "essayer\xCA\xC8 pour l\xD5"
              "enregistrer \x88 nouveau, ou sur "
              "\xC7\xCA"
              "Annuler\xCA\xC8 pour continuer sans l\xD5"
              "enregistrement.");
}

TEST(MultiLanguageTexts, StepsToTry_StandOnLinesOfTheirOwn) {
    const test::InstalledTexts installation;
    installation.install(textsFile());
    for (const char* language : {"English", "German", "Francais"}) {
        MultiLanguageSupport::initialize(language);
        const std::string text = MultiLanguageSupport::getText(kDllMsgMerrowdIsCorrupt);
        size_t steps = 0;
        for (size_t at = text.find("\r\xA5 "); at != std::string::npos; at = text.find("\r\xA5 ", at + 1))
            ++steps;
        EXPECT_EQ(steps, 3u) << language;
        EXPECT_EQ(text.find("SDNL"), std::string::npos) << language;
    }
}

}  // namespace
}  // namespace dovrel
