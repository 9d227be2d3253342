#include "bundle/FoundationModule.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace portability {
namespace {

namespace fs = std::filesystem;

/// A folder with the probe; the test puts a module next to it.
class FoundationModule : public testing::Test {
  protected:
    FoundationModule() { fs::copy_file(PROBE, probe_); }

    /// Returns the different results of that many threads, one in each line.
    std::string callFromThreads(int threads) const {
        dovrel::test::ChildProcess child({probe_, std::to_string(threads)}, log_);
        std::string results = child.readLine();
        for (std::string next = child.readLine(); !next.empty(); next = child.readLine())
            results += "\n" + next;
        EXPECT_EQ(child.wait(), 0);
        return results;
    }

    void expectRefused(const std::string& reason) const {
        EXPECT_EQ(callFromThreads(1), "none");
        EXPECT_NE(log().find("Dovrel cannot use Foundation. "), std::string::npos) << log();
        EXPECT_NE(log().find(reason), std::string::npos) << log();
    }

    std::string log() const {
        std::ifstream file(log_);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    const dovrel::test::TemporaryFolder folder_;
    const std::string probe_ = folder_.path("probe");
    const std::string module_ = folder_.path("DovrelFoundation");
    const std::string log_ = folder_.path("log");
};

TEST_F(FoundationModule, BesideTheCode_IsLoaded) {
    fs::copy_file(FOUNDATION_MODULE, module_);
    EXPECT_EQ(callFromThreads(1), "loaded");
    EXPECT_EQ(log(), "");
}

TEST_F(FoundationModule, NeededByManyThreadsAtTheSameMoment_IsOneForAll) {
    fs::copy_file(FOUNDATION_MODULE, module_);
    EXPECT_EQ(callFromThreads(8), "loaded");
    EXPECT_EQ(log(), "");
}

TEST_F(FoundationModule, Missing_IsRefused) {
    expectRefused(module_ + ": missing or damaged");
}

TEST_F(FoundationModule, CutShort_IsRefused) {
    fs::copy_file(FOUNDATION_MODULE, module_);
    // Within the part of the module that is loaded, whatever comes after it for debuggers.
    for (const uintmax_t size : {100'000, 10'000, 100, 1, 0}) {
        fs::resize_file(module_, size);
        expectRefused(module_ + ": missing or damaged");
    }
}

TEST_F(FoundationModule, OfAnotherVersion_IsRefused) {
    fs::copy_file(MODULE_OF_ANOTHER_VERSION, module_);
    expectRefused(module_ + ": not of version");
}

TEST_F(FoundationModule, WithoutTheFunctions_IsRefused) {
    fs::copy_file(MODULE_WITHOUT_ENTRIES, module_);
    expectRefused("dovrelFoundationEntries");
}

}  // namespace
}  // namespace portability
