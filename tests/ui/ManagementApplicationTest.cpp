#include "ui/ManagementApplication.h"

#include "tests/support/Desktop.h"
#include "tests/ui/HelpTest.h"

namespace dovrel {
namespace {

class ManagementApplicationTest : public test::HelpTest {
  protected:
    std::string runAs(const std::string& identifier) {
        setIdentifier(identifier);
        return run("management");
    }
};

TEST_F(ManagementApplicationTest, ItsIdentifierInAnyCase_IsTheManagementApplication) {
    EXPECT_EQ(runAs("com.Quernvale.Halcon"), "yes");
    EXPECT_EQ(runAs("COM.QUERNVALE.halcon"), "yes");
}

TEST_F(ManagementApplicationTest, OtherIdentifiers_AreNot) {
    EXPECT_EQ(runAs("com.Quernvale.Halcon2"), "no");
    EXPECT_EQ(runAs("com.Quernvale"), "no");
}

TEST_F(ManagementApplicationTest, ApplicationWithoutPropertyList_IsNot) {
    EXPECT_EQ(run("management"), "no");
}

class AlertHelpTest : public ManagementApplicationTest {
  protected:
    /// The first line of an application with that identifier that shows an alert; it has answered it then.
    std::string firstLineOf(const std::string& identifier) {
        addHelp();
        setIdentifier(identifier);
        test::Desktop desktop;
        test::ChildProcess application({program(), "helpalert", "0", "Title", "Body"});
        EXPECT_TRUE(desktop.clickButton(0));
        return application.readLine();
    }
};

TEST_F(AlertHelpTest, AlertOfTheManagementApplication_HasAHelpButtonThatOpensTheStartPage) {
    EXPECT_EQ(firstLineOf("com.quernvale.halcon"), "help");
    EXPECT_EQ(openedPage(), "Resources/Helpsystem/Helpsystem English RC MacOSX/index.html");
}

TEST_F(AlertHelpTest, AlertOfAnyOtherApplication_HasNone) {
    EXPECT_EQ(firstLineOf("com.example.host"), "answer 12");
    EXPECT_TRUE(openedNothing());
}

}  // namespace
}  // namespace dovrel
