#include "portability/posix/StateFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <string>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace {

namespace files = std::filesystem;
using portability::makeStateFolder;

class StateFolder : public testing::Test {
  protected:
    ~StateFolder() override { umask(before_); }

    static files::perms permissions(const std::string& path) { return files::status(path).permissions(); }

    const dovrel::test::TemporaryFolder folder_;
    const VariableChange home_{"HOME", folder_.path("home").c_str()};
    std::optional<VariableChange> state_{std::in_place, "XDG_STATE_HOME", nullptr};
    const mode_t before_ = umask(022);
};

}  // namespace

TEST_F(StateFolder, WithoutAVariable_IsInTheHomeFolder) {
    EXPECT_EQ(makeStateFolder(), folder_.path("home/.local/state/dovrel"));
    EXPECT_TRUE(files::is_directory(folder_.path("home/.local/state/dovrel")));
}

TEST_F(StateFolder, WithAnAbsolutePath_IsThere) {
    state_.emplace("XDG_STATE_HOME", folder_.path("state").c_str());
    EXPECT_EQ(makeStateFolder(), folder_.path("state/dovrel"));
    EXPECT_FALSE(files::exists(folder_.path("home")));
}

TEST_F(StateFolder, WithAnEmptyOrARelativePath_IsInTheHomeFolder) {
    for (const char* path : {"", "relative/state"}) {
        state_.emplace("XDG_STATE_HOME", path);
        EXPECT_EQ(makeStateFolder(), folder_.path("home/.local/state/dovrel")) << path;
    }
}

TEST_F(StateFolder, NewFolders_CanBeEnteredByTheirUserOnlyWhateverTheUmask) {
    umask(0777);
    makeStateFolder();
    umask(0);
    for (const char* path : {"home/.local", "home/.local/state", "home/.local/state/dovrel"})
        EXPECT_EQ(permissions(folder_.path(path)), files::perms::owner_all) << path;
}

TEST_F(StateFolder, ExistingFolders_KeepTheirPermissions) {
    files::create_directories(folder_.path("home/.local/state/dovrel"));
    const files::perms before = permissions(folder_.path("home/.local/state/dovrel"));
    ASSERT_NE(before, files::perms::owner_all);
    makeStateFolder();
    EXPECT_EQ(permissions(folder_.path("home/.local/state/dovrel")), before);
}

TEST_F(StateFolder, ThatCannotBeMade_IsReturnedAllTheSame) {
    state_.emplace("XDG_STATE_HOME", "/dev/null/state");
    EXPECT_EQ(makeStateFolder(), "/dev/null/state/dovrel");
}
