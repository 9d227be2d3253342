#include "bundle/LibraryFile.h"

#include <elf.h>
#include <gtest/gtest.h>
#include <link.h>

#include <filesystem>

#include "tests/support/TemporaryFolder.h"

namespace portability {
namespace {

namespace fs = std::filesystem;

class LibraryFile : public testing::Test {
  protected:
    void write(const std::string& bytes) const { folder_.write("library", bytes); }

    const dovrel::test::TemporaryFolder folder_;
    const std::string path_ = folder_.path("library");
};

// A library with one segment of `size` bytes from the file's start on.
std::string libraryWithSegment(uint64_t size) {
    ElfW(Ehdr) header = {};
    std::copy(ELFMAG, ELFMAG + SELFMAG, header.e_ident);
    header.e_ident[EI_CLASS] = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
    header.e_type = ET_DYN;
    header.e_phoff = sizeof header;
    header.e_phentsize = sizeof(ElfW(Phdr));
    header.e_phnum = 1;
    ElfW(Phdr) segment = {};
    segment.p_type = PT_LOAD;
    segment.p_filesz = static_cast<decltype(segment.p_filesz)>(size);
    return std::string(reinterpret_cast<const char*>(&header), sizeof header) +
           std::string(reinterpret_cast<const char*>(&segment), sizeof segment);
}

TEST_F(LibraryFile, BuiltLibrary_IsComplete) {
    EXPECT_TRUE(isCompleteLibrary(FOUNDATION_MODULE));
}

TEST_F(LibraryFile, SegmentThatEndsWithTheFile_IsComplete) {
    const uint64_t size = libraryWithSegment(0).size();
    write(libraryWithSegment(size));
    EXPECT_TRUE(isCompleteLibrary(path_));
}

TEST_F(LibraryFile, SegmentBeyondTheFile_IsRefused) {
    const uint64_t size = libraryWithSegment(0).size();
    for (const uint64_t beyond : {size + 1, ~uint64_t{0}}) {
        write(libraryWithSegment(beyond));
        EXPECT_FALSE(isCompleteLibrary(path_)) << beyond;
    }
}

TEST_F(LibraryFile, FileThatEndsWithinItsHeaders_IsRefused) {
    const std::string bytes = libraryWithSegment(0);
    for (size_t size = 0; size < bytes.size(); ++size) {
        write(bytes.substr(0, size));
        EXPECT_FALSE(isCompleteLibrary(path_)) << size;
    }
}

TEST_F(LibraryFile, LibraryOfTheOtherWidth_IsRefused) {
    std::string bytes = libraryWithSegment(0);
    bytes[EI_CLASS] = sizeof(void*) == 8 ? ELFCLASS32 : ELFCLASS64;
    write(bytes);
    EXPECT_FALSE(isCompleteLibrary(path_));
}

TEST_F(LibraryFile, OtherFiles_AreRefused) {
    EXPECT_FALSE(isCompleteLibrary(path_));
    EXPECT_FALSE(isCompleteLibrary(folder_.path()));
    EXPECT_FALSE(isCompleteLibrary("/dev/null"));
    write(std::string(4096, '\0'));
    EXPECT_FALSE(isCompleteLibrary(path_));
}

}  // namespace
}  // namespace portability
