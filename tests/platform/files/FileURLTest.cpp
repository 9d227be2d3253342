#include "platform/files/FileURL.h"

#include <gtest/gtest.h>

#include <string>

namespace dovrel {
namespace {

std::string toPath(const CFObject<CFURLRef>& url) {
    UInt8 path[1024] = {};
    EXPECT_TRUE(url && CFURLGetFileSystemRepresentation(url.get(), true, path, sizeof path));
    return reinterpret_cast<const char*>(path);
}

TEST(FileURL, OfAPath_NamesTheFileInTheGivenEncoding) {
    EXPECT_EQ(toPath(fileURL("/some folder/100%\u00e9", kCFStringEncodingUTF8)), "/some folder/100%\u00e9");
    EXPECT_EQ(toPath(fileURL("/caf\x8E", kCFStringEncodingMacRoman)), "/caf\u00e9");
    EXPECT_EQ(toPath(folderURL("/some folder/\u00e9")), "/some folder/\u00e9");
}

TEST(FileURL, OfAnEmptyPathOrBytesThatAreNotValid_IsEmpty) {
    EXPECT_FALSE(fileURL("", kCFStringEncodingUTF8));
    EXPECT_FALSE(fileURL("/caf\x8E", kCFStringEncodingUTF8));
    EXPECT_FALSE(folderURL("/caf\x8E"));
}

TEST(FileURL, InAFolder_AppendsTheName) {
    const CFObject<CFURLRef> folder = folderURL("/some folder");
    EXPECT_EQ(toPath(fileURLInFolder(folder, "a b")), "/some folder/a b");
    EXPECT_EQ(toPath(fileURLInFolder(folderURLInFolder(folder, "inner"), "\u00e9")),
              "/some folder/inner/\u00e9");
    EXPECT_EQ(toPath(fileURLInFolder(fileURL("/some folder", kCFStringEncodingUTF8), "a")), "/some folder/a");
}

TEST(FileURL, InAFolder_WithoutAFolderOrWithANameThatIsNotValid_IsEmpty) {
    EXPECT_FALSE(fileURLInFolder(CFObject<CFURLRef>(nullptr), "a"));
    EXPECT_FALSE(folderURLInFolder(folderURL("/some folder"), "\xFF"));
}

}  // namespace
}  // namespace dovrel
