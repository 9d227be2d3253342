// The system root of a library that was configured with one. This program compiles the code with another root
// than the build.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "portability/posix/SystemRoot.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace {

using portability::fixedPlaces;
using portability::inSystemRoot;
using portability::isInFixedPlace;
using portability::systemRoot;

const std::string kConfigured = DOVREL_CONFIGURED_ROOT;

class ConfiguredRoot : public testing::Test {
  protected:
    void use(const char* root) { root_.emplace("POS_SYSTEM_ROOT", root); }

    const dovrel::test::TemporaryFolder folder_;
    const VariableChange home_{"HOME", folder_.path("home").c_str()};
    const VariableChange state_{"XDG_STATE_HOME", folder_.path("state").c_str()};
    std::optional<VariableChange> root_{std::in_place, "POS_SYSTEM_ROOT", nullptr};
};

}  // namespace

TEST_F(ConfiguredRoot, WithoutAVariable_IsTheRoot) {
    for (const char* variable : {static_cast<const char*>(nullptr), "", "relative/root"}) {
        use(variable);
        EXPECT_EQ(systemRoot(), kConfigured);
    }
    EXPECT_EQ(inSystemRoot("/Library/Application Support/x"), kConfigured + "/Library/Application Support/x");
    EXPECT_EQ(inSystemRoot("/Applications"), kConfigured + "/Applications");
    EXPECT_EQ(inSystemRoot("/usr/lib"), "/usr/lib");
    EXPECT_EQ(fixedPlaces().front(), kConfigured + "/Library");
    EXPECT_TRUE(isInFixedPlace(kConfigured + "/Library/x"));
    EXPECT_FALSE(isInFixedPlace("/Library/x"));
}

TEST_F(ConfiguredRoot, WithAVariable_IsThatOfTheVariable) {
    for (const std::string& root : {std::string("/"), folder_.path()}) {
        use(root.c_str());
        EXPECT_EQ(systemRoot(), root);
    }
    EXPECT_EQ(inSystemRoot("/Library/x"), folder_.path("Library/x"));
}

TEST_F(ConfiguredRoot, Logs_AreInTheStateFolderWhichExistsFromThenOn) {
    EXPECT_EQ(inSystemRoot("/Library/Logs/Tessilor/log.txt"), folder_.path("state/dovrel/Tessilor/log.txt"));
    EXPECT_TRUE(std::filesystem::is_directory(folder_.path("state/dovrel")));
    EXPECT_EQ(inSystemRoot("/Library/Logs"), folder_.path("state/dovrel"));
    EXPECT_EQ(inSystemRoot("//Library/Logs/"), folder_.path("state/dovrel/"));
    EXPECT_EQ(inSystemRoot("/Library/LogsX"), kConfigured + "/Library/LogsX");
}

TEST_F(ConfiguredRoot, Logs_MappedTwice_AreAsMappedOnce) {
    const std::string once = inSystemRoot("/Library/Logs/x");
    EXPECT_EQ(inSystemRoot(once), once);
}

TEST_F(ConfiguredRoot, Logs_WithAVariable_AreBelowItsRoot) {
    use(folder_.path().c_str());
    EXPECT_EQ(inSystemRoot("/Library/Logs/x"), folder_.path("Library/Logs/x"));
    use("/");
    EXPECT_EQ(inSystemRoot("/Library/Logs/x"), "/Library/Logs/x");
    EXPECT_FALSE(std::filesystem::exists(folder_.path("state")));
}
