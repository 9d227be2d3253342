#include "portability/corefoundation/PropertyList.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <limits>
#include <string>
#include <vector>

#include "portability/corefoundation/Object.h"
#include "portability/corefoundation/PropertyListWriter.h"
#include "tests/portability/support/Held.h"
#include "tests/support/BinaryList.h"
#include "tests/support/DecimalComma.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using portability::copyDictionary;
using portability::copyPropertyList;
using portability::stringValue;

// {"a": "b"} in the binary format, written by hand from its description: header, objects, offsets, trailer.
const std::string kBinary(
    "bplist00"
    "\xD1\x01\x02"
    "\x51"
    "a"
    "\x51"
    "b"
    "\x08\x0B\x0D"
    "\0\0\0\0\0\0\x01\x01"
    "\0\0\0\0\0\0\0\x03"
    "\0\0\0\0\0\0\0\0"
    "\0\0\0\0\0\0\0\x0F",
    8 + 3 + 2 + 2 + 3 + 32);

class PropertyList : public testing::Test {
  protected:
    std::string parseValueA(const std::string& content) {
        folder_.write("list", content);
        const Held<CFDictionaryRef> dictionary(copyDictionary(folder_.path("list")));
        return toText(stringValue(dictionary.get(), CFSTR("a")));
    }

    bool isReadable(const std::string& content) {
        folder_.write("list", content);
        const Held<CFPropertyListRef> list(copyPropertyList(folder_.path("list")));
        return list.get() != nullptr;
    }

    double realIn(const std::string& number) {
        folder_.write("list", "<plist><real>" + number + "</real></plist>");
        const Held<CFPropertyListRef> list(copyPropertyList(folder_.path("list")));
        return list.get() == nullptr ? -1 : static_cast<const __CFNumber*>(list.get())->real;
    }

    std::string writtenAgain(const std::string& content) {
        folder_.write("list", content);
        const Held<CFPropertyListRef> list(copyPropertyList(folder_.path("list")));
        return portability::writeXmlPropertyList(*static_cast<const portability::Object*>(list.get()))
            .value_or("");
    }

    const dovrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(PropertyList, Read_AllThreeForms_ReturnsTheSame) {
    EXPECT_EQ(parseValueA("<plist version=\"1.0\"><dict><key>a</key><string>b</string></dict></plist>"), "b");
    EXPECT_EQ(parseValueA(kBinary), "b");
    EXPECT_EQ(parseValueA("{ a = b; }"), "b");
}

TEST_F(PropertyList, Read_EveryKindOfValueInXML_IsAnObject) {
    EXPECT_TRUE(
        isReadable("<plist><dict><key>i</key><integer>0x10</integer><key>r</key><real>-1e3</real>"
                   "<key>b</key><true/><key>t</key><date>2001-02-03T04:05:06Z</date>"
                   "<key>d</key><data>AQID</data><key>l</key><array><string/></array></dict></plist>"));
}

TEST_F(PropertyList, Read_OfRealNumbers_IsTheSameInEveryLocaleOfTheHost) {
    const dovrel::test::DecimalComma locale;
    EXPECT_EQ(realIn("1.5"), 1.5);
    EXPECT_EQ(realIn(" +2.25e2"), 225);
    EXPECT_EQ(realIn("1e999"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(realIn("1e-999"), 0);
}

TEST_F(PropertyList, Write_OfRealNumbers_IsTheSameInEveryLocaleOfTheHost) {
    const dovrel::test::DecimalComma locale;
    EXPECT_NE(writtenAgain("<plist><real>1.5</real></plist>").find("<real>1.5</real>"), std::string::npos);
    EXPECT_NE(writtenAgain("<plist><real>-1e300</real></plist>").find("e+300</real>"), std::string::npos);
}

TEST_F(PropertyList, Read_InvalidValues_AreRefused) {
    EXPECT_FALSE(isReadable("<plist><integer>many</integer></plist>"));
    EXPECT_FALSE(isReadable("<plist><real></real></plist>"));
    EXPECT_FALSE(isReadable("<plist><array><date>yesterday</date></array></plist>"));
    EXPECT_FALSE(isReadable("<plist><dict><key>k</key><date>2001</date></dict></plist>"));
    EXPECT_FALSE(isReadable("<plist><string>\xFF</string></plist>"));
    EXPECT_FALSE(isReadable("<plist><data>AQID\xFF</data></plist>"));
}

TEST_F(PropertyList, Read_Garbage_IsNullAndRaisesNothing) {
    EXPECT_FALSE(isReadable("bplist00"));
    EXPECT_FALSE(isReadable(kBinary.substr(0, 30)));
    EXPECT_FALSE(isReadable("{ a = "));
    EXPECT_FALSE(isReadable(""));
}

TEST_F(PropertyList, Read_ShortTexts_ReadNothingAfterThem) {
    for (const std::string start : {"<?xml version", "bplist00", "{ a = b; }", "// comment"}) {
        for (std::size_t length = 0; length < 8; ++length) {
            EXPECT_FALSE(isReadable(start.substr(0, length) + "<")) << start.substr(0, length);
        }
    }
}

TEST_F(PropertyList, Read_NoFile_IsNull) {
    EXPECT_EQ(copyPropertyList(folder_.path("absent")), nullptr);
    EXPECT_EQ(copyPropertyList(folder_.path()), nullptr);
}

TEST_F(PropertyList, CopyDictionary_OfAnotherKind_IsNull) {
    folder_.write("list", "<plist><array/></plist>");
    EXPECT_EQ(copyDictionary(folder_.path("list")), nullptr);
}

TEST_F(PropertyList, StringValue_AbsentOrOfAnotherKind_IsNull) {
    folder_.write("list", "<plist><dict><key>n</key><integer>1</integer></dict></plist>");
    const Held<CFDictionaryRef> dictionary(copyDictionary(folder_.path("list")));
    EXPECT_EQ(stringValue(dictionary.get(), CFSTR("n")), nullptr);
    EXPECT_EQ(stringValue(dictionary.get(), CFSTR("a")), nullptr);
    EXPECT_EQ(stringValue(nullptr, CFSTR("a")), nullptr);
}

TEST_F(PropertyList, CopyStrings_PlainAndUTF16_ReturnsKeysAndValues) {
    folder_.write("plain.strings",
                  "/* name */\n\"CFBundleName\" = \"N\xC3\xA4me\";\nCFBundleVersion = \"2\";\n");
    const Held<CFDictionaryRef> plain(portability::copyStrings(folder_.path("plain.strings")));
    EXPECT_EQ(toText(stringValue(plain.get(), CFSTR("CFBundleName"))), "N\xC3\xA4me");
    EXPECT_EQ(toText(stringValue(plain.get(), CFSTR("CFBundleVersion"))), "2");

    std::string wide = "\xFE\xFF";
    for (const char character : std::string("a = \"b\";\n")) {
        wide += {'\0', character};
    }
    folder_.write("wide.strings", wide);
    const Held<CFDictionaryRef> strings(portability::copyStrings(folder_.path("wide.strings")));
    EXPECT_EQ(toText(stringValue(strings.get(), CFSTR("a"))), "b");
}

// Each array of the chain contains the next one twice, so the document would have 2 to the power of 60 elements.
TEST_F(PropertyList, ObjectsThatAreReferredToAgainAndAgain_AreNotWrittenWithoutLimit) {
    constexpr uint64_t kArrays = 60;
    std::vector<std::string> objects;
    for (uint64_t next = 1; next <= kArrays; ++next)
        objects.push_back(dovrel::test::arrayObject({next, next}));
    objects.push_back(dovrel::test::asciiObject("a"));
    EXPECT_EQ(writtenAgain(dovrel::test::binaryList(objects)), "");
    objects = {dovrel::test::arrayObject({1, 1}), dovrel::test::arrayObject({2, 2}),
               dovrel::test::asciiObject("a")};
    EXPECT_NE(writtenAgain(dovrel::test::binaryList(objects))
                  .find("<array><array><string>a</string><string>a</string>"),
              std::string::npos);
}
