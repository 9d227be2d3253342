// What the tests of the file utilities stand on: a folder of their own, a mask that would keep other users
// out, and a look at the open files.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "platform/files/FileUtilities.h"
#include "tests/platform/files/ScratchFolder.h"

namespace dovrel::test {

// Every test also shows that no file stays open.
class FileUtilitiesFixture : public testing::Test {
  protected:
    FileUtilitiesFixture() {
        fileExists(folder_.path());  // whatever is opened once for good is open now
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
