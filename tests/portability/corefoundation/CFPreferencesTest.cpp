// Preferences on other systems than the platform: from the user's Foundation
// defaults, otherwise from the locale.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <string>

#include "portability/corefoundation/Languages.h"
#include "tests/portability/support/Held.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace {

CFPropertyListRef copyGlobal(CFStringRef key) {
    return CFPreferencesCopyValue(key, kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                                  kCFPreferencesAnyHost);
}

std::string firstLanguage() {
    const Held<CFPropertyListRef> languages(copyGlobal(CFSTR("AppleLanguages")));
    if (languages.get() == nullptr) {
        return "(none)";
    }
    const auto array = static_cast<CFArrayRef>(languages.get());
    const bool isList = CFGetTypeID(array) == CFArrayGetTypeID() && CFArrayGetCount(array) > 0;
    return isList ? toText(CFArrayGetValueAtIndex(array, 0)) : "(no list)";
}

class CFPreferences : public testing::Test {
  protected:
    const dovrel::test::TemporaryFolder folder_;
    const VariableChange home_{"HOME", folder_.path().c_str()};
    const VariableChange all_{"LC_ALL", nullptr};
    const VariableChange messages_{"LC_MESSAGES", nullptr};
    const VariableChange lang_{"LANG", nullptr};
};

}  // namespace

TEST_F(CFPreferences, AppleLanguages_FromTheLocale_IsOnlyItsLanguage) {
    for (const auto& [locale, language] : {std::pair("de_DE.UTF-8", "de"),
                                           {"fr_CH", "fr"},
                                           {"ja.eucJP", "ja"},
                                           {"es@euro", "es"},
                                           {"it", "it"}}) {
        const VariableChange lang("LANG", locale);
        EXPECT_EQ(firstLanguage(), language) << locale;
    }
}

TEST_F(CFPreferences, AppleLanguages_SeveralVariables_TheStrongestThatIsNotEmptyDecides) {
    const VariableChange lang("LANG", "de_DE.UTF-8");
    const VariableChange messages("LC_MESSAGES", "fr_FR.UTF-8");
    EXPECT_EQ(firstLanguage(), "fr");
    {
        const VariableChange all("LC_ALL", "it_IT");
        EXPECT_EQ(firstLanguage(), "it");
    }
    const VariableChange all("LC_ALL", "");
    EXPECT_EQ(firstLanguage(), "fr");
}

TEST_F(CFPreferences, AppleLanguages_NoLocaleOrTheNeutralOne_AreAbsent) {
    EXPECT_EQ(firstLanguage(), "(none)");
    for (const char* locale : {"C", "C.UTF-8", "POSIX"}) {
        const VariableChange lang("LANG", locale);
        EXPECT_EQ(firstLanguage(), "(none)") << locale;
    }
}

TEST_F(CFPreferences, AppleLanguages_InTheUsersDefaults_GoBeforeTheLocale) {
    const VariableChange lang("LANG", "de_DE.UTF-8");
    folder_.write("GNUstep/Defaults/NSGlobalDomain.plist",
                  "{ AppleLanguages = (fr, en); AppleLocale = \"fr_FR\"; }");
    EXPECT_EQ(firstLanguage(), "fr");
    EXPECT_EQ(portability::userLanguages(), (std::vector<std::string>{"fr", "en"}));
    const Held<CFPropertyListRef> locale(copyGlobal(CFSTR("AppleLocale")));
    EXPECT_EQ(toText(locale.get()), "fr_FR");
}

TEST_F(CFPreferences, AppleLanguages_DamagedDefaults_AreThoseOfTheLocale) {
    const VariableChange lang("LANG", "de_DE.UTF-8");
    folder_.write("GNUstep/Defaults/NSGlobalDomain.plist", "{ AppleLanguages = (fr");
    EXPECT_EQ(firstLanguage(), "de");
}

TEST_F(CFPreferences, CopyValue_UnknownKeyOrOtherDomain_IsNull) {
    const VariableChange lang("LANG", "de_DE.UTF-8");
    EXPECT_EQ(copyGlobal(CFSTR("Absent")), nullptr);
    EXPECT_EQ(CFPreferencesCopyValue(CFSTR("AppleLanguages"), CFSTR("com.example"), kCFPreferencesCurrentUser,
                                     kCFPreferencesAnyHost),
              nullptr);
    EXPECT_EQ(CFPreferencesCopyValue(CFSTR("AppleLanguages"), kCFPreferencesAnyApplication,
                                     kCFPreferencesAnyUser, kCFPreferencesAnyHost),
              nullptr);
    EXPECT_EQ(CFPreferencesCopyValue(CFSTR("AppleLanguages"), kCFPreferencesAnyApplication,
                                     kCFPreferencesCurrentUser, kCFPreferencesCurrentHost),
              nullptr);
}

TEST_F(CFPreferences, CopyValue_LeavesNothingInTheHomeFolder) {
    const VariableChange lang("LANG", "de_DE.UTF-8");
    firstLanguage();
    EXPECT_EQ(std::system(("test -z \"$(ls -A '" + folder_.path() + "')\"").c_str()), 0);
}
