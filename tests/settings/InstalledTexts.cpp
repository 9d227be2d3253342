#include "tests/settings/InstalledTexts.h"

#include <cstdlib>
#include <filesystem>

namespace dovrel::test {

namespace {
constexpr char kTextsFile[] =
    "root/Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls";
constexpr char kPreferences[] = "home/GNUstep/Defaults/NSGlobalDomain.plist";
}  // namespace

InstalledTexts::InstalledTexts() {
    std::filesystem::create_directories(folder_.path("root"));
    std::filesystem::create_directories(folder_.path("home"));
    setVariable("POS_SYSTEM_ROOT", folder_.path("root"));
    setVariable("HOME", folder_.path("home"));
    // Without a preferred language the locale selects one. The locale "C" does not select any.
    setVariable("LC_ALL", "C");
}

InstalledTexts::~InstalledTexts() {
    for (const auto& [name, value] : oldVariables_) {
        if (value) {
            setenv(name.c_str(), value->c_str(), 1);
        } else {
            unsetenv(name.c_str());
        }
    }
}

void InstalledTexts::install(const std::string& content) const {
    folder_.write(kTextsFile, content);
}

void InstalledTexts::remove() const {
    std::filesystem::remove(folder_.path(kTextsFile));
}

void InstalledTexts::preferLanguages(const std::string& content) const {
    folder_.write(
        kPreferences,
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>AppleLanguages</key>" +
            content + "</dict></plist>\n");
}

void InstalledTexts::setVariable(const std::string& name, const std::string& value) {
    const char* old = std::getenv(name.c_str());
    oldVariables_[name] = old == nullptr ? std::nullopt : std::optional<std::string>(old);
    setenv(name.c_str(), value.c_str(), 1);
}

}  // namespace dovrel::test
