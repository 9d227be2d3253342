#include "portability/processes/InstalledApplications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace {

namespace files = std::filesystem;
using portability::InstalledApplications;

class InstalledApplicationsTest : public testing::Test {
  protected:
    std::string make(const std::string& folder) const {
        files::create_directories(folder_.path(folder));
        return folder_.path(folder);
    }

    static std::vector<std::string> named(const std::string& name) {
        return InstalledApplications().named(name);
    }

    const dovrel::test::TemporaryFolder folder_;
    const VariableChange root_{"POS_SYSTEM_ROOT", folder_.path().c_str()};
};

using Paths = std::vector<std::string>;

}  // namespace

TEST_F(InstalledApplicationsTest, RootWithoutFixedPlaces_HasNone) {
    EXPECT_EQ(named("A"), Paths());
}

TEST_F(InstalledApplicationsTest, ApplicationsInTheFixedPlaces_AreFoundByName) {
    const std::string first = make("Applications/A.app");
    const std::string second = make("Library/Application Support/Maker/Product/B.app");
    const std::string third = make("System/Library/CoreServices/C D.app");
    EXPECT_EQ(named("A"), Paths{first});
    EXPECT_EQ(named("B"), Paths{second});
    EXPECT_EQ(named("C D"), Paths{third});
    EXPECT_EQ(named("A.app"), Paths());
    EXPECT_EQ(named("a"), Paths()) << "case matters";
    EXPECT_EQ(named(""), Paths());
}

TEST_F(InstalledApplicationsTest, ApplicationsOfOneName_AreAllFound) {
    const std::string first = make("Applications/A.app");
    const std::string second = make("Library/A.app");
    EXPECT_THAT(named("A"), testing::UnorderedElementsAre(first, second));
}

TEST_F(InstalledApplicationsTest, WhatIsNotAnApplicationInAFixedPlace_IsNotFound) {
    make("Elsewhere/A.app");
    make("A.app");
    make("Library/A.bundle");
    make("Library/.app");
    folder_.write("Library/file/B.app", "a file");
    EXPECT_EQ(named("A"), Paths());
    EXPECT_EQ(named("B"), Paths());
    EXPECT_EQ(named(""), Paths());
}

TEST_F(InstalledApplicationsTest, ApplicationInsideAnother_IsPartOfIt) {
    make("Library/A.app/Contents/Resources/B.app");
    EXPECT_EQ(named("B"), Paths());
}

TEST_F(InstalledApplicationsTest, LinksToFolders_AreFollowed) {
    make("elsewhere/A.app");
    files::create_directories(folder_.path("Library"));
    files::create_directory_symlink(folder_.path("elsewhere"), folder_.path("Library/link"));
    files::create_directory_symlink(folder_.path("elsewhere/A.app"), folder_.path("Library/B.app"));
    files::create_directory_symlink(folder_.path("elsewhere/A.app"), folder_.path("Library/A.app"));
    EXPECT_EQ(named("A"), Paths{folder_.path("elsewhere/A.app")}) << "it is one application";
    EXPECT_EQ(named("B"), Paths{folder_.path("elsewhere/A.app")});
}

TEST_F(InstalledApplicationsTest, LinksInACircle_EndTheSearch) {
    const std::string application = make("Library/folder/A.app");
    files::create_directory_symlink(folder_.path("Library"), folder_.path("Library/folder/back"));
    files::create_directory_symlink("self", folder_.path("Library/self"));
    EXPECT_EQ(named("A"), Paths{application});
}

TEST_F(InstalledApplicationsTest, ApplicationsBelowTheFifthFolder_AreNotLookedFor) {
    const std::string deepest = make("Library/1/2/3/4/A.app");
    make("Library/1/2/3/4/5/B.app");
    EXPECT_EQ(named("A"), Paths{deepest});
    EXPECT_EQ(named("B"), Paths());
}

TEST_F(InstalledApplicationsTest, ManyFolders_AreReadFromAboveUpToALimit) {
    const std::string above = make("Library/folder/A.app");
    const std::string below = make("Library/folder/in/folder/B.app");
    make("Library/many");
    // Symbolic links count like folders, and are faster to create and remove.
    for (int i = 0; i < 4096; ++i)
        files::create_directory_symlink(".", folder_.path("Library/many/" + std::to_string(i)));
    EXPECT_EQ(named("A"), Paths{above});
    EXPECT_EQ(named("B"), Paths());
    files::remove_all(folder_.path("Library/many"));
    EXPECT_EQ(named("B"), Paths{below});
}
