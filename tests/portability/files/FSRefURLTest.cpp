// Contract tests of converting between file URLs and file references.
#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <string>

#include "tests/portability/support/Held.h"
#include "tests/support/TemporaryFolder.h"

TEST(CFURL, GetFSRef_ExistingFile_RefersToIt) {
    const dovrel::test::TemporaryFolder folder;
    folder.write("a file", "x");
    const std::string path = folder.path("a file");
    const Held<CFURLRef> url(newFileURL(path));
    FSRef ref;
    ASSERT_TRUE(CFURLGetFSRef(url.get(), &ref));
    std::array<UInt8, 4096> found;
    ASSERT_EQ(FSRefMakePath(&ref, found.data(), static_cast<UInt32>(found.size())), noErr);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(found.data())), path);
}

TEST(CFURL, GetFSRef_NothingThere_IsFalseAndLeavesTheReference) {
    const dovrel::test::TemporaryFolder folder;
    const Held<CFURLRef> url(newFileURL(folder.path("absent")));
    FSRef ref;
    std::memset(&ref, 0x5A, sizeof ref);
    EXPECT_FALSE(CFURLGetFSRef(url.get(), &ref));
    for (const UInt8 byte : ref.hidden) {
        ASSERT_EQ(byte, 0x5A);
    }
}

TEST(CFURL, CreateFromFSRef_NamesTheFileAndGoesWithIt) {
    const dovrel::test::TemporaryFolder folder;
    folder.write("file", "x");
    const std::string path = folder.path("file");
    FSRef ref;
    ASSERT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &ref, nullptr), noErr);
    {
        const Held<CFURLRef> url(CFURLCreateFromFSRef(kCFAllocatorDefault, &ref));
        EXPECT_EQ(toPath(url.get()), path);
    }
    std::filesystem::remove(path);
    const Held<CFURLRef> url(CFURLCreateFromFSRef(kCFAllocatorDefault, &ref));
    EXPECT_EQ(url.get(), nullptr);
}
