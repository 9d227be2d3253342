// What launching does not show of ApplicationBundle; the rest is tested by LaunchTest.cpp.
#include "foundation/ApplicationBundle.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace {

namespace files = std::filesystem;
using portability::applicationName;
using portability::isExecutableOf;

std::string infoPlist(const std::string& executable, const std::string& type = "APPL") {
    return "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" + executable +
           "</string><key>CFBundlePackageType</key><string>" + type + "</string></dict></plist>";
}

class ApplicationBundle : public testing::Test {
  protected:
    ApplicationBundle() {
        folder_.write("A.app/Contents/Info.plist", infoPlist("A"));
        folder_.write("A.app/Contents/MacOS/A", "program");
    }

    const dovrel::test::TemporaryFolder folder_;
    const std::string bundle_ = folder_.path("A.app");
    const std::string program_ = folder_.path("A.app/Contents/MacOS/A");
};

}  // namespace

TEST_F(ApplicationBundle, IsExecutableOf_IsTrueForTheFileThatTheInfoNames) {
    EXPECT_TRUE(isExecutableOf(bundle_, program_));
    files::remove(program_);
    EXPECT_TRUE(isExecutableOf(bundle_, program_)) << "a process may outlive its file";
}

TEST_F(ApplicationBundle, IsExecutableOf_IsFalseForAnyOtherFile) {
    for (const char* other : {"A.app/Contents/MacOS/B", "A.app/Contents/A", "A.app/Contents/MacOS", "A", ""})
        EXPECT_FALSE(isExecutableOf(bundle_, folder_.path(other))) << other;
    EXPECT_FALSE(isExecutableOf(bundle_, ""));
    EXPECT_FALSE(isExecutableOf(bundle_, "A"));
}

TEST_F(ApplicationBundle, IsExecutableOf_FollowsLinksOnBothWays) {
    files::create_directory_symlink(bundle_, folder_.path("link.app"));
    EXPECT_TRUE(isExecutableOf(folder_.path("link.app"), program_));
    folder_.write("elsewhere/program", "program");
    files::remove(program_);
    files::create_symlink(folder_.path("elsewhere/program"), program_);
    EXPECT_TRUE(isExecutableOf(bundle_, folder_.path("elsewhere/program")));
}

TEST_F(ApplicationBundle, IsExecutableOf_WithoutAUsableInfo_IsFalse) {
    for (const std::string& info : {std::string("damaged"), infoPlist(""), infoPlist(".."),
                                    infoPlist("../MacOS/A"), infoPlist("A", "BNDL")}) {
        folder_.write("A.app/Contents/Info.plist", info);
        EXPECT_FALSE(isExecutableOf(bundle_, program_)) << info;
    }
    files::remove(folder_.path("A.app/Contents/Info.plist"));
    EXPECT_FALSE(isExecutableOf(bundle_, program_));
    EXPECT_FALSE(isExecutableOf(folder_.path("absent.app"), program_));
}

TEST_F(ApplicationBundle, ApplicationName_IsThatOfTheFolderWithoutItsExtension) {
    EXPECT_EQ(applicationName("/Library/Some Thing.app"), "Some Thing");
    EXPECT_EQ(applicationName("A.B.app"), "A.B");
    for (const char* other :
         {"", "/", ".app", "/Library/.app", "/Library/A", "/A.app/Contents", "A.APP", "A.bundle"})
        EXPECT_EQ(applicationName(other), "") << other;
}
