#include "ui/information/ComponentVersions.h"

#include <dlfcn.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

#include "platform/CFObject.h"
#include "platform/files/FileURL.h"
#include "tests/ui/information/InstalledComponents.h"

namespace dovrel {
namespace {

using test::makeBinaryList;
using test::textEntry;
using test::xmlList;

class ComponentVersionsTest : public test::InstalledComponents {
  protected:
    /// Writes a bundle with that identifier outside the listed folders.
    void writeElsewhere(const std::string& identifier, const std::string& version) const {
        const std::string versionEntry = version.empty() ? "" : textEntry("CFBundleVersion", version);
        root_.write("Elsewhere/Some.bundle/Contents/Info.plist",
                    xmlList(textEntry("CFBundleIdentifier", identifier) + versionEntry));
    }

    /// Returns a bundle that the process knows while the reference is held.
    CFBundleRef newBundleElsewhere() const {
        return CFBundleCreate(kCFAllocatorDefault,
                              fileURL(root_.path("Elsewhere/Some.bundle"), kCFStringEncodingUTF8).get());
    }
};

TEST_F(ComponentVersionsTest, EachComponentsFunction_TellsItsVersion) {
    installAll("7.0");
    EXPECT_EQ(serverVersionText(), "1.1");
    EXPECT_EQ(libraryVersionText(), "1.2");
    EXPECT_EQ(siblingVersionText(), "1.3");
    EXPECT_EQ(compatibilityVersionText(), "1.4");
    EXPECT_EQ(managementVersionText(), "1.5");
}

TEST_F(ComponentVersionsTest, ComponentThatIsNotInstalled_IsNotAvailable) {
    for (const auto function : {serverVersionText, libraryVersionText, siblingVersionText,
                                compatibilityVersionText, managementVersionText})
        EXPECT_EQ(function(), "n/a");
    EXPECT_EQ(installerVersion(serverComponent().path), "n/a");
}

TEST_F(ComponentVersionsTest, BundleKnownUnderItsIdentifier_IsFoundElsewhereAndBeforeTheListedPath) {
    writeElsewhere(siblingIdentifier(), "9.9");
    EXPECT_EQ(siblingVersionText(), "n/a") << "the disk is not searched";
    const CFObject<CFBundleRef> elsewhere(newBundleElsewhere());
    EXPECT_EQ(siblingVersionText(), "9.9");
    install(siblingComponent(), "1.3", "7.0");
    EXPECT_EQ(siblingVersionText(), "9.9");
}

TEST_F(ComponentVersionsTest, SeveralThreads_EachGetTheVersion) {
    install(siblingComponent(), "1.3", "7.0");
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&wrong] {
            for (int round = 0; round < 200; ++round)
                wrong += siblingVersionText() == "1.3" ? 0 : 1;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(ComponentVersionsTest, BundleWhoseCodeIsLoaded_IsFoundUnderItsIdentifier) {
    // From now on the process knows this bundle, so no other test may use the identifier.
    constexpr char kIdentifier[] = "com.example.loaded";
    writeElsewhere(kIdentifier, "4.2");
    const std::string folder = root_.path("Elsewhere/Some.bundle/Contents/MacOS");
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(DOVREL_LOADED_CODE, folder + "/Some");
    EXPECT_EQ(bundleVersionText(kIdentifier, "/Library/Nothing.bundle"), "n/a");
    ASSERT_NE(dlopen((folder + "/Some").c_str(), RTLD_NOW | RTLD_LOCAL), nullptr) << dlerror();
    EXPECT_EQ(bundleVersionText(kIdentifier, "/Library/Nothing.bundle"), "4.2");
}

TEST_F(ComponentVersionsTest, KnownBundleWithoutVersion_IsNotAvailableWhateverIsAtThePath) {
    writeElsewhere(siblingIdentifier(), "");
    install(siblingComponent(), "1.3", "7.0");
    const CFObject<CFBundleRef> elsewhere(newBundleElsewhere());
    EXPECT_EQ(siblingVersionText(), "n/a");
}

TEST_F(ComponentVersionsTest, BundleOfAnotherIdentifierAtThePath_TellsItsVersion) {
    writeInfo(serverComponent(), xmlList(textEntry("CFBundleIdentifier", "com.example.other") +
                                         textEntry("CFBundleVersion", "3")));
    EXPECT_EQ(serverVersionText(), "3");
}

TEST_F(ComponentVersionsTest, BinaryList_TellsItsVersion) {
    writeInfo(serverComponent(), makeBinaryList("CFBundleVersion", "3.1"));
    EXPECT_EQ(serverVersionText(), "3.1");
    writeInfo(serverComponent(), makeBinaryList("HarlInstallerVersion", "7.1"));
    EXPECT_EQ(installerVersion(serverComponent().path), "7.1");
}

TEST_F(ComponentVersionsTest, LongAndNonAsciiVersions_AreWhole) {
    const std::string version = "1 \xC3\xA9 \xE6\x97\xA5 " + std::string(100000, '1');
    install(serverComponent(), version, version);
    EXPECT_EQ(serverVersionText(), version);
    EXPECT_EQ(installerVersion(serverComponent().path), version);
}

TEST_F(ComponentVersionsTest, DamagedLists_AreNotAvailable) {
    const std::string xml =
        xmlList(textEntry("CFBundleVersion", "1") + textEntry("HarlInstallerVersion", "2"));
    const std::string binary = makeBinaryList("CFBundleVersion", "1");
    for (const std::string& list :
         {std::string(), xml.substr(0, xml.size() - 20), binary.substr(0, binary.size() - 5),
          binary.substr(0, 20), std::string("<plist version=\"1.0\"><array/></plist>"),
          std::string("no list")}) {
        writeInfo(serverComponent(), list);
        EXPECT_EQ(serverVersionText(), "n/a") << list;
        EXPECT_EQ(installerVersion(serverComponent().path), "n/a") << list;
    }
}

TEST_F(ComponentVersionsTest, FileInPlaceOfTheBundle_IsNotAvailable) {
    root_.write(serverComponent().path.substr(1), "no folder");
    EXPECT_EQ(serverVersionText(), "n/a");
    EXPECT_EQ(installerVersion(serverComponent().path), "n/a");
}

TEST_F(ComponentVersionsTest, IdentifiersAndPathsThatNameNothing_AreNotAvailable) {
    install(serverComponent(), "1.1", "7.0");
    EXPECT_EQ(bundleVersionText("", serverComponent().path), "1.1");
    EXPECT_EQ(bundleVersionText("\xFF", serverComponent().path), "1.1");
    EXPECT_EQ(bundleVersionText("", ""), "n/a");
    EXPECT_EQ(bundleVersionText("", "/\xFF"), "n/a");
    EXPECT_EQ(installerVersion(""), "n/a");
    EXPECT_EQ(installerVersion("/\xFF"), "n/a");
}

TEST_F(ComponentVersionsTest, NewVersionInPlaceOfTheOld_IsTold) {
    install(serverComponent(), "1.1", "7.0");
    EXPECT_EQ(serverVersionText(), "1.1");
    install(serverComponent(), "1.2", "7.1");
    EXPECT_EQ(serverVersionText(), "1.2");
    EXPECT_EQ(installerVersion(serverComponent().path), "7.1");
}

}  // namespace
}  // namespace dovrel
