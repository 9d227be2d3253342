#include "portability/transport/ReceivedBlock.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "portability/transport/SharedBlock.h"
#include "tests/portability/support/MemoryFile.h"
#include "tests/support/Processes.h"

using namespace portability;

TEST(ReceivedBlock, Map_ShowsWhatTheOwnerWrites) {
    const std::shared_ptr<SharedBlock> owned = SharedBlock::take(100000);
    owned->data()[12345] = 'x';
    const auto received = ReceivedBlock::map(FileDescriptor(dup(owned->descriptor())), 100000, 1 << 20);
    ASSERT_NE(received, nullptr);
    EXPECT_EQ(received->size(), owned->capacity());
    EXPECT_EQ(received->data()[12345], 'x');
}

TEST(ReceivedBlock, Map_FileThatCanShrink_IsRefused) {
    EXPECT_EQ(ReceivedBlock::map(memoryFile(4096, F_SEAL_GROW), 1, 1 << 20), nullptr);
    EXPECT_NE(ReceivedBlock::map(memoryFile(4096, F_SEAL_SHRINK), 1, 1 << 20), nullptr);
}

TEST(ReceivedBlock, Map_OrdinaryFile_IsRefused) {
    std::FILE* file = std::tmpfile();
    EXPECT_EQ(ftruncate(fileno(file), 4096), 0);
    EXPECT_EQ(ReceivedBlock::map(FileDescriptor(dup(fileno(file))), 1, 1 << 20), nullptr);
    std::fclose(file);
}

TEST(ReceivedBlock, Map_Pipe_IsRefused) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const FileDescriptor writing(ends[1]);
    EXPECT_EQ(ReceivedBlock::map(FileDescriptor(ends[0]), 1, 1 << 20), nullptr);
}

TEST(ReceivedBlock, Map_OutsideTheLimits_IsRefused) {
    EXPECT_EQ(ReceivedBlock::map(memoryFile(4096, F_SEAL_SHRINK), 4097, 1 << 20), nullptr);
    EXPECT_NE(ReceivedBlock::map(memoryFile(4096, F_SEAL_SHRINK), 4096, 4096), nullptr);
    EXPECT_EQ(ReceivedBlock::map(memoryFile(8192, F_SEAL_SHRINK), 1, 8191), nullptr);
    EXPECT_EQ(ReceivedBlock::map(memoryFile(0, F_SEAL_SHRINK), 0, 8191), nullptr);
}

TEST(ReceivedBlock, Map_LeavesNoDescriptorOpen) {
    const int before = openDescriptors();
    const auto kept = ReceivedBlock::map(memoryFile(4096, F_SEAL_SHRINK), 1, 1 << 20);
    const auto refused = ReceivedBlock::map(memoryFile(4096, 0), 1, 1 << 20);
    EXPECT_EQ(openDescriptors(), before);
}
