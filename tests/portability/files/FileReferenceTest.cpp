#include "portability/files/FileReference.h"

#include <CoreServices/MacErrors.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "FileManager.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WaitUntil.h"

namespace {

namespace files = std::filesystem;
using dovrel::test::waitUntil;
using portability::compareReferences;
using portability::makeReference;
using portability::resolveReference;

class FileReference : public testing::Test {
  protected:
    FileReference() { folder_.write("file", "x"); }

    FSRef make(const std::string& name) const {
        FSRef ref = {};
        EXPECT_EQ(makeReference(folder_.path(name), &ref), 0);
        return ref;
    }

    const dovrel::test::TemporaryFolder folder_;
    std::string path_ = "untouched";
};

}  // namespace

TEST_F(FileReference, Resolve_NeverSetOrNull_HasItsCodeAndLeavesThePath) {
    const FSRef zeros = {};
    const FSRef marked = markedRef();
    EXPECT_EQ(resolveReference(&zeros, path_), errFSBadFSRef);
    EXPECT_EQ(resolveReference(&marked, path_), errFSBadFSRef);
    EXPECT_EQ(resolveReference(nullptr, path_), paramErr);
    EXPECT_EQ(path_, "untouched");
}

TEST_F(FileReference, Resolve_PathNumberThatWasNeverGiven_IsABadReference) {
    FSRef ref = make("file");
    ref.hidden[7] = 0xFF;  // the most significant byte of the number under which the path is stored
    EXPECT_EQ(resolveReference(&ref, path_), errFSBadFSRef);
}

TEST_F(FileReference, Resolve_RenamedInItsFolder_FollowsAgainAndAgain) {
    const FSRef ref = make("file");
    files::rename(folder_.path("file"), folder_.path("second"));
    ASSERT_EQ(resolveReference(&ref, path_), noErr);
    EXPECT_EQ(path_, folder_.path("second"));
    files::rename(folder_.path("second"), folder_.path("third"));
    ASSERT_EQ(resolveReference(&ref, path_), noErr);
    EXPECT_EQ(path_, folder_.path("third"));
}

TEST_F(FileReference, Resolve_RenamedWhileAnotherTookItsName_FollowsTheObject) {
    const FSRef ref = make("file");
    files::rename(folder_.path("file"), folder_.path("renamed"));
    folder_.write("file", "another");
    ASSERT_EQ(resolveReference(&ref, path_), noErr);
    EXPECT_EQ(path_, folder_.path("renamed"));
}

TEST_F(FileReference, Resolve_MovedToAnotherFolder_IsNotFound) {
    const FSRef ref = make("file");
    files::create_directory(folder_.path("inner"));
    files::rename(folder_.path("file"), folder_.path("inner/file"));
    EXPECT_EQ(resolveReference(&ref, path_), fnfErr);
    EXPECT_EQ(path_, "untouched");
}

TEST_F(FileReference, Resolve_FolderAboveBecameAFile_IsNotFound) {
    folder_.write("inner/file", "x");
    const FSRef ref = make("inner/file");
    files::remove_all(folder_.path("inner"));
    folder_.write("inner", "now a file");
    EXPECT_EQ(resolveReference(&ref, path_), fnfErr);
}

TEST_F(FileReference, Resolve_NumberGivenToANewFileUnderAnotherName_IsNotFound) {
    const FSRef ref = make("file");
    const auto before = files::last_write_time(folder_.path("file"));
    folder_.write("clock", "x");
    files::remove(folder_.path("file"));
    // Waits until the system's clock has advanced, because some file systems tell files apart only by time.
    ASSERT_TRUE(waitUntil([this, before] {
        folder_.write("clock", "x");
        const auto now = files::last_write_time(folder_.path("clock"));
        return now > before + std::chrono::milliseconds(1);
    }));
    // File systems often give a free inode number to the next new file.
    for (int count = 0; count < 20; ++count) {
        folder_.write("new" + std::to_string(count), "x");
    }
    EXPECT_EQ(resolveReference(&ref, path_), fnfErr);
}

TEST_F(FileReference, Make_NothingThere_ReturnsTheCauseAndLeavesTheReference) {
    FSRef ref = markedRef();
    EXPECT_EQ(makeReference(folder_.path("absent"), &ref), ENOENT);
    EXPECT_TRUE(isMarked(ref));
}

TEST_F(FileReference, Compare_ObjectsThatAreGone_GoesByWhatTheyWere) {
    folder_.write("other", "x");
    const FSRef file = make("file");
    const FSRef copy = file;
    const FSRef other = make("other");
    files::remove(folder_.path("file"));
    EXPECT_EQ(compareReferences(&file, &copy), noErr);
    EXPECT_EQ(compareReferences(&file, &other), errFSRefsDifferent);
    const FSRef zeros = {};
    EXPECT_EQ(compareReferences(&file, &zeros), errFSBadFSRef);
}

TEST_F(FileReference, Root_HasAReferenceAndNoParent) {
    FSRef ref = {};
    ASSERT_EQ(makeReference("/", &ref), 0);
    FSRef parent;
    ASSERT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, nullptr, &parent), noErr);
    EXPECT_EQ(resolveReference(&parent, path_), errFSBadFSRef);
}
