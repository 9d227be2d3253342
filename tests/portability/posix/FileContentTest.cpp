#include "portability/posix/FileContent.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <new>
#include <string>

#include "tests/support/HeapWatch.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using portability::readFile;

constexpr std::size_t kNoLimit = 1 << 20;

}  // namespace

TEST(FileContent, ReadFile_BytesOfAnyKind_AreAllThere) {
    const dovrel::test::TemporaryFolder folder;
    std::string bytes(100000, 'x');
    bytes[50000] = '\0';
    folder.write("file", bytes);
    EXPECT_EQ(readFile(folder.path("file"), kNoLimit), bytes);
    folder.write("file", "");
    EXPECT_EQ(readFile(folder.path("file"), kNoLimit), "");
}

TEST(FileContent, ReadFile_AtAndAboveTheLimit_IsReadAndRefused) {
    const dovrel::test::TemporaryFolder folder;
    folder.write("file", "12345");
    EXPECT_EQ(readFile(folder.path("file"), 5), "12345");
    EXPECT_EQ(readFile(folder.path("file"), 4), std::nullopt);
    EXPECT_EQ(readFile("/dev/zero", kNoLimit), std::nullopt);
}

TEST(FileContent, ReadFile_NothingToRead_IsNothing) {
    const dovrel::test::TemporaryFolder folder;
    EXPECT_EQ(readFile(folder.path("absent"), kNoLimit), std::nullopt);
    EXPECT_EQ(readFile(folder.path(), kNoLimit), std::nullopt) << "a folder";
}

TEST(FileContent, ReadFile_PipeWithoutWriter_DoesNotWait) {
    const dovrel::test::TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(readFile(folder.path("pipe"), kNoLimit), "");
}

// The system returns this error (no such process) if a process ends after its file
// was opened and before it is read.
TEST(FileContent, ReadFile_FailureWhileReading_IsNothing) {
    EXPECT_EQ(readFile("/proc/self/mem", kNoLimit), std::nullopt);
}

TEST(FileContent, ReadFile_OutOfMemory_LeavesNoDescriptorOpen) {
    const dovrel::test::TemporaryFolder folder;
    folder.write("file", std::string(100000, 'x'));
    const int before = openDescriptors();
    const std::string path = folder.path("file");
    dovrel::test::refuseEachRequest(
        [&] {
            try {
                readFile(path, kNoLimit);
            } catch (const std::bad_alloc&) {
            }
        },
        [&](bool) { EXPECT_EQ(openDescriptors(), before); });
}
