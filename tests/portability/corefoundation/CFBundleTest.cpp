// Contract tests of bundles.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/portability/support/Held.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using dovrel::test::TemporaryFolder;

std::string infoPlist(const std::string& entries) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n" +
           entries + "</dict>\n</plist>\n";
}

std::string entry(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><string>" + value + "</string>\n";
}

CFBundleRef newBundle(const TemporaryFolder& folder, const std::string& name) {
    const Held<CFURLRef> url(newFileURL(folder.path(name), true));
    return CFBundleCreate(kCFAllocatorDefault, url.get());
}

UInt32 versionNumber(const std::string& version) {
    const TemporaryFolder folder;
    folder.write("X.bundle/Contents/Info.plist", infoPlist(entry("CFBundleVersion", version)));
    const Held<CFBundleRef> bundle(newBundle(folder, "X.bundle"));
    return CFBundleGetVersionNumber(bundle.get());
}

class CFBundle : public testing::Test {
  protected:
    void SetUp() override {
        folder_.write("Plug.bundle/Contents/Info.plist",
                      infoPlist(entry("CFBundleIdentifier", "com.example.plug") +
                                entry("CFBundleVersion", "1.2.3") + entry("CFBundleExecutable", "Plug") +
                                "<key>Names</key><array><string>one</string><string>two</string></array>\n"
                                "<key>Table</key><dict><key>inner</key><string>value</string></dict>\n"));
        folder_.write("Plug.bundle/Contents/MacOS/Plug", "not code");
        folder_.write("Plug.bundle/Contents/Resources/Texts.mls", "x");
        folder_.write("Plug.bundle/Contents/Resources/Helpsystem/Helpsystem English RC MacOSX/index.html",
                      "x");
    }

    const TemporaryFolder folder_;
};

}  // namespace

TEST_F(CFBundle, Create_NothingThere_IsNull) {
    const Held<CFBundleRef> bundle(newBundle(folder_, "Absent.bundle"));
    EXPECT_EQ(bundle.get(), nullptr);
}

TEST_F(CFBundle, Create_FolderWithoutInfoPlist_IsABundleThatSaysNothing) {
    std::filesystem::create_directories(folder_.path("Bare.bundle/Contents"));
    const Held<CFBundleRef> bundle(newBundle(folder_, "Bare.bundle"));
    ASSERT_NE(bundle.get(), nullptr);
    EXPECT_EQ(CFBundleGetIdentifier(bundle.get()), nullptr);
    EXPECT_EQ(CFBundleGetVersionNumber(bundle.get()), 0U);
    EXPECT_EQ(CFBundleGetValueForInfoDictionaryKey(bundle.get(), kCFBundleVersionKey), nullptr);
}

TEST_F(CFBundle, GetIdentifierAndValue_AreThoseOfTheInfoPlist) {
    const Held<CFBundleRef> bundle(newBundle(folder_, "Plug.bundle"));
    ASSERT_NE(bundle.get(), nullptr);
    EXPECT_EQ(toText(CFBundleGetIdentifier(bundle.get())), "com.example.plug");
    EXPECT_EQ(toText(CFBundleGetValueForInfoDictionaryKey(bundle.get(), kCFBundleVersionKey)), "1.2.3");
    EXPECT_EQ(CFBundleGetValueForInfoDictionaryKey(bundle.get(), CFSTR("Absent")), nullptr);
}

TEST_F(CFBundle, GetValue_ArraysAndDictionaries_CanBeRead) {
    const Held<CFBundleRef> bundle(newBundle(folder_, "Plug.bundle"));
    const CFTypeRef names = CFBundleGetValueForInfoDictionaryKey(bundle.get(), CFSTR("Names"));
    ASSERT_NE(names, nullptr);
    ASSERT_EQ(CFGetTypeID(names), CFArrayGetTypeID());
    ASSERT_EQ(CFArrayGetCount(static_cast<CFArrayRef>(names)), 2);
    EXPECT_EQ(toText(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(names), 1)), "two");

    const CFTypeRef table = CFBundleGetValueForInfoDictionaryKey(bundle.get(), CFSTR("Table"));
    ASSERT_NE(table, nullptr);
    ASSERT_EQ(CFGetTypeID(table), CFDictionaryGetTypeID());
    EXPECT_EQ(CFDictionaryGetCount(static_cast<CFDictionaryRef>(table)), 1);
    EXPECT_EQ(toText(CFDictionaryGetValue(static_cast<CFDictionaryRef>(table), CFSTR("inner"))), "value");
    EXPECT_EQ(CFDictionaryGetValue(static_cast<CFDictionaryRef>(table), CFSTR("outer")), nullptr);
    EXPECT_TRUE(CFDictionaryContainsKey(static_cast<CFDictionaryRef>(table), CFSTR("inner")));
    EXPECT_FALSE(CFDictionaryContainsKey(static_cast<CFDictionaryRef>(table), CFSTR("outer")));
}

TEST_F(CFBundle, GetVersionNumber_PacksTheVersion) {
    EXPECT_EQ(versionNumber("1.2.3"), 0x01238000U);
    EXPECT_EQ(versionNumber("10.2b4"), 0x10206004U);
    EXPECT_EQ(versionNumber("1"), 0x01008000U);
    EXPECT_EQ(versionNumber("1.0.2d255"), 0x010220FFU);
    EXPECT_EQ(versionNumber("2.5a1"), 0x02504001U);
}

TEST_F(CFBundle, GetVersionNumber_OtherForms_AreZero) {
    EXPECT_EQ(versionNumber("1.10"), 0U);
    EXPECT_EQ(versionNumber("1.2.3.4"), 0U);
    EXPECT_EQ(versionNumber("100.1"), 0U);
    EXPECT_EQ(versionNumber("one"), 0U);
    EXPECT_EQ(versionNumber("1.2.3b12345"), 0U) << "more than 10 characters";
    EXPECT_EQ(versionNumber("1.0d256"), 0U);
    EXPECT_EQ(versionNumber(""), 0U);
}

TEST_F(CFBundle, CopyURLs_NameThePartsOfTheBundle) {
    const Held<CFBundleRef> bundle(newBundle(folder_, "Plug.bundle"));
    const Held<CFURLRef> whole(CFBundleCopyBundleURL(bundle.get()));
    const Held<CFURLRef> executable(CFBundleCopyExecutableURL(bundle.get()));
    const Held<CFURLRef> resources(CFBundleCopyResourcesDirectoryURL(bundle.get()));
    EXPECT_EQ(toPath(whole.get()), folder_.path("Plug.bundle"));
    EXPECT_EQ(toPath(executable.get()), folder_.path("Plug.bundle/Contents/MacOS/Plug"));
    EXPECT_EQ(toPath(resources.get()), folder_.path("Plug.bundle/Contents/Resources"));
}

TEST_F(CFBundle, CopyResourceURL_WithTypeAndFolder_FindsTheFile) {
    const Held<CFBundleRef> bundle(newBundle(folder_, "Plug.bundle"));
    const Held<CFURLRef> file(CFBundleCopyResourceURL(bundle.get(), CFSTR("Texts"), CFSTR("mls"), nullptr));
    const Held<CFURLRef> whole(CFBundleCopyResourceURL(bundle.get(), CFSTR("Texts.mls"), nullptr, nullptr));
    const Held<CFURLRef> folder(CFBundleCopyResourceURL(bundle.get(), CFSTR("Helpsystem English RC MacOSX"),
                                                        nullptr, CFSTR("Helpsystem")));
    EXPECT_EQ(toPath(file.get()), folder_.path("Plug.bundle/Contents/Resources/Texts.mls"));
    EXPECT_EQ(toPath(whole.get()), folder_.path("Plug.bundle/Contents/Resources/Texts.mls"));
    EXPECT_EQ(toPath(folder.get()),
              folder_.path("Plug.bundle/Contents/Resources/Helpsystem/Helpsystem English RC MacOSX"));
}

TEST_F(CFBundle, CopyResourceURL_Absent_IsNull) {
    const Held<CFBundleRef> bundle(newBundle(folder_, "Plug.bundle"));
    const Held<CFURLRef> file(CFBundleCopyResourceURL(bundle.get(), CFSTR("Texts"), CFSTR("txt"), nullptr));
    const Held<CFURLRef> folder(
        CFBundleCopyResourceURL(bundle.get(), CFSTR("Texts"), CFSTR("mls"), CFSTR("Absent")));
    EXPECT_EQ(file.get(), nullptr);
    EXPECT_EQ(folder.get(), nullptr);
}

TEST_F(CFBundle, GetBundleWithIdentifier_FindsABundleInUseAndNoOther) {
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.plug")), nullptr)
        << "the disk is not searched";
    const Held<CFBundleRef> bundle(newBundle(folder_, "Plug.bundle"));
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.plug")), bundle.get());
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.other")), nullptr);
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.PLUG")), nullptr);
}

TEST_F(CFBundle, GetBundleWithIdentifier_TwoInUse_ReturnsTheHigherVersion) {
    folder_.write(
        "Newer.bundle/Contents/Info.plist",
        infoPlist(entry("CFBundleIdentifier", "com.example.plug") + entry("CFBundleVersion", "1.3")));
    const Held<CFBundleRef> newer(newBundle(folder_, "Newer.bundle"));
    const Held<CFBundleRef> older(newBundle(folder_, "Plug.bundle"));
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.plug")), newer.get());
}

TEST_F(CFBundle, GetMainBundle_OfATool_IsItsFolderWithoutIdentifier) {
    const CFBundleRef main = CFBundleGetMainBundle();
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(CFBundleGetMainBundle(), main);
    EXPECT_EQ(CFBundleGetIdentifier(main), nullptr);
    const Held<CFURLRef> url(CFBundleCopyBundleURL(main));
    EXPECT_TRUE(std::filesystem::exists(toPath(url.get()) + "/portability_corefoundation_contract_tests"));
}
