// Shared by the tests of the file utilities: a separate folder, a file mode mask that excludes other
// users, and a check for open files.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "platform/files/FileUtilities.h"
#include "tests/platform/files/ScratchFolder.h"

namespace dovrel::test {

// Every test also checks that no file stays open.
class FileUtilitiesFixture : public testing::Test {
  protected:
    FileUtilitiesFixture() {
        fileExists(folder_.path());  // opens everything that stays open after the first use
        pathExists(folder_.path());
        openBefore_ = openDescriptors();
        previousMask_ = umask(077);
    }
    ~FileUtilitiesFixture() override { umask(previousMask_); }
    void TearDown() override { EXPECT_EQ(openDescriptors(), openBefore_); }

    std::string readBack(const std::string& content, bool normaliseLineEnds) {
        return readWholeFile(folder_.write("file", content), normaliseLineEnds);
    }

    ScratchFolder folder_;

  private:
    static size_t openDescriptors() {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return static_cast<size_t>(std::distance(begin(all), end(all)));
    }

    size_t openBefore_;
    mode_t previousMask_;
};

}  // namespace dovrel::test
