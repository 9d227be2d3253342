#include "ui/ManagementApplication.h"

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

}  // namespace
}  // namespace dovrel
