#include "ui/alerts/HelpPages.h"

#include <fstream>
#include <iterator>

#include "platform/files/Places.h"
#include "tests/ui/alerts/HelpTest.h"

namespace dovrel {
namespace {

constexpr char kEnglishPage[] = "Resources/Helpsystem/Helpsystem English RC MacOSX/index.html";

class HelpPagesTest : public test::HelpTest {
  protected:
    HelpPagesTest() { setIdentifier("com.example.host"); }

    static std::string startPage(const std::string& language) {
        std::ifstream file(DOVREL_HELP "/Helpsystem " + language + " RC MacOSX/index.html");
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
};

TEST(HelpPages, FolderName_IsThatOfTheLanguageAndEnglishForEveryOther) {
    EXPECT_STREQ(helpFolderName("German"), "Helpsystem German RC MacOSX");
    EXPECT_STREQ(helpFolderName("Francais"), "Helpsystem French RC MacOSX");
    for (const char* language : {"English", "Spanish", "Italian", "Japanese", "", "french"})
        EXPECT_STREQ(helpFolderName(language), "Helpsystem English RC MacOSX") << language;
}

TEST_F(HelpPagesTest, EachPage_NamesTheRealPlacesAndTheTextsThatHaveNoTranslation) {
    using namespace places;
    for (const char* language : {"English", "French", "German"}) {
        const std::string page = startPage(language);
        for (const std::string& place : {std::string(kInstallFolder) + kServerBundleName,
                                         std::string(kInstallFolder) + kLibraryBundleName,
                                         std::string(kLogFolder), std::string(kErrorLogName)})
            EXPECT_NE(page.find("<code>" + place + "</code>"), std::string::npos) << language << place;
        for (const char* text :
             {"An unknown interapplication communication error occured. In case the problem "
              "persists, please close all applications and restart your computer.",
              "No Error dialogue shown", "System error: "})
            EXPECT_NE(page.find(text), std::string::npos) << language << text;
    }
}

TEST_F(HelpPagesTest, German_OpensTheGermanStartPage) {
    addHelp();
    EXPECT_EQ(run("help", "de_DE.UTF-8"), "status 0");
    EXPECT_EQ(openedPage(), "Resources/Helpsystem/Helpsystem German RC MacOSX/index.html");
}

TEST_F(HelpPagesTest, French_OpensTheFrenchStartPage) {
    addHelp();
    EXPECT_EQ(run("help", "fr_FR.UTF-8"), "status 0");
    EXPECT_EQ(openedPage(), "Resources/Helpsystem/Helpsystem French RC MacOSX/index.html");
}

TEST_F(HelpPagesTest, Spanish_OpensTheEnglishStartPage) {
    addHelp();
    EXPECT_EQ(run("help", "es_ES.UTF-8"), "status 0");
    EXPECT_EQ(openedPage(), kEnglishPage);
}

TEST_F(HelpPagesTest, NoPreference_OpensTheEnglishStartPage) {
    addHelp();
    EXPECT_EQ(run("help", "C"), "status 0");
    EXPECT_EQ(openedPage(), kEnglishPage);
}

TEST_F(HelpPagesTest, MissingFolder_Is0AndOpensNothing) {
    addHelp();
    removeHelp("German");
    EXPECT_EQ(run("help", "de_DE.UTF-8"), "status 0");
    EXPECT_TRUE(openedNothing());
}

TEST_F(HelpPagesTest, MissingStartPage_ReturnsTheOpenersStatus) {
    addHelp();
    removeStartPage("English");
    EXPECT_EQ(run("help", "C"), "status -43");
    EXPECT_TRUE(openedNothing());
}

TEST_F(HelpPagesTest, NoHelpAtAll_Is0AndOpensNothing) {
    EXPECT_EQ(run("help", "C"), "status 0");
    EXPECT_TRUE(openedNothing());
}

}  // namespace
}  // namespace dovrel
