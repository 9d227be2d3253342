// Platform paths under a system root. They are mapped when they are passed in, so that the
// returned paths are paths of this system.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "FileManager.h"
#include "tests/portability/support/Held.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace {

namespace files = std::filesystem;

class RootMapping : public testing::Test {
  protected:
    const dovrel::test::TemporaryFolder folder_;
    const VariableChange root_{"POS_SYSTEM_ROOT", folder_.path().c_str()};
};

}  // namespace

TEST_F(RootMapping, CFURL_OfAFixedPlace_ReturnsThePathInTheRoot) {
    const Held<CFURLRef> url(newFileURL("/Library/Application Support/Tessilor/pos/Merrowd.app"));
    EXPECT_EQ(toPath(url.get()), folder_.path("Library/Application Support/Tessilor/pos/Merrowd.app"));
    const std::string logs = "/Library/Logs/Tessilor/";
    const Held<CFURLRef> fromBytes(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(logs.data()), static_cast<CFIndex>(logs.size()),
        true));
    EXPECT_EQ(toPath(fromBytes.get()), folder_.path("Library/Logs/Tessilor"));
}

TEST_F(RootMapping, CFURL_OfAnotherPlace_IsNotMapped) {
    const Held<CFURLRef> url(newFileURL("/tmp/Library/x"));
    EXPECT_EQ(toPath(url.get()), "/tmp/Library/x");
}

TEST_F(RootMapping, FSPathMakeRef_OfAFixedPlace_RefersIntoTheRoot) {
    folder_.write("System/Library/CoreServices/SystemVersion.plist", "x");
    EXPECT_EQ(toPath(makeRef("/System/Library/CoreServices/SystemVersion.plist")),
              folder_.path("System/Library/CoreServices/SystemVersion.plist"));
}

TEST_F(RootMapping, FSFindFolder_FolderNotThere_IsNotFoundAndNotMade) {
    FSRef ref = markedRef();
    EXPECT_EQ(FSFindFolder(kLocalDomain, kApplicationSupportFolderType, kDontCreateFolder, &ref), fnfErr);
    EXPECT_TRUE(isMarked(ref));
    EXPECT_FALSE(files::exists(folder_.path("Library")));
}

TEST_F(RootMapping, FSFindFolder_WithCreate_MakesItAndThoseAbove) {
    FSRef ref;
    ASSERT_EQ(FSFindFolder(kLocalDomain, kApplicationSupportFolderType, kCreateFolder, &ref), noErr);
    EXPECT_EQ(toPath(ref), folder_.path("Library/Application Support"));
    EXPECT_EQ(FSFindFolder(kLocalDomain, kApplicationSupportFolderType, kDontCreateFolder, &ref), noErr);
}

TEST_F(RootMapping, FSFindFolder_OtherDomainsAndTypes_HaveTheirPlaces) {
    FSRef ref;
    ASSERT_EQ(FSFindFolder(kLocalDomain, kDomainLibraryFolderType, kCreateFolder, &ref), noErr);
    EXPECT_EQ(toPath(ref), folder_.path("Library"));
    ASSERT_EQ(FSFindFolder(kLocalDomain, kPreferencesFolderType, kCreateFolder, &ref), noErr);
    EXPECT_EQ(toPath(ref), folder_.path("Library/Preferences"));
    ASSERT_EQ(FSFindFolder(kSystemDomain, kDomainLibraryFolderType, kCreateFolder, &ref), noErr);
    EXPECT_EQ(toPath(ref), folder_.path("System/Library"));
    files::create_directory(folder_.path("home"));
    const VariableChange home("HOME", folder_.path("home").c_str());
    ASSERT_EQ(FSFindFolder(kUserDomain, kApplicationSupportFolderType, kCreateFolder, &ref), noErr);
    EXPECT_EQ(toPath(ref), folder_.path("home/Library/Application Support"));
}

TEST_F(RootMapping, FSFindFolder_FileInPlaceOfTheFolder_IsNotAFolder) {
    folder_.write("Library/Application Support", "a file");
    FSRef ref = markedRef();
    EXPECT_EQ(FSFindFolder(kLocalDomain, kApplicationSupportFolderType, kDontCreateFolder, &ref),
              errFSNotAFolder);
    EXPECT_EQ(FSFindFolder(kLocalDomain, kApplicationSupportFolderType, kCreateFolder, &ref),
              errFSNotAFolder);
    EXPECT_TRUE(isMarked(ref));
}

TEST_F(RootMapping, FindingTheServer_FromFolderToURLToReference_StaysInTheRoot) {
    folder_.write("Library/Application Support/Tessilor/pos/Merrowd.app/Contents/Info.plist", "x");
    FSRef support;
    ASSERT_EQ(FSFindFolder(kLocalDomain, kApplicationSupportFolderType, kDontCreateFolder, &support), noErr);
    const Held<CFURLRef> supportURL(CFURLCreateFromFSRef(kCFAllocatorDefault, &support));
    const Held<CFURLRef> serverURL(CFURLCreateCopyAppendingPathComponent(
        kCFAllocatorDefault, supportURL.get(), CFSTR("Tessilor/pos/Merrowd.app"), false));
    FSRef server;
    ASSERT_TRUE(CFURLGetFSRef(serverURL.get(), &server));
    EXPECT_EQ(toPath(server), folder_.path("Library/Application Support/Tessilor/pos/Merrowd.app"));
}

TEST_F(RootMapping, FSCreateDirectoryUnicode_InAFolderOfTheRoot_MakesItThere) {
    files::create_directories(folder_.path("Library/Logs"));
    const FSRef logs = makeRef("/Library/Logs");
    FSRef made;
    ASSERT_EQ(makeDirectory(logs, "Tessilor", &made), noErr);
    EXPECT_EQ(toPath(made), folder_.path("Library/Logs/Tessilor"));
}
