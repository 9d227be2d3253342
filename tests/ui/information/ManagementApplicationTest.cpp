#include "ui/information/Component.h"

#include <memory>
#include <vector>

#include "tests/support/Desktop.h"
#include "tests/ui/alerts/HelpTest.h"

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
    void startAs(const std::string& identifier) {
        addHelp();
        setIdentifier(identifier);
        setHelper(DOVREL_ALERT_HELPER);
        application_ = std::make_unique<test::ChildProcess>(
            std::vector<std::string>{program(), "show", "0", "Title", "Body"});
    }

    test::Desktop desktop_;
    std::unique_ptr<test::ChildProcess> application_;
};

TEST_F(AlertHelpTest, AlertOfTheManagementApplication_HasAHelpButtonThatOpensTheStartPageAndItStays) {
    startAs("com.quernvale.halcon");
    EXPECT_TRUE(desktop_.takePicture("alert-help"));
    desktop_.clickHelp();
    EXPECT_EQ(openedPage(), "Resources/Helpsystem/Helpsystem English RC MacOSX/index.html");
    desktop_.clickHelp();
    EXPECT_EQ(openedPage(), "Resources/Helpsystem/Helpsystem English RC MacOSX/index.html");
    EXPECT_FALSE(application_->hasLine(0));
    EXPECT_TRUE(desktop_.clickButton(0));
    EXPECT_EQ(application_->readLine(), "answer 12");
    EXPECT_EQ(application_->wait(), 0);
}

TEST_F(AlertHelpTest, AlertOfAnyOtherApplication_HasNone) {
    startAs("com.example.host");
    desktop_.clickHelp();
    EXPECT_TRUE(desktop_.clickButton(0));
    EXPECT_EQ(application_->readLine(), "answer 12");
    EXPECT_EQ(application_->wait(), 0);
    EXPECT_TRUE(openedNothing());
}

}  // namespace
}  // namespace dovrel
