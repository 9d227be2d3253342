// Contract tests of property lists.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/portability/support/Held.h"
#include "tests/support/BinaryList.h"

namespace {

using dovrel::test::asciiObject;
using dovrel::test::binaryList;
using dovrel::test::dictionaryObject;

const std::string kXml = "<plist version=\"1.0\"><dict><key>a</key><string>b</string></dict></plist>";
const std::string kBinary = binaryList({dictionaryObject({1}, {2}), asciiObject("a"), asciiObject("b")});
const std::string kOldStyle = "{ a = b; }";

class CFPropertyList : public testing::Test {
  protected:
    static CFPropertyListRef newList(const std::string& content, CFPropertyListFormat* format = nullptr,
                                     CFErrorRef* error = nullptr) {
        const Held<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                                reinterpret_cast<const UInt8*>(content.data()),
                                                static_cast<CFIndex>(content.size())));
        return CFPropertyListCreateWithData(kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, format,
                                            error);
    }
};

}  // namespace

TEST_F(CFPropertyList, CreateWithData_InEveryForm_ReturnsTheDictionaryAndTheForm) {
    const struct {
        std::string content;
        CFPropertyListFormat format;
    } forms[] = {{kXml, kCFPropertyListXMLFormat_v1_0},
                 {kBinary, kCFPropertyListBinaryFormat_v1_0},
                 {kOldStyle, kCFPropertyListOpenStepFormat}};
    for (const auto& form : forms) {
        CFPropertyListFormat format = 0;
        CFErrorRef error = nullptr;
        const Held<CFPropertyListRef> list(newList(form.content, &format, &error));
        ASSERT_NE(list.get(), nullptr) << form.content;
        ASSERT_EQ(CFGetTypeID(list.get()), CFDictionaryGetTypeID());
        EXPECT_EQ(toText(CFDictionaryGetValue(static_cast<CFDictionaryRef>(list.get()), CFSTR("a"))), "b");
        EXPECT_EQ(format, form.format);
        EXPECT_EQ(error, nullptr);
    }
}

TEST_F(CFPropertyList, CreateWithData_Damaged_IsNullWithAnError) {
    for (const std::string& content :
         {std::string(), std::string("bplist00"), kBinary.substr(0, 30), kXml.substr(0, 40),
          kOldStyle.substr(0, 6), std::string("\0\0\0\1", 4), std::string("\1\2\3\4")}) {
        CFErrorRef error = nullptr;
        EXPECT_EQ(newList(content, nullptr, &error), nullptr) << content;
        const Held<CFErrorRef> held(error);
        ASSERT_NE(error, nullptr) << content;
        EXPECT_EQ(CFErrorGetCode(error), 3840);
        EXPECT_EQ(toText(CFErrorGetDomain(error)), "NSCocoaErrorDomain");
    }
}

TEST_F(CFPropertyList, CreateWithData_WhereNobodyAsksForFormAndError_NeedsNoPlaceForThem) {
    const Held<CFPropertyListRef> list(newList(kXml));
    EXPECT_NE(list.get(), nullptr);
    EXPECT_EQ(newList(""), nullptr);
}

TEST_F(CFPropertyList, CreateData_InTheXmlForm_ReadsBackTheSame) {
    const Held<CFPropertyListRef> list(newList(
        "<plist><dict><key>a&lt;</key><string>b &amp; "
        "c\xC3\xA9</string><key>l</key><array><integer>-7</integer>"
        "<real>1.5</real><true/><false/><date>2001-02-03T04:05:06Z</date><data>AQIDBA==</data></array></dict>"
        "</plist>"));
    ASSERT_NE(list.get(), nullptr);
    const Held<CFDataRef> data(
        CFPropertyListCreateData(kCFAllocatorDefault, list.get(), kCFPropertyListXMLFormat_v1_0, 0, nullptr));
    ASSERT_NE(data.get(), nullptr);
    const UInt8* const bytes = CFDataGetBytePtr(data.get());
    const std::string text(bytes, bytes + CFDataGetLength(data.get()));
    for (const char* part :
         {"<key>a&lt;</key>", "<string>b &amp; c\xC3\xA9</string>", "<integer>-7</integer>",
          "<real>1.5</real>", "<true/>", "<false/>", "<date>2001-02-03T04:05:06Z</date>", "AQIDBA=="})
        EXPECT_NE(text.find(part), std::string::npos) << part;
    const Held<CFPropertyListRef> again(newList(text));
    ASSERT_NE(again.get(), nullptr);
    EXPECT_EQ(toText(CFDictionaryGetValue(static_cast<CFDictionaryRef>(again.get()), CFSTR("a<"))),
              "b & c\xC3\xA9");
}

TEST_F(CFPropertyList, CreateData_OfWhatIsNotAPropertyList_IsNullWithAnError) {
    const Held<CFURLRef> url(newFileURL("/tmp"));
    CFErrorRef error = nullptr;
    EXPECT_EQ(
        CFPropertyListCreateData(kCFAllocatorDefault, url.get(), kCFPropertyListXMLFormat_v1_0, 0, &error),
        nullptr);
    const Held<CFErrorRef> held(error);
    EXPECT_NE(error, nullptr);
}
