#include "client/VersionBanner.h"

#include "tests/client/SessionTest.h"

namespace dovrel {
namespace {

constexpr char kBundle[] = "/Library/Application Support/Tessilor/pos/Dovrel.bundle";

class VersionBannerTest : public test::SystemRootTest {
  protected:
    void writeInfo(const std::string& entries) {
        root_.write(std::string(kBundle).substr(1) + "/Contents/Info.plist",
                    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                    "<plist version=\"1.0\"><dict>" +
                        entries + "</dict></plist>\n");
    }
};

TEST_F(VersionBannerTest, InstalledBundle_TellsItsVersion) {
    writeInfo("<key>CFBundleVersion</key><string>3.14.15</string>");
    EXPECT_EQ(versionBanner(kBundle), "Dovrel Version 3.14.15");
}

TEST_F(VersionBannerTest, BundleWithoutVersion_IsNotAvailable) {
    writeInfo("<key>CFBundleName</key><string>Dovrel</string>");
    EXPECT_EQ(versionBanner(kBundle), "Dovrel Version n/a");
}

TEST_F(VersionBannerTest, VersionThatIsANumber_IsFormattedLikeText) {
    writeInfo("<key>CFBundleVersion</key><integer>3</integer>");
    EXPECT_EQ(versionBanner(kBundle), "Dovrel Version 3");
}

TEST_F(VersionBannerTest, MissingBundle_IsNotAvailable) {
    EXPECT_EQ(versionBanner("/Library/Application Support/Tessilor/pos/Nothing.bundle"),
              "Dovrel Version n/a");
    EXPECT_EQ(versionBanner(""), "Dovrel Version n/a");
}

}  // namespace
}  // namespace dovrel
