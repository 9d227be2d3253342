#include "tools/doctor/InstallationChecks.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>

#include "client/exceptions/CPPException.h"
#include "dovrel/pos.hpp"
#include "platform/CFObject.h"
#include "platform/files/FileURL.h"
#include "platform/files/Places.h"
#include "platform/text/CFStrings.h"
#include "settings/ConfigFileSystem.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"
#include "tools/Subcommand.h"
#include "tools/calls/LoadedLibrary.h"
#include "tools/system/SystemFacts.h"

namespace dovrel::tools {

namespace {

constexpr char kRoot[] = "root";
constexpr char kLibrary[] = "library";
constexpr char kTexts[] = "texts";
constexpr char kLanguage[] = "language";
constexpr char kInstallAgain[] = "Install the library again.";
constexpr char kInstallOrSetRoot[] =
    "Install the library, or set POS_SYSTEM_ROOT to the folder of an installation.";
constexpr char kMayNotRead[] = "Let root allow all users to read and enter the folders of the installation.";
constexpr char kRootVariable[] = "POS_SYSTEM_ROOT";

bool isFolder(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Returns the sections of the texts file by their languages. Throws a ToolFailure if it cannot be read.
std::vector<Properties> readTexts(const std::string& path) {
    try {
        return ConfigFileSystem::readSections(ConfigFileSystem::readText(path), kLanguageSectionKey);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        throw ToolFailure(failure->getMessage());
    }
}

// Returns the keys for which a section has no text.
std::vector<std::string> missingKeys(const Properties& section) {
    std::vector<std::string> missing;
    for (const char* const key : kAllTextKeys)
        if (!section.contains(key)) missing.emplace_back(key);
    return missing;
}

void checkLanguage(const std::set<std::string>& languages, CheckResults& results) {
    const std::string detected = MultiLanguageSupport::detectLanguage();
    if (languages.count(detected) != 0) return results.addOk(kLanguage, detected);
    if (languages.count(kLanguageEnglish) != 0)
        return results.addNote(kLanguage,
                               detected + ", which has no texts; the library shows the English ones");
    results.addTrouble(kLanguage, detected + ", and the texts file has no texts for it: alerts have no text",
                       kInstallAgain);
}

}  // namespace

void checkRoot(CheckResults& results) {
    const char* const variable = std::getenv(kRootVariable);
    const bool isSet = variable != nullptr && *variable != '\0';
    const std::string root = systemRootPath();
    if (isSet && *variable != '/')
        results.addWarning(
            kRoot, std::string(kRootVariable) + " is ignored because \"" + variable + "\" is a relative path",
            "Set it to an absolute path.");
    if (!isFolder(root))
        return results.addTrouble(
            kRoot, "there is no folder " + root,
            isSet ? "Set POS_SYSTEM_ROOT to the folder of an installation, or unset it." : kInstallOrSetRoot);
    const bool isFromVariable = isSet && *variable == '/';
    results.addOk(kRoot, root + (isFromVariable ? " (from POS_SYSTEM_ROOT)" : " (as configured)"));
}

std::string readBundleVersion(const std::string& path) {
    const CFObject<CFURLRef> url = fileURL(path, kCFStringEncodingUTF8);
    const CFObject<CFBundleRef> bundle(url ? CFBundleCreate(kCFAllocatorDefault, url.get()) : nullptr);
    if (!bundle) return "";
    const CFTypeRef value = CFBundleGetValueForInfoDictionaryKey(bundle.get(), kCFBundleVersionKey);
    if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID()) return "";
    return utf8Text(static_cast<CFStringRef>(value)).value_or("");
}

void checkLibrary(CheckResults& results) {
    const std::string path = installedBundlePath();
    if (access(path.c_str(), F_OK) != 0)
        return results.addTrouble(kLibrary, path + ": " + std::strerror(errno),
                                  errno == EACCES ? kMayNotRead : kInstallOrSetRoot);
    const std::string file = path + "/Contents/MacOS/Dovrel";
    if (!isCompleteLibrary(file))
        return results.addTrouble(kLibrary, file + " is missing, damaged or for another processor",
                                  kInstallAgain);
    try {
        loadLibrary(path);
        const pos::Session session;
        const std::string version =
            readBundleVersion(std::string(places::kInstallFolder) + places::kLibraryBundleName);
        const std::string finding = path + ", version " + version + ", interface version " +
                                    std::to_string(session.interfaceVersion());
        if (version == DOVREL_VERSION) return results.addOk(kLibrary, finding);
        results.addWarning(kLibrary, finding + "; this tool has version " DOVREL_VERSION,
                           "Install library and tool of the same version.");
    } catch (const std::exception& failure) {
        results.addTrouble(kLibrary, failure.what(), kInstallAgain);
    }
}

void checkTexts(CheckResults& results) {
    const std::string path = MultiLanguageSupport::textsFilePath(places::kInstallFolder);
    std::set<std::string> languages;
    try {
        for (const Properties& section : readTexts(path)) {
            std::string language;
            if (!section.findString(kLanguageSectionKey, language)) continue;
            languages.insert(language);
            const std::vector<std::string> missing = missingKeys(section);
            if (missing.empty()) continue;
            results.addTrouble(kTexts,
                               path + " is damaged: in the language " + language + " " +
                                   countText(missing.size(), "text is", "texts are") +
                                   " missing, the first is " + missing.front(),
                               kInstallAgain);
        }
    } catch (const ToolFailure& failure) {
        return results.addTrouble(kTexts, failure.what(), kInstallAgain);
    }
    if (languages.empty())
        return results.addTrouble(
            kTexts, path + " is damaged: it contains no language, so failures are not shown", kInstallAgain);
    checkLanguage(languages, results);
    std::string list;
    for (const std::string& language : languages)
        list += (list.empty() ? "" : ", ") + language;
    results.addOk(kTexts, path + ": " + list);
}

}  // namespace dovrel::tools
