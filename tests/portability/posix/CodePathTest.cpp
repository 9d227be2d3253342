#include "portability/posix/CodePath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "portability/posix/Paths.h"

namespace portability {
namespace {

namespace fs = std::filesystem;

int variable = 1;

TEST(CodePath, OfThisProgram_IsItsFile) {
    const std::string program = fs::read_symlink("/proc/self/exe").string();
    EXPECT_EQ(findCodeFile(reinterpret_cast<const void*>(&findCodeFile)), program);
    EXPECT_EQ(findCodeFile(&variable), program);
}

TEST(CodePath, OfALibrary_IsItsFileWithoutLinks) {
    const std::string path = findCodeFile(stdout);
    EXPECT_EQ(getLastComponent(path).rfind("libc", 0), 0u) << path;
    EXPECT_EQ(path, canonicalPath(path));
}

TEST(CodePath, WhereNoFileIsMapped_IsEmpty) {
    const int local = 0;
    EXPECT_EQ(findCodeFile(&local), "");
    EXPECT_EQ(findCodeFile(nullptr), "");
}

}  // namespace
}  // namespace portability
