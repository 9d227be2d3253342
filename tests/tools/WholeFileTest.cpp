#include "tools/WholeFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <future>
#include <iterator>

#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {
namespace {

constexpr rlim_t kLimit = 50'000;

class WholeFile : public testing::Test {
  protected:
    static std::string failureOfReading(const std::string& path) {
        try {
            readInput(path);
        } catch (const ToolFailure& failure) {
            return failure.what();
        }
        return "";
    }

    std::string failureOfWriting(const std::string& name, const std::string& content) const {
        try {
            writeOutput(folder_.path(name), content);
        } catch (const ToolFailure& failure) {
            return failure.what();
        }
        return "";
    }

    const test::TemporaryFolder folder_;
    const std::string tooLong_ = std::string(kLimit + 1, 'x');
};

TEST_F(WholeFile, ReadInput_ReturnsAllBytes) {
    const std::string content = std::string("a\0b\r\n", 5) + tooLong_ + tooLong_;
    folder_.write("file", content);
    EXPECT_EQ(readInput(folder_.path("file")), content);
}

TEST_F(WholeFile, ReadInput_OfWhatCannotBeRead_FailsWithTheReason) {
    EXPECT_EQ(failureOfReading("/nowhere/file"), "cannot read /nowhere/file: No such file or directory");
    EXPECT_EQ(failureOfReading("/"), "cannot read /: Is a directory");
}

TEST_F(WholeFile, ReadInput_OfStandardInputThatCannotBeRead_FailsWithTheReason) {
    ASSERT_NE(std::freopen("/", "rb", stdin), nullptr);
    EXPECT_EQ(failureOfReading("-"), "cannot read standard input: Is a directory");
    ASSERT_NE(std::freopen("/dev/null", "rb", stdin), nullptr);
    EXPECT_EQ(readInput("-"), "");
}

TEST_F(WholeFile, WriteOutput_WithoutRoom_FailsWithTheReasonAndKeepsTheOldContent) {
    folder_.write("file", "old");
    const test::FileSizeLimit limit(kLimit);
    EXPECT_EQ(failureOfWriting("file", tooLong_),
              "cannot write " + folder_.path("file") + ": File too large");
    EXPECT_EQ(folder_.read("file"), "old");
    EXPECT_EQ(failureOfWriting("new", tooLong_), "cannot write " + folder_.path("new") + ": File too large");
}

TEST_F(WholeFile, WriteOutput_ToAPipe_WaitsForItsReader) {
    const std::string path = folder_.path("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const std::future<void> writer =
        std::async(std::launch::async, [&path] { writeOutput(path, "content"); });
    std::ifstream reader(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "content");
    writer.wait();
}

}  // namespace
}  // namespace dovrel::tools
