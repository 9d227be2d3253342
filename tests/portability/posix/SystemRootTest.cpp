#include "portability/posix/SystemRoot.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace {

namespace files = std::filesystem;
using portability::inSystemRoot;
using portability::isInFixedPlace;
using portability::systemRoot;

class SystemRoot : public testing::Test {
  protected:
    void use(const std::string& root) { change_.emplace("POS_SYSTEM_ROOT", root.c_str()); }

    const dovrel::test::TemporaryFolder folder_;
    std::optional<VariableChange> change_;
};

}  // namespace

TEST_F(SystemRoot, Root_UnsetEmptyOrRelative_IsTheSlash) {
    change_.emplace("POS_SYSTEM_ROOT", nullptr);
    EXPECT_EQ(systemRoot(), "/");
    for (const char* root : {"", "relative/root", "."}) {
        const VariableChange change("POS_SYSTEM_ROOT", root);
        EXPECT_EQ(systemRoot(), "/") << root;
    }
}

TEST_F(SystemRoot, Root_WithLinksDotsAndSlashes_IsCanonical) {
    files::create_directory(folder_.path("real"));
    files::create_directory_symlink(folder_.path("real"), folder_.path("link"));
    for (const char* root : {"real", "real/", "real//", "link", "./real/../real", "link/."}) {
        const VariableChange change("POS_SYSTEM_ROOT", folder_.path(root).c_str());
        EXPECT_EQ(systemRoot(), folder_.path("real")) << root;
    }
}

TEST_F(SystemRoot, Root_ThatDoesNotExist_IsStillCanonical) {
    files::create_directory_symlink(folder_.path(), folder_.path("link"));
    use(folder_.path("link") + "/not/../yet/");
    EXPECT_EQ(systemRoot(), folder_.path("yet"));
}

TEST_F(SystemRoot, Root_ChangedInTheEnvironment_TakesEffectAtOnce) {
    files::create_directory(folder_.path("one"));
    files::create_directory(folder_.path("two"));
    use(folder_.path("one"));
    EXPECT_EQ(inSystemRoot("/Library"), folder_.path("one/Library"));
    use(folder_.path("two"));
    EXPECT_EQ(inSystemRoot("/Library"), folder_.path("two/Library"));
}

TEST_F(SystemRoot, Mapping_FixedPlaces_GetTheRootInFront) {
    use(folder_.path());
    for (const char* path : {"/Library", "/Library/", "/Library/Application Support/x",
                             "/System/Library/CoreServices", "/Applications/Halden Console.app"}) {
        EXPECT_EQ(inSystemRoot(path), folder_.path() + path);
    }
    EXPECT_EQ(inSystemRoot("//Library/x"), folder_.path("Library/x"));
}

TEST_F(SystemRoot, Mapping_OtherPaths_StayAsTheyAre) {
    use(folder_.path());
    for (const char* path :
         {"/", "/tmp/Library", "/LibraryX", "/Lib", "/usr/lib", "Library/x", "", "/home/Library"}) {
        EXPECT_EQ(inSystemRoot(path), path);
    }
}

TEST_F(SystemRoot, Mapping_Twice_IsAsOnce) {
    use(folder_.path());
    const std::string once = inSystemRoot("/Library/x");
    EXPECT_EQ(inSystemRoot(once), once);
}

TEST_F(SystemRoot, Mapping_RootBelowAFixedPlace_IsAppliedOnce) {
    use("/Library/NotThere/root");
    EXPECT_EQ(inSystemRoot("/Library/x"), "/Library/NotThere/root/Library/x");
    EXPECT_EQ(inSystemRoot("/Library/NotThere/root/Library/x"), "/Library/NotThere/root/Library/x");
}

TEST_F(SystemRoot, Mapping_RootIsTheSlash_ChangesNothing) {
    use("/");
    EXPECT_EQ(inSystemRoot("/Library/x"), "/Library/x");
}

TEST_F(SystemRoot, FixedPlaces_AreOnlyThoseOfTheCurrentRoot) {
    EXPECT_TRUE(isInFixedPlace("/Library/x"));
    EXPECT_FALSE(isInFixedPlace(folder_.path("Library/x")));
    use(folder_.path());
    EXPECT_TRUE(isInFixedPlace(folder_.path("Library/x")));
    EXPECT_TRUE(isInFixedPlace(folder_.path("Applications")));
    EXPECT_FALSE(isInFixedPlace(folder_.path("Other/x")));
    EXPECT_FALSE(isInFixedPlace(folder_.path()));
    EXPECT_FALSE(isInFixedPlace("/Library/x"));
}
