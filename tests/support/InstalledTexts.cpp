#include "tests/support/InstalledTexts.h"

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

}  // namespace dovrel::test
