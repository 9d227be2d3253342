#include "portability/corefoundation/XmlPropertyList.h"

#include <gtest/gtest.h>

namespace {

using portability::isXmlPropertyList;
using portability::PropertyListNode;
using portability::readXmlPropertyList;
using Kind = PropertyListNode::Kind;

std::string document(const std::string& value) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n" +
           value + "\n</plist>\n";
}

// Returns the text of a document that consists of one string; "(none)" if it cannot be read.
std::string stringIn(const std::string& content) {
    const auto node = readXmlPropertyList(document("<string>" + content + "</string>"));
    return node && node->kind == Kind::string ? node->text : "(none)";
}

bool isReadable(const std::string& whole) {
    return readXmlPropertyList(whole).has_value();
}

}  // namespace

TEST(XmlPropertyList, Dictionary_KeepsKeysValuesAndTheirOrder) {
    const auto node = readXmlPropertyList(
        document("<dict>\n  <key>b</key>\n  <string>text</string>\n  <key>a</key><integer>-12</integer>\n"
                 "<key>t</key><true/><key>f</key><false /><key>r</key><real>1.5</real>"
                 "<key>d</key><date>2001-02-03T04:05:06Z</date><key>x</key><data>\n\tAQID\n</data></dict>"));
    ASSERT_TRUE(node);
    ASSERT_EQ(node->kind, Kind::dictionary);
    ASSERT_EQ(node->members.size(), 7U);
    const std::pair<const char*, Kind> expected[] = {
        {"b", Kind::string}, {"a", Kind::integer}, {"t", Kind::boolean}, {"f", Kind::boolean},
        {"r", Kind::real},   {"d", Kind::date},    {"x", Kind::data}};
    const char* texts[] = {"text", "-12", "true", "false", "1.5", "2001-02-03T04:05:06Z", "\n\tAQID\n"};
    for (std::size_t index = 0; index < 7; ++index) {
        EXPECT_EQ(node->members[index].first, expected[index].first);
        EXPECT_EQ(node->members[index].second.kind, expected[index].second);
        EXPECT_EQ(node->members[index].second.text, texts[index]);
    }
}

TEST(XmlPropertyList, Arrays_MayBeNestedAndEmpty) {
    const auto node = readXmlPropertyList(document("<array><array/><array></array><string/></array>"));
    ASSERT_TRUE(node);
    ASSERT_EQ(node->members.size(), 3U);
    EXPECT_EQ(node->members[0].second.kind, Kind::array);
    EXPECT_TRUE(node->members[0].first.empty());
    EXPECT_TRUE(node->members[1].second.members.empty());
    EXPECT_EQ(node->members[2].second.kind, Kind::string);
}

TEST(XmlPropertyList, Text_WithReferences_IsResolved) {
    EXPECT_EQ(stringIn("a &lt;&gt;&amp;&quot;&apos; b"), "a <>&\"' b");
    EXPECT_EQ(stringIn("&#65;&#x20AC;&#x1d11e;"), "A\xE2\x82\xAC\xF0\x9D\x84\x9E");
    EXPECT_EQ(stringIn("<![CDATA[<&amp;>]]>x"), "<&amp;>x");
    EXPECT_EQ(stringIn("a<!-- left out -->b"), "ab");
    EXPECT_EQ(stringIn("  kept  \n"), "  kept  \n");
}

TEST(XmlPropertyList, Text_WithDamagedReferences_IsRefused) {
    for (const char* reference : {"&unknown;", "&;", "&#;", "&#x;", "&#xD800;", "&#x110000;", "&#0;", "&#1a;",
                                  "&amp", "&#-65;", "&#99999999999999999999;", "& "}) {
        EXPECT_EQ(stringIn(reference), "(none)") << reference;
    }
}

TEST(XmlPropertyList, CommentsAndInstructions_BetweenElements_AreSkipped) {
    EXPECT_TRUE(
        isReadable("<!-- a > b --><?other thing?><plist><!-- c --><dict><!-- d --><key>k</key><!-- e -->"
                   "<string>v</string></dict></plist>"));
    EXPECT_TRUE(isReadable("\xEF\xBB\xBF<plist><string/></plist>"));
}

TEST(XmlPropertyList, DamagedDocuments_AreRefused) {
    for (const char* whole :
         {"", "<plist", "<plist>", "<plist></plist>", "<plist/>", "<dict></dict>",
          "<plist><unknown/></plist>", "<plist><string>x</plist>", "<plist><string>x</integer></plist>",
          "<plist><dict><string>x</string></dict></plist>", "<plist><dict><key>k</key></dict></plist>",
          "<plist><dict><key>k</key><string>v</string></plist>", "<plist><string>x</string>",
          "<plist><!-- never closed <string/></plist>", "<plist><string><![CDATA[x</string></plist>",
          "<plist>text<string/></plist>", "<plist><string/>text</plist>", "<plist><></plist>"}) {
        EXPECT_FALSE(isReadable(whole)) << whole;
    }
}

TEST(XmlPropertyList, DocumentType_WithDefinitionsOfItsOwn_IsRefused) {
    EXPECT_FALSE(isReadable("<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>"));
    EXPECT_FALSE(isReadable("<!DOCTYPE plist [<plist><string/></plist>"));
    EXPECT_FALSE(isReadable("<!DOCTYPE plist [ ]><plist><string/></plist>"));
}

TEST(XmlPropertyList, Nesting_IsLimited) {
    const auto nested = [](int depth) {
        std::string text = "<plist>";
        for (int level = 0; level < depth; ++level) {
            text += "<array>";
        }
        for (int level = 0; level < depth; ++level) {
            text += "</array>";
        }
        return text + "</plist>";
    };
    EXPECT_TRUE(isReadable(nested(100)));
    EXPECT_FALSE(isReadable(nested(1000)));
    EXPECT_FALSE(isReadable(nested(1000000)));
}

TEST(XmlPropertyList, Recognition_GoesByTheStartAndTheEncoding) {
    EXPECT_TRUE(isXmlPropertyList("<?xml version=\"1.0\"?><plist/>"));
    EXPECT_TRUE(isXmlPropertyList("\xEF\xBB\xBF <?xml version=\"1.0\" encoding=\"utf-8\"?><plist/>"));
    EXPECT_TRUE(isXmlPropertyList("<plist>"));
    EXPECT_FALSE(isXmlPropertyList("<?xml version=\"1.0\" encoding=\"UTF-16\"?><plist/>"));
    EXPECT_FALSE(isXmlPropertyList("bplist00"));
    EXPECT_FALSE(isXmlPropertyList("{ a = b; }"));
    EXPECT_FALSE(isXmlPropertyList("<0a0b>"));
    EXPECT_FALSE(isXmlPropertyList(""));
}
