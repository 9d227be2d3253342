#include "platform/files/Places.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/platform/files/ScratchFolder.h"

namespace dovrel {
namespace {

TEST(Places, AreThoseOfTheProduct) {
    EXPECT_STREQ(places::kInstallFolder, "/Library/Application Support/Tessilor/pos/");
    EXPECT_STREQ(places::kInstallFolderInApplicationSupport, "Tessilor/pos/");
    EXPECT_STREQ(places::kServerBundleName, "Merrowd.app");
    EXPECT_STREQ(places::kLibraryBundleName, "Dovrel.bundle");
    EXPECT_STREQ(places::kSiblingBundleName, "Brasket.bundle");
    EXPECT_STREQ(places::kCompatibilityBundle, "/Library/Quernvale/Fenwild.bundle");
    EXPECT_STREQ(places::kManagementApplication, "/Applications/Halden Console.app");
    EXPECT_STREQ(places::kSystemVersionFile, "/System/Library/CoreServices/SystemVersion.plist");
    EXPECT_STREQ(places::kInfoPropertyList, "/Contents/Info.plist");
    EXPECT_STREQ(places::kLogFolder, "/Library/Logs/Tessilor/");
    EXPECT_STREQ(places::kErrorLogName, "POSDLLErrorLog.txt");
}

TEST(Places, FileSystemPath_WithoutASystemRoot_IsThePathItself) {
    unsetenv("POS_SYSTEM_ROOT");
    EXPECT_EQ(fileSystemPath("/Library/Logs/Tessilor/"), "/Library/Logs/Tessilor/");
    EXPECT_EQ(fileSystemPath("/Library/Logs/Tessilor"), "/Library/Logs/Tessilor");
    EXPECT_EQ(fileSystemPath("/"), "/");
}

TEST(Places, FileSystemPath_OfAFixedPlace_IsBelowTheSystemRoot) {
    const test::ScratchFolder root;
    const std::string canonical = std::filesystem::canonical(root.path());
    setenv("POS_SYSTEM_ROOT", root.path().c_str(), 1);
    EXPECT_EQ(fileSystemPath("/Library/Logs/Tessilor/"), canonical + "/Library/Logs/Tessilor/");
    EXPECT_EQ(fileSystemPath("/Library/Application Support/Tessilor/pos/Merrowd.app"),
              canonical + "/Library/Application Support/Tessilor/pos/Merrowd.app");
    EXPECT_EQ(fileSystemPath(fileSystemPath("/Library/Logs/")), canonical + "/Library/Logs/")
        << "given twice";
    EXPECT_EQ(fileSystemPath("/home/someone/"), "/home/someone/") << "no fixed place of the platform";
    unsetenv("POS_SYSTEM_ROOT");
}

TEST(Places, FileSystemPath_KeepsNamesOutsideAscii) {
    EXPECT_EQ(fileSystemPath("/somewhere/caf\xC3\xA9 100%/"), "/somewhere/caf\xC3\xA9 100%/");
}

TEST(Places, FileSystemPath_OfATextWithoutAURL_IsTheText) {
    EXPECT_EQ(fileSystemPath(""), "");
    EXPECT_EQ(fileSystemPath("/not utf-8 \xFF/"), "/not utf-8 \xFF/");
}

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
    EXPECT_EQ(test::ScratchFolder::readPermissions(folder_) & 0777u, 0777u);
}

TEST_F(LogPlaces, LogFolderPath_OfAnExistingFolder_LeavesItsPermissions) {
    makeLogsFolder();
    std::filesystem::create_directory(folder_);
    test::ScratchFolder::setPermissions(folder_, 0700);
    EXPECT_EQ(logFolderPath(true), folder_);
    EXPECT_EQ(test::ScratchFolder::readPermissions(folder_), 0700u);
}

TEST_F(LogPlaces, LogFolderPath_ThatCannotBeMade_IsStillReturned) {
    EXPECT_EQ(logFolderPath(true), folder_);
    EXPECT_FALSE(std::filesystem::exists(folder_)) << "the folder above it is missing";
}

TEST_F(LogPlaces, ErrorLogPath_IsInTheLogFolderWhichExistsFromThenOn) {
    makeLogsFolder();
    EXPECT_EQ(errorLogPath(), folder_ + "POSDLLErrorLog.txt");
    EXPECT_TRUE(std::filesystem::is_directory(folder_));
    EXPECT_FALSE(std::filesystem::exists(folder_ + "POSDLLErrorLog.txt")) << "the file itself is not made";
}

}  // namespace
}  // namespace dovrel
