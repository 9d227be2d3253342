#include "ui/alerts/HelpPages.h"

#include "platform/files/FileURL.h"
#include "platform/text/CFStrings.h"
#include "settings/MultiLanguageSupport.h"

namespace dovrel {

namespace {

constexpr char kHelpFolder[] = "Helpsystem";
constexpr char kGermanHelp[] = "Helpsystem German RC MacOSX";
constexpr char kFrenchHelp[] = "Helpsystem French RC MacOSX";
constexpr char kEnglishHelp[] = "Helpsystem English RC MacOSX";
constexpr char kStartPage[] = "index.html";

CFObject<CFURLRef> findHelpFolder(const char* name) {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    const CFObject<CFStringRef> resource = newCFString(name);
    const CFObject<CFStringRef> folder = newCFString(kHelpFolder);
    if (bundle == nullptr || !resource || !folder) return CFObject<CFURLRef>(nullptr);
    return CFObject<CFURLRef>(CFBundleCopyResourceURL(bundle, resource.get(), nullptr, folder.get()));
}

}  // namespace

const char* helpFolderName(const std::string& language) {
    if (language == kLanguageGerman) return kGermanHelp;
    if (language == kLanguageFrench) return kFrenchHelp;
    return kEnglishHelp;
}

OSStatus openHelp() {
    const std::string language = MultiLanguageSupport::detectLanguage();
    const CFObject<CFURLRef> folder = findHelpFolder(helpFolderName(language));
    if (!folder) return noErr;
    const CFObject<CFURLRef> page = fileURLInFolder(folder, kStartPage);
    return page ? LSOpenCFURLRef(page.get(), nullptr) : OSStatus{noErr};
}

}  // namespace dovrel
