#include "settings/MultiLanguageSupport.h"

#include <CoreFoundation/CoreFoundation.h>

#include <array>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "client/exceptions/CPPException.h"
#include "platform/files/FileURL.h"
#include "platform/files/Places.h"
#include "platform/text/TextConversions.h"
#include "settings/ConfigFileSystem.h"
#include "settings/Properties.h"

namespace dovrel {

namespace {

constexpr char kTextsFileName[] = "MultiLanguageTexts.mls";
constexpr char kPathFailure[] = "Sorry, could not read file 'MultiLanguageTexts.mls'...";
constexpr CFIndex kLongestPath = 4096;

constexpr char kMnemonicMark = '_';
constexpr std::string_view kLineBreakMark = "SDNL";
constexpr std::string_view kCarriageReturn = "\r";

struct Texts {
    std::mutex lock;
    Properties current;
    bool loaded = false;
};

// Never destroyed: an exit handler that the host registered before the library was loaded runs after the
// library's destructors. It may still make calls that fail and need a text.
Texts& texts() {
    static Texts& instance = *new Texts;
    return instance;
}

std::vector<Properties> readLanguageSections(const std::string& path) {
    try {
        return ConfigFileSystem::readSections(ConfigFileSystem::readText(path), kLanguageSectionKey);
    } catch (CPPException* caught) {
        // The client must work even without texts, which are then empty.
        const std::unique_ptr<CPPException> failure(caught);
        return {};
    }
}

Properties findSection(std::vector<Properties> sections, const std::string& language) {
    for (Properties& section : sections) {
        std::string name;
        if (section.findString(kLanguageSectionKey, name) && name == language) return std::move(section);
    }
    return Properties();
}

}  // namespace

std::string MultiLanguageSupport::detectLanguage() {
    const CFObject<CFPropertyListRef> preference(
        CFPreferencesCopyValue(CFSTR("AppleLanguages"), kCFPreferencesAnyApplication,
                               kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
    return languageFromPreference(preference.get());
}

std::string MultiLanguageSupport::toDisplayText(std::string stored) {
    const size_t mnemonic = stored.find(kMnemonicMark);
    if (mnemonic != std::string::npos) stored.erase(mnemonic, 1);
    return replaceAll(stored, kLineBreakMark, kCarriageReturn);
}

void MultiLanguageSupport::initialize(const std::string& language) {
    const std::string wanted = languageWithTexts(language.empty() ? detectLanguage() : language);
    std::vector<Properties> sections = readLanguageSections(textsFilePath(places::kInstallFolder));
    const bool loaded = !sections.empty();
    Properties section = findSection(std::move(sections), wanted);

    const std::lock_guard<std::mutex> guard(texts().lock);
    texts().current = std::move(section);
    texts().loaded = loaded;
}

std::string MultiLanguageSupport::getText(const char* key) {
    if (key == nullptr) return std::string();
    std::string text;
    const std::lock_guard<std::mutex> guard(texts().lock);
    if (!texts().current.findString(key, text)) return std::string();
    return toDisplayText(std::move(text));
}

bool MultiLanguageSupport::isLoaded() {
    const std::lock_guard<std::mutex> guard(texts().lock);
    return texts().loaded;
}

std::string MultiLanguageSupport::textsFilePath(const std::string& installFolder) {
    const CFObject<CFURLRef> bundle = folderURL(installFolder + places::kLibraryBundleName);
    const CFObject<CFURLRef> contents = folderURLInFolder(bundle, "Contents");
    const CFObject<CFURLRef> file = fileURLInFolder(folderURLInFolder(contents, "Resources"), kTextsFileName);

    std::array<UInt8, kLongestPath> path{};
    if (!file || !CFURLGetFileSystemRepresentation(file.get(), true, path.data(), kLongestPath)) {
        throw new CPPException(kPathFailure);
    }
    return reinterpret_cast<const char*>(path.data());
}

}  // namespace dovrel
