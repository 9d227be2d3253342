#include "ui/information/PropertyText.h"

#include <filesystem>

#include "tests/support/BinaryList.h"
#include "tests/ui/information/InstalledComponents.h"

namespace dovrel {
namespace {

using test::makeBinaryList;
using test::textEntry;
using test::xmlList;

class PropertyTextTest : public testing::Test {
  protected:
    std::optional<std::string> toText(const std::string& list) const {
        folder_.write("list", list);
        return textInPropertyList(folder_.path("list"), "key");
    }

    test::TemporaryFolder folder_;
};

TEST_F(PropertyTextTest, EveryForm_IsRead) {
    EXPECT_EQ(toText(xmlList(textEntry("key", "10.6.8"))), "10.6.8");
    EXPECT_EQ(toText(makeBinaryList("key", "10.6.8")), "10.6.8");
    EXPECT_EQ(toText("{ key = \"10.6.8\"; }"), "10.6.8");
}

TEST_F(PropertyTextTest, TextsOutsideAscii_AreUtf8) {
    EXPECT_EQ(toText(xmlList(textEntry("key",
                                       "Gr\xC3\xBC\xC3\x9F"
                                       "e &amp; \xE6\x97\xA5"))),
              "Gr\xC3\xBC\xC3\x9F"
              "e & \xE6\x97\xA5");
    EXPECT_EQ(toText(test::binaryList({test::dictionaryObject({1}, {2}), test::asciiObject("key"),
                                       test::utf16Object(std::string("\xD8\x3D\xDE\0", 4))})),
              std::string("\xF0\x9F\x98\x80"));
}

TEST_F(PropertyTextTest, HalfASurrogatePair_IsNothing) {
    EXPECT_EQ(toText(test::binaryList({test::dictionaryObject({1}, {2}), test::asciiObject("key"),
                                       test::utf16Object(std::string("\0a\xD8\x3D", 4))})),
              std::nullopt);
}

TEST_F(PropertyTextTest, TextsOfAnyLength_AreWhole) {
    EXPECT_EQ(toText(xmlList(textEntry("key", ""))), "");
    const std::string longText(300000, 'x');
    EXPECT_EQ(toText(xmlList(textEntry("key", longText))), longText);
    EXPECT_EQ(toText(makeBinaryList("key", longText)), longText);
}

TEST_F(PropertyTextTest, OtherKey_IsNothing) {
    EXPECT_EQ(toText(xmlList(textEntry("Key", "x"))), std::nullopt);
}

TEST_F(PropertyTextTest, ValuesThatAreNotStrings_AreFormattedAsThePlatformShowsObjects) {
    const std::pair<const char*, const char*> formatted[] = {
        {"<integer>10</integer>", "10"},
        {"<integer>-3</integer>", "-3"},
        {"<real>10.6</real>", "10.6"},
        {"<true/>", "1"},
        {"<false/>", "0"},
        {"<data>AQID</data>", "<010203>"},
    };
    for (const auto& [value, text] : formatted)
        EXPECT_EQ(toText(xmlList(std::string("<key>key</key>") + value)), text) << value;
    const auto date = toText(xmlList("<key>key</key><date>2001-02-03T04:05:06Z</date>"));
    ASSERT_TRUE(date);
    EXPECT_EQ(date->substr(0, 10), "2001-02-03") << "the form of the time is each Foundation's own";
    const auto list =
        toText(xmlList("<key>key</key><array><string>one</string><integer>2</integer></array>"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->front(), '(');
    EXPECT_LT(list->find("one"), list->find('2'));
    const auto dictionary =
        toText(xmlList("<key>key</key><dict><key>name</key><string>value</string></dict>"));
    ASSERT_TRUE(dictionary);
    EXPECT_EQ(dictionary->front(), '{');
    EXPECT_NE(dictionary->find("name = value;"), std::string::npos);
}

TEST_F(PropertyTextTest, ValuesOfBinaryLists_AreFormattedLikeThoseOfXml) {
    EXPECT_EQ(
        toText(test::binaryList({test::dictionaryObject({1}, {2}), test::asciiObject("key"), "\x10\x2A"})),
        "42");
}

TEST_F(PropertyTextTest, ListCutAnywhere_IsNothing) {
    for (const std::string& whole : {xmlList(textEntry("key", "10.6.8")), makeBinaryList("key", "10.6.8")}) {
        // The line feed after the XML document is not part of it.
        for (size_t length = 0; length < whole.size() - 1; ++length)
            EXPECT_EQ(toText(whole.substr(0, length)), std::nullopt) << length << " bytes of " << whole;
    }
}

TEST_F(PropertyTextTest, ListsThatAreNotADictionary_AreNothing) {
    EXPECT_EQ(toText("<plist version=\"1.0\"><array><string>key</string></array></plist>"), std::nullopt);
    EXPECT_EQ(toText(test::binaryList({test::asciiObject("key")})), std::nullopt);
    EXPECT_EQ(toText("key"), std::nullopt);
    EXPECT_EQ(toText("these are just some words"), std::nullopt);
    EXPECT_EQ(toText(std::string(1000, '\xFF')), std::nullopt);
    EXPECT_EQ(toText(std::string(1000, '\0')), std::nullopt);
}

TEST_F(PropertyTextTest, NoFileOrAFolder_IsNothing) {
    std::filesystem::create_directory(folder_.path("folder"));
    EXPECT_EQ(textInPropertyList(folder_.path("absent"), "key"), std::nullopt);
    EXPECT_EQ(textInPropertyList(folder_.path("folder"), "key"), std::nullopt);
    EXPECT_EQ(textInPropertyList("", "key"), std::nullopt);
    EXPECT_EQ(textInPropertyList("/\xFF", "key"), std::nullopt);
}

TEST_F(PropertyTextTest, KeyThatIsNotUtf8_IsNothing) {
    folder_.write("list", xmlList(textEntry("key", "x")));
    EXPECT_EQ(textInPropertyList(folder_.path("list"), "\xFF"), std::nullopt);
}

TEST_F(PropertyTextTest, PathOutsideAscii_IsFound) {
    folder_.write(
        "Gr\xC3\xBC\xC3\x9F"
        "e/list",
        xmlList(textEntry("key", "x")));
    EXPECT_EQ(textInPropertyList(folder_.path("Gr\xC3\xBC\xC3\x9F"
                                              "e/list"),
                                 "key"),
              "x");
}

TEST_F(PropertyTextTest, TextOfNoValue_IsNothing) {
    EXPECT_EQ(textFromValue(nullptr), std::nullopt);
}

}  // namespace
}  // namespace dovrel
