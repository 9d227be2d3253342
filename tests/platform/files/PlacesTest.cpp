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

TEST(Places, FileSystemPath_OfAFixedPlace_LiesUnderTheSystemRoot) {
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

}  // namespace
}  // namespace dovrel
