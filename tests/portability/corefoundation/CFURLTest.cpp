// Contract tests of file URLs.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>

#include "tests/portability/support/Held.h"

namespace {

CFURLRef newAppended(CFURLRef url, const std::string& component, bool isDirectory = false) {
    const Held<CFStringRef> text(newString(component));
    return CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, url, text.get(), isDirectory);
}

}  // namespace

TEST(CFURL, CreateWithFileSystemPath_ReturnsThePathOfAnyCharacters) {
    for (const char* path :
         {"/tmp", "/tmp/a b", "/tmp/%41", "/tmp/x;y?z#q&r", "/tmp/\xC3\xA9t\xC3\xA9", "/"}) {
        const Held<CFURLRef> url(newFileURL(path));
        EXPECT_EQ(toPath(url.get()), path);
    }
}

TEST(CFURL, CreateWithFileSystemPath_Directory_HasNoSlashInItsPath) {
    const Held<CFURLRef> url(newFileURL("/tmp/folder", true));
    EXPECT_EQ(toPath(url.get()), "/tmp/folder");
    const Held<CFURLRef> root(newFileURL("/", true));
    EXPECT_EQ(toPath(root.get()), "/");
}

TEST(CFURL, CreateWithFileSystemPath_EmptyPath_IsNull) {
    const Held<CFURLRef> url(newFileURL(""));
    EXPECT_EQ(url.get(), nullptr);
}

TEST(CFURL, CreateWithFileSystemPath_RelativePath_IsCompletedWithTheCurrentFolder) {
    const std::string here = std::filesystem::current_path().string();
    const Held<CFURLRef> url(newFileURL("some/file"));
    EXPECT_EQ(toPath(url.get()), here + "/some/file");
}

TEST(CFURL, CreateFromFileSystemRepresentation_TakesExactlyTheGivenBytes) {
    const std::string path = "/tmp/abcdef";
    const Held<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()), 8, false));
    EXPECT_EQ(toPath(url.get()), "/tmp/abc");
}

TEST(CFURL, CreateFromFileSystemRepresentation_NoBytes_IsNull) {
    const UInt8 byte = 'x';
    const Held<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault, &byte, 0, false));
    EXPECT_EQ(url.get(), nullptr);
}

TEST(CFURL, CreateCopyAppendingPathComponent_PutsOneSlashBetween) {
    const Held<CFURLRef> plain(newFileURL("/tmp/x"));
    const Held<CFURLRef> directory(newFileURL("/tmp/x", true));
    for (const CFURLRef url : {plain.get(), directory.get()}) {
        const Held<CFURLRef> appended(newAppended(url, "Contents"));
        EXPECT_EQ(toPath(appended.get()), "/tmp/x/Contents");
    }
}

TEST(CFURL, CreateCopyAppendingPathComponent_SeveralNamesInOneComponent_StaySeparate) {
    const Held<CFURLRef> url(newFileURL("/tmp", true));
    const Held<CFURLRef> appended(newAppended(url.get(), "Tessilor/pos/Merrowd.app"));
    EXPECT_EQ(toPath(appended.get()), "/tmp/Tessilor/pos/Merrowd.app");
}

TEST(CFURL, CreateCopyAppendingPathComponent_EscapesAndLeavesTheOriginal) {
    const Held<CFURLRef> url(newFileURL("/tmp/x"));
    const Held<CFURLRef> appended(newAppended(url.get(), "Helpsystem German RC MacOSX#1?100%;", true));
    EXPECT_EQ(toPath(appended.get()), "/tmp/x/Helpsystem German RC MacOSX#1?100%;");
    EXPECT_EQ(toPath(url.get()), "/tmp/x");
}

TEST(CFURL, GetFileSystemRepresentation_BufferTooSmallByOne_IsFalse) {
    const Held<CFURLRef> url(newFileURL("/tmp/abc"));
    std::array<UInt8, 16> buffer = {'#'};
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(url.get(), true, buffer.data(), 8));
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(url.get(), true, buffer.data(), 9));
    EXPECT_STREQ(reinterpret_cast<const char*>(buffer.data()), "/tmp/abc");
}

TEST(CFURL, CreateWithString_KeepsTheText) {
    const Held<CFStringRef> text(newString("http://host.example/a?query#part"));
    const Held<CFURLRef> url(CFURLCreateWithString(kCFAllocatorDefault, text.get(), nullptr));
    ASSERT_NE(url.get(), nullptr);
    EXPECT_EQ(toText(CFURLGetString(url.get())), "http://host.example/a?query#part");
}

TEST(CFURL, CreateWithString_CharactersThatAURLCannotHave_IsNull) {
    for (const char* text : {"", "a b", "http://host.example/\xC3\xA9", "a<b", "%zz", "%1"}) {
        const Held<CFStringRef> string(newString(text));
        EXPECT_EQ(CFURLCreateWithString(kCFAllocatorDefault, string.get(), nullptr), nullptr) << text;
    }
}

TEST(CFURL, FileURLs_EscapeWhatAPathMayNotHave_AndEndWithASlashForAFolder) {
    const Held<CFURLRef> file(newFileURL("/tmp/a b;c", false));
    const Held<CFURLRef> folder(newFileURL("/tmp/a b;c", true));
    EXPECT_EQ(toText(CFURLGetString(file.get())), "file:///tmp/a%20b%3Bc");
    EXPECT_EQ(toText(CFURLGetString(folder.get())), "file:///tmp/a%20b%3Bc/");
}

TEST(CFURL, CopyAppendingPathComponent_OfOtherKinds_ChangesOnlyThePath) {
    const auto appended = [](const char* text) {
        const Held<CFStringRef> string(newString(text));
        const Held<CFURLRef> url(CFURLCreateWithString(kCFAllocatorDefault, string.get(), nullptr));
        const Held<CFURLRef> longer(
            CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, url.get(), CFSTR("b"), false));
        return longer.get() == nullptr ? "(none)" : toText(CFURLGetString(longer.get()));
    };
    EXPECT_EQ(appended("http://host.example/a?query#part"), "http://host.example/a/b?query#part");
    EXPECT_EQ(appended("mailto:a@b.example"), "(none)");
    EXPECT_EQ(appended("http://host.example"), "(none)");
}

TEST(CFURL, GetFileSystemRepresentation_BytesThatAreNotUTF8_AreKept) {
    const Held<CFURLRef> url(
        CFURLCreateWithString(kCFAllocatorDefault, CFSTR("file:///tmp/%FFname"), nullptr));
    EXPECT_EQ(toPath(url.get()), "/tmp/\xFFname");
}
