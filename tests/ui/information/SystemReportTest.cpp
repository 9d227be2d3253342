#include "ui/information/SystemReport.h"

#include <fstream>
#include <sstream>

#include "tests/ui/information/InstalledComponents.h"

namespace dovrel {
namespace {

using test::textEntry;
using test::xmlList;

const std::string kSystemSection =
    "Operating system\n"
    "  Name: Mac OS X (x86)\n"
    "  Version: 10.6.8 (10K549)\n"
    "\n";

const std::string kEnd =
    "  (* behind it: not all components come from the same installer)\n"
    "\n"
    "<Removed system information> \n"
    "\n"
    "<Removed crash log information> \n"
    "\n";

class SystemReportTest : public test::InstalledComponents {
  protected:
    void installSystem() const {
        writeSystemVersion(xmlList(textEntry("ProductName", "Mac OS X") +
                                   textEntry("ProductVersion", "10.6.8") +
                                   textEntry("ProductBuildVersion", "10K549")));
    }

    static bool hasGuiLibrary() {
        std::ifstream maps("/proc/self/maps");
        std::ostringstream content;
        content << maps.rdbuf();
        return content.str().find("libgnustep-gui") != std::string::npos;
    }
};

TEST_F(SystemReportTest, RemovedInformation_IsTheTwoWithheldSections) {
    EXPECT_EQ(removedInformationText(),
              "<Removed system information> \n\n<Removed crash log information> \n\n");
}

TEST_F(SystemReportTest, AllComponentsOfOneInstaller) {
    installSystem();
    installAll("7.0");
    EXPECT_EQ(systemReport(),
              "Operating system\n"
              "  Name: Mac OS X (x86)\n"
              "  Version: 10.6.8 (10K549)\n"
              "\n"
              "Components\n"
              "  Server application: 1.1 (installer 7.0)\n"
              "  Client library: 1.2 (installer 7.0)\n"
              "  Sibling bundle: 1.3 (installer 7.0)\n"
              "  Compatibility bundle: 1.4 (installer 7.0)\n"
              "  Management application: 1.5 (installer 7.0)\n"
              "\n"
              "Consistency\n"
              "  Installer version: 7.0\n"
              "  (* behind it: not all components come from the same installer)\n"
              "\n"
              "<Removed system information> \n"
              "\n"
              "<Removed crash log information> \n"
              "\n");
}

TEST_F(SystemReportTest, SomeComponents_OneOfThemDamaged) {
    installSystem();
    install(serverComponent(), "2.0", "7.1");
    install(managementComponent(), "3.0 \xC3\xA9", "7.0");
    writeInfo(libraryComponent(), "bplist00 and nothing behind it");
    EXPECT_EQ(systemReport(), kSystemSection +
                                  "Components\n"
                                  "  Server application: 2.0 (installer 7.1)\n"
                                  "  Client library: n/a (installer n/a)\n"
                                  "  Sibling bundle: n/a (installer n/a)\n"
                                  "  Compatibility bundle: n/a (installer n/a)\n"
                                  "  Management application: 3.0 \xC3\xA9 (installer 7.0)\n"
                                  "\n"
                                  "Consistency\n"
                                  "  Installer version: 7.0*\n" +
                                  kEnd);
}

TEST_F(SystemReportTest, NothingInstalled_NotEvenASystemVersion) {
    EXPECT_EQ(systemReport(),
              "Operating system\n"
              "  Name: (null) (x86)\n"
              "  Version: (null) ((null))\n"
              "\n"
              "Components\n"
              "  Server application: n/a (installer n/a)\n"
              "  Client library: n/a (installer n/a)\n"
              "  Sibling bundle: n/a (installer n/a)\n"
              "  Compatibility bundle: n/a (installer n/a)\n"
              "  Management application: n/a (installer n/a)\n"
              "\n"
              "Consistency\n"
              "  Installer version: n/a\n" +
                  kEnd);
}

TEST_F(SystemReportTest, Report_LoadsNoGuiLibrary) {
    installSystem();
    installAll("7.0");
    ASSERT_FALSE(hasGuiLibrary());
    systemReport();
    EXPECT_FALSE(hasGuiLibrary());
}

}  // namespace
}  // namespace dovrel
