#include "platform/files/LogPlaces.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/platform/files/ScratchFolder.h"

namespace dovrel {
namespace {

class LogPlaces : public testing::Test {
  protected:
    void SetUp() override { setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1); }
    void TearDown() override { unsetenv("POS_SYSTEM_ROOT"); }

    void makeLogsFolder() { std::filesystem::create_directories(root_.path("Library/Logs")); }

    test::ScratchFolder root_;
    const std::string folder_ = std::filesystem::canonical(root_.path()).string() + "/Library/Logs/Tessilor/";
};

TEST_F(LogPlaces, LogFolderPath_WithoutASystemRoot_IsThatOfTheProduct) {
    unsetenv("POS_SYSTEM_ROOT");
    EXPECT_EQ(logFolderPath(false), "/Library/Logs/Tessilor/");
}

TEST_F(LogPlaces, LogFolderPath_WithoutCreate_MakesNothing) {
    makeLogsFolder();
    EXPECT_EQ(logFolderPath(false), folder_);
    EXPECT_FALSE(std::filesystem::exists(folder_));
}

TEST_F(LogPlaces, LogFolderPath_WithCreate_MakesTheFolderForAllUsers) {
    makeLogsFolder();
    EXPECT_EQ(logFolderPath(true), folder_);
    ASSERT_TRUE(std::filesystem::is_directory(folder_));
    EXPECT_EQ(test::ScratchFolder::permissionsOf(folder_) & 0777u, 0777u);
}

TEST_F(LogPlaces, LogFolderPath_OfAnExistingFolder_LeavesItsPermissions) {
    makeLogsFolder();
    std::filesystem::create_directory(folder_);
    test::ScratchFolder::setPermissions(folder_, 0700);
    EXPECT_EQ(logFolderPath(true), folder_);
    EXPECT_EQ(test::ScratchFolder::permissionsOf(folder_), 0700u);
}

TEST_F(LogPlaces, LogFolderPath_ThatCannotBeMade_IsAnsweredAllTheSame) {
    EXPECT_EQ(logFolderPath(true), folder_);
    EXPECT_FALSE(std::filesystem::exists(folder_)) << "the folder above it is missing";
}

TEST_F(LogPlaces, ErrorLogPath_LiesInTheLogFolderWhichExistsFromThenOn) {
    makeLogsFolder();
    EXPECT_EQ(errorLogPath(), folder_ + "POSDLLErrorLog.txt");
    EXPECT_TRUE(std::filesystem::is_directory(folder_));
    EXPECT_FALSE(std::filesystem::exists(folder_ + "POSDLLErrorLog.txt")) << "the file itself is not made";
}

}  // namespace
}  // namespace dovrel
