// Values of property lists that are not strings read as "%@" formats them. This is Objective-C++, because
// Foundation makes the expected texts from the same values.
#import <Foundation/Foundation.h>

#include <vector>

#include "tests/support/BinaryList.h"
#include "tests/ui/information/InstalledComponents.h"
#include "ui/information/ComponentVersions.h"
#include "ui/information/SystemInformation.h"
#include "ui/information/SystemReport.h"

namespace dovrel {
namespace {

using test::textEntry;
using test::xmlList;

/// A value as written in an XML list, and as Foundation formats it.
struct Example {
    std::string xml;
    std::string text;
};

std::string formatted(id value) { return [[NSString stringWithFormat:@"%@", value] UTF8String]; }

std::vector<Example> examples() {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    const std::vector<Example> all = {
        {"<integer>10</integer>", formatted([NSNumber numberWithInt:10])},
        {"<integer>-9223372036854775807</integer>",
         formatted([NSNumber numberWithLongLong:-9223372036854775807])},
        {"<real>10.6</real>", formatted([NSNumber numberWithDouble:10.6])},
        {"<true/>", formatted([NSNumber numberWithBool:YES])},
        {"<false/>", formatted([NSNumber numberWithBool:NO])},
        {"<data>AQID</data>", formatted([NSData dataWithBytes:"\1\2\3" length:3])},
        {"<array/>", formatted([NSArray array])},
        {"<array><string>a</string><integer>1</integer></array>",
         formatted([NSArray arrayWithObjects:@"a", [NSNumber numberWithInt:1], nil])},
        {"<dict><key>key</key><string>x y</string></dict>",
         formatted([NSDictionary dictionaryWithObject:@"x y" forKey:@"key"])},
    };
    [pool release];
    return all;
}

std::string entry(const std::string& key, const Example& example) {
    return "<key>" + key + "</key>" + example.xml;
}

class ValuesOfOtherTypes : public test::InstalledComponents {};

TEST_F(ValuesOfOtherTypes, InTheSystemVersion_AreFormatted) {
    for (const Example& example : examples()) {
        writeSystemVersion(xmlList(entry("ProductName", example) + entry("ProductVersion", example) +
                                   textEntry("ProductBuildVersion", "10K549")));
        EXPECT_EQ(systemVersionValue("ProductVersion"), example.text) << example.xml;
        EXPECT_EQ(osNameText(), example.text + " (x86)") << example.xml;
        EXPECT_EQ(osVersionText(), example.text + " (10K549)") << example.xml;
    }
}

TEST_F(ValuesOfOtherTypes, InTheVersionsOfAComponent_AreFormatted) {
    for (const Example& example : examples()) {
        writeInfo(serverComponent(),
                  xmlList(entry("CFBundleVersion", example) + entry("HarlInstallerVersion", example)));
        EXPECT_EQ(serverVersionText(), example.text) << example.xml;
        EXPECT_EQ(bundleVersionText("", serverComponent().path), example.text) << example.xml;
        EXPECT_EQ(installerVersion(serverComponent().path), example.text) << example.xml;
        EXPECT_NE(systemReport().find(example.text + " (installer " + example.text + ")"), std::string::npos);
    }
}

TEST_F(ValuesOfOtherTypes, NumberAndTextThatReadTheSame_AreTheSameInstaller) {
    installAll("7");
    writeInfo(managementComponent(), xmlList("<key>HarlInstallerVersion</key><integer>7</integer>"));
    EXPECT_EQ(componentsInstallerVersion(), "7");
    writeInfo(serverComponent(), xmlList("<key>HarlInstallerVersion</key><real>7.5</real>"));
    EXPECT_EQ(componentsInstallerVersion(), "7*");
}

// GNUstep prints a date in the format that was read, so the test checks only what all formats contain.
TEST_F(ValuesOfOtherTypes, Dates_AreFormattedWithDayAndTime) {
    writeSystemVersion(xmlList("<key>ProductName</key><date>2001-09-09T01:46:40Z</date>"));
    EXPECT_EQ(osNameText().substr(0, 10), "2001-09-09");
    EXPECT_NE(osNameText().find("01:46:40"), std::string::npos);
}

TEST_F(ValuesOfOtherTypes, DatesOfAllTimes_AreTextsOfADate) {
    writeSystemVersion(xmlList("<key>ProductName</key><date>0000-01-01T00:00:00Z</date>"));
    EXPECT_EQ(osNameText().substr(0, 3), "000");
    // The bits of -1e300, 1e300 and -1e12 seconds since 2001.
    for (const uint64_t bits : {0xFE37E43C8800759CU, 0x7E37E43C8800759CU, 0xC26D1A94A2000000U}) {
        writeSystemVersion(
            test::binaryList({test::dictionaryObject({1}, {2}), test::asciiObject("ProductName"),
                              "\x33" + test::bigEndian(bits, 8)}));
        const std::string text = osNameText();
        EXPECT_NE(text.find(':'), std::string::npos) << text;
        EXPECT_EQ(text.substr(text.size() - 6), " (x86)") << text;
    }
}

}  // namespace
}  // namespace dovrel
