#include "portability/transport/SharedBlock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <vector>

#include "tests/support/Processes.h"

using namespace portability;

TEST(SharedBlock, Take_HasTheRoomAskedFor) {
    for (const size_t size : {size_t{1}, size_t{65536}, size_t{65537}, size_t{1} << 20, size_t{10} << 20}) {
        const std::shared_ptr<SharedBlock> block = SharedBlock::take(size);
        ASSERT_NE(block, nullptr) << size;
        EXPECT_GE(block->capacity(), size);
        block->data()[size - 1] = 7;
    }
}

TEST(SharedBlock, File_CanNeitherShrinkNorGrow_AndEndsAtExec) {
    const std::shared_ptr<SharedBlock> block = SharedBlock::take(100000);
    EXPECT_NE(ftruncate(block->descriptor(), 10), 0);
    EXPECT_NE(ftruncate(block->descriptor(), 10 << 20), 0);
    EXPECT_NE(fcntl(block->descriptor(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST(SharedBlock, GivenBack_IsUsedAgain) {
    const uint64_t id = SharedBlock::take(100000)->id();
    EXPECT_EQ(SharedBlock::take(90000)->id(), id);
}

TEST(SharedBlock, InUse_IsNotGivenTwice) {
    const std::shared_ptr<SharedBlock> one = SharedBlock::take(100000);
    const std::shared_ptr<SharedBlock> other = SharedBlock::take(100000);
    EXPECT_NE(one->id(), other->id());
    EXPECT_NE(one->data(), other->data());
}

TEST(SharedBlock, ForbiddenReuse_IsKept) {
    std::shared_ptr<SharedBlock> block = SharedBlock::take(100000);
    const uint64_t id = block->id();
    block->disableReuse();
    block.reset();
    EXPECT_NE(SharedBlock::take(100000)->id(), id);
}

TEST(SharedBlock, VeryLarge_IsNotKept) {
    const uint64_t id = SharedBlock::take(kLargestKeptBlock + 1)->id();
    EXPECT_NE(SharedBlock::take(kLargestKeptBlock + 1)->id(), id);
}

TEST(SharedBlock, SmallNeed_DoesNotHoldALargeBlock) {
    const uint64_t id = SharedBlock::take(kLargestKeptBlock)->id();
    EXPECT_NE(SharedBlock::take(20000)->id(), id);
}

TEST(SharedBlock, NumberKept_IsBounded) {
    const int before = openDescriptors();
    std::vector<std::shared_ptr<SharedBlock>> blocks;
    for (int i = 0; i < 50; ++i)
        blocks.push_back(SharedBlock::take(70000));
    blocks.clear();
    EXPECT_LE(openDescriptors(), before + 4);
}

TEST(SharedBlock, ForkedProcess_DoesNotUseItsParentsBlocks) {
    const std::shared_ptr<SharedBlock> inUse = SharedBlock::take(100000);
    inUse->data()[0] = 'p';
    SharedBlock::take(200000)->data()[0] = 'p';
    const uint64_t freeId = SharedBlock::take(200000)->id();
    const int status = inForkedProcess([freeId] {
        const std::shared_ptr<SharedBlock> fresh = SharedBlock::take(200000);
        if (fresh == nullptr || fresh->id() == freeId) return 1;
        fresh->data()[0] = 'c';
        return 0;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(inUse->data()[0], 'p');
    const std::shared_ptr<SharedBlock> again = SharedBlock::take(200000);
    EXPECT_EQ(again->id(), freeId);
    EXPECT_EQ(again->data()[0], 'p');
}

TEST(SharedBlock, NoDescriptorsLeft_IsNull) {
    const int status = inForkedProcess([] {
        const rlimit none{0, 0};
        setrlimit(RLIMIT_NOFILE, &none);
        return SharedBlock::take(300000) == nullptr ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
}
