// The thread that gives large blocks back to the system, in forked processes: a child does not have its
// parent's thread.
#include "portability/transport/LargeMemory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "portability/transport/SharedBlock.h"
#include "tests/support/Processes.h"
#include "tests/support/WaitUntil.h"

using namespace portability;

namespace {

constexpr size_t kLarge = size_t{8} << 20;

bool hasMemory(const FileDescriptor& file) {
    struct stat status;
    return fstat(file.get(), &status) == 0 && status.st_blocks != 0;
}

// Uses a large block and returns it to the pool, which starts the thread. Returns another descriptor of its file.
FileDescriptor useLargeBlock() {
    const std::shared_ptr<SharedBlock> block = SharedBlock::take(kLarge);
    return block == nullptr ? FileDescriptor() : FileDescriptor(dup(block->descriptor()));
}

bool isGivenBack(const FileDescriptor& file) {
    return file && dovrel::test::waitUntil([&file] { return !hasMemory(file); });
}

}  // namespace

TEST(LargeMemory, ForkedWhileTheThreadWaits_BothProcessesGiveTheirMemoryBack) {
    const FileDescriptor file = useLargeBlock();
    ASSERT_TRUE(hasMemory(file));
    EXPECT_EQ(inForkedProcess([] { return isGivenBack(useLargeBlock()) ? 0 : 1; }), 0);
    EXPECT_TRUE(isGivenBack(file));
}

TEST(LargeMemory, ForkedAfterTheThreadHasEnded_BothProcessesGiveTheirMemoryBack) {
    ASSERT_TRUE(isGivenBack(useLargeBlock()));
    EXPECT_EQ(inForkedProcess([] { return isGivenBack(useLargeBlock()) ? 0 : 1; }), 0);
    EXPECT_TRUE(isGivenBack(useLargeBlock()));
}

TEST(LargeMemory, ChildThatUsesNone_LeavesThatOfItsParent) {
    const std::shared_ptr<SharedBlock> used = SharedBlock::take(kLarge);
    const FileDescriptor file(dup(used->descriptor()));
    used->data()[0] = 'p';
    EXPECT_EQ(inForkedProcess([] {
                  // Taking a block drops those of the parent from the child's pool.
                  return SharedBlock::take(kLarge) == nullptr ? 1 : 0;
              }),
              0);
    EXPECT_TRUE(hasMemory(file));
    EXPECT_EQ(used->data()[0], 'p');
}
