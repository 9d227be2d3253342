#include "portability/transport/SharedFile.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/portability/support/MemoryFile.h"
#include "tests/support/Processes.h"

using namespace portability;

TEST(SharedFile, Made_HasItsSizeAndItsMemory) {
    const FileDescriptor file = makeSharedFile(100000);
    ASSERT_TRUE(file);
    struct stat status;
    ASSERT_EQ(fstat(file.get(), &status), 0);
    EXPECT_EQ(status.st_size, 100000);
    EXPECT_GE(status.st_blocks * 512, 100000) << "claimed, not only promised";
}

TEST(SharedFile, Made_IsSealed) {
    uint64_t size = 0;
    EXPECT_TRUE(isSealedSharedFile(makeSharedFile(4096), size));
    EXPECT_EQ(size, 4096u);
}

TEST(SharedFile, Made_WithoutDescriptorsOrMemory_IsEmpty) {
    EXPECT_EQ(inForkedProcess([] {
                  const rlimit none{0, 0};
                  setrlimit(RLIMIT_NOFILE, &none);
                  return makeSharedFile(4096) ? 1 : 0;
              }),
              0);
    // Exceeds a limit. A request for more memory than the machine has would first
    // take all memory from other programs.
    EXPECT_EQ(inForkedProcess([] {
                  const rlimit small{4096, 4096};
                  signal(SIGXFSZ, SIG_IGN);
                  setrlimit(RLIMIT_FSIZE, &small);
                  return makeSharedFile(8192) ? 1 : 0;
              }),
              0);
}

TEST(SharedFile, AnythingElse_IsNotSealed) {
    uint64_t size = 0x5A5A;
    EXPECT_FALSE(isSealedSharedFile(memoryFile(4096, F_SEAL_GROW), size));
    EXPECT_FALSE(isSealedSharedFile(FileDescriptor(open("/proc/self/exe", O_RDONLY)), size));
    EXPECT_FALSE(isSealedSharedFile(FileDescriptor(), size));
    EXPECT_EQ(size, 0x5A5Au);
}

TEST(SharedFile, LargerThanTheLimitOfFileSizes_IsEmptyAndBringsNoSignal) {
    EXPECT_EQ(inForkedProcess([] {
                  rlimit limit;
                  getrlimit(RLIMIT_FSIZE, &limit);
                  limit.rlim_cur = 5000;
                  if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
                  if (makeSharedFile(100000)) return 2;
                  return makeSharedFile(4096) ? 0 : 3;
              }),
              0)
        << "-1 means that the signal ended the process";
}
