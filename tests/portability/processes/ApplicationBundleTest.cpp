// The functions that launching does not use; LaunchTest.cpp tests the others.
#include "portability/processes/ApplicationBundle.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace {

namespace files = std::filesystem;
using portability::applicationName;
using portability::isExecutableOf;

std::string infoPlist(const std::string& executable) {
    return "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" + executable +
           "</string></dict></plist>";
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

TEST_F(ApplicationBundle, ReadSignature_IsThatOfTheInfoOr0) {
    EXPECT_EQ(portability::readSignature(bundle_), 0u);
    folder_.write("B.app/Contents/Info.plist",
                  "<plist><dict><key>CFBundleSignature</key><string>PrBd</string></dict></plist>");
    EXPECT_EQ(portability::readSignature(folder_.path("B.app")), OSType{'PrBd'});
    folder_.write("B.app/Contents/Info.plist", "damaged");
    EXPECT_EQ(portability::readSignature(folder_.path("B.app")), 0u);
    EXPECT_EQ(portability::readSignature(folder_.path("C.app")), 0u);
}

TEST_F(ApplicationBundle, IsExecutableOf_IsFalseForAnyOtherFile) {
    for (const char* other : {"A.app/Contents/MacOS/B", "A.app/Contents/A", "A.app/Contents/MacOS", "A", ""})
        EXPECT_FALSE(isExecutableOf(bundle_, folder_.path(other))) << other;
    EXPECT_FALSE(isExecutableOf(bundle_, ""));
    EXPECT_FALSE(isExecutableOf(bundle_, "A"));
}

TEST_F(ApplicationBundle, IsExecutableOf_ExecutableThatIsALink_IsItsTarget) {
    folder_.write("elsewhere/program", "program");
    files::remove(program_);
    files::create_symlink(folder_.path("elsewhere/program"), program_);
    EXPECT_TRUE(isExecutableOf(bundle_, folder_.path("elsewhere/program")));
}

TEST_F(ApplicationBundle, IsExecutableOf_WithoutAUsableInfo_UsesTheApplicationsName) {
    const std::string other = folder_.path("A.app/Contents/MacOS/B");
    const auto expectTheNamesake = [&](const std::string& info) {
        EXPECT_TRUE(isExecutableOf(bundle_, program_)) << info;
        EXPECT_FALSE(isExecutableOf(bundle_, other)) << info;
    };
    for (const std::string& info :
         {std::string("damaged"), infoPlist(""), infoPlist(".."), infoPlist("../B")}) {
        folder_.write("A.app/Contents/Info.plist", info);
        expectTheNamesake(info);
    }
    files::remove(folder_.path("A.app/Contents/Info.plist"));
    expectTheNamesake("none");
}

TEST_F(ApplicationBundle, ApplicationName_IsThatOfTheFolderWithoutItsExtension) {
    EXPECT_EQ(applicationName("/Library/Some Thing.app"), "Some Thing");
    EXPECT_EQ(applicationName("A.B.app"), "A.B");
    for (const char* other :
         {"", "/", ".app", "/Library/.app", "/Library/A", "/A.app/Contents", "A.APP", "A.bundle"})
        EXPECT_EQ(applicationName(other), "") << other;
}
