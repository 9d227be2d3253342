#include "ui/information/SystemInformation.h"

#include "tests/support/BinaryList.h"
#include "tests/ui/information/InstalledComponents.h"

namespace dovrel {
namespace {

using test::asciiObject;
using test::textEntry;
using test::xmlList;

class SystemInformationTest : public test::InstalledComponents {};

const std::string kSnowLeopard =
    xmlList(textEntry("ProductBuildVersion", "10K549") + textEntry("ProductName", "Mac OS X") +
            textEntry("ProductVersion", "10.6.8"));

TEST_F(SystemInformationTest, Value_IsThatOfTheSystemsList) {
    writeSystemVersion(kSnowLeopard);
    EXPECT_EQ(systemVersionValue("ProductName"), "Mac OS X");
    EXPECT_EQ(systemVersionValue("ProductVersion"), "10.6.8");
    EXPECT_EQ(systemVersionValue("ProductBuildVersion"), "10K549");
    EXPECT_EQ(systemVersionValue("ProductCopyright"), std::nullopt);
}

TEST_F(SystemInformationTest, Name_IsNameAndArchitecture) {
    writeSystemVersion(kSnowLeopard);
    EXPECT_EQ(osNameText(), "Mac OS X (x86)");
}

TEST_F(SystemInformationTest, Version_IsVersionAndBuild) {
    writeSystemVersion(kSnowLeopard);
    EXPECT_EQ(osVersionText(), "10.6.8 (10K549)");
}

TEST_F(SystemInformationTest, BinaryList_TellsTheSame) {
    writeSystemVersion(
        test::binaryList({test::dictionaryObject({1, 2, 3}, {4, 5, 6}), asciiObject("ProductName"),
                          asciiObject("ProductVersion"), asciiObject("ProductBuildVersion"),
                          asciiObject("Mac OS X"), asciiObject("10.6.8"), asciiObject("10K549")}));
    EXPECT_EQ(osNameText(), "Mac OS X (x86)");
    EXPECT_EQ(osVersionText(), "10.6.8 (10K549)");
}

TEST_F(SystemInformationTest, WithoutTheList_TheAbsentObjectsAreFormattedAsThePlatformDoes) {
    EXPECT_EQ(systemVersionValue("ProductName"), std::nullopt);
    EXPECT_EQ(osNameText(), "(null) (x86)");
    EXPECT_EQ(osVersionText(), "(null) ((null))");
}

TEST_F(SystemInformationTest, DamagedList_IsAsNone) {
    for (const std::string& list :
         {std::string(), kSnowLeopard.substr(0, kSnowLeopard.size() / 2), std::string("bplist00"),
          std::string("<plist version=\"1.0\"><array/></plist>")}) {
        writeSystemVersion(list);
        EXPECT_EQ(osNameText(), "(null) (x86)") << list;
        EXPECT_EQ(osVersionText(), "(null) ((null))") << list;
    }
}

TEST_F(SystemInformationTest, LongEmptyAndNonAsciiTexts_AreFormattedAsTheyAre) {
    const std::string longText(100000, '9');
    writeSystemVersion(xmlList(textEntry("ProductName", "Syst\xC3\xA8me %@ %s") +
                               textEntry("ProductVersion", longText) + textEntry("ProductBuildVersion", "")));
    EXPECT_EQ(osNameText(), "Syst\xC3\xA8me %@ %s (x86)");
    EXPECT_EQ(osVersionText(), longText + " ()");
}

TEST_F(SystemInformationTest, ListThatChanges_IsReadAnew) {
    writeSystemVersion(xmlList(textEntry("ProductName", "Mac OS X")));
    EXPECT_EQ(osNameText(), "Mac OS X (x86)");
    writeSystemVersion(xmlList(textEntry("ProductName", "macOS")));
    EXPECT_EQ(osNameText(), "macOS (x86)");
}

}  // namespace
}  // namespace dovrel
