#include "portability/transport/SharedBlock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cstring>
#include <vector>

#include "tests/support/Processes.h"
#include "tests/support/WaitUntil.h"

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

TEST(SharedBlock, Store_CopiesToTheOffset_WhateverTheSizeOfTheBlock) {
    for (const size_t size : {size_t{100000}, kLargestKeptBlock + 1}) {
        const std::shared_ptr<SharedBlock> block = SharedBlock::take(size);
        ASSERT_NE(block, nullptr) << size;
        const std::vector<uint8_t> bytes(50000, 7);
        block->data()[9] = 1;
        block->store(10, bytes.data(), bytes.size());
        block->store(10, nullptr, 0);
        EXPECT_EQ(block->data()[9], 1);
        EXPECT_EQ(std::memcmp(block->data() + 10, bytes.data(), bytes.size()), 0);
        block->data()[9 + bytes.size()] = 2;
        EXPECT_EQ(block->data()[9 + bytes.size()], 2);
    }
}

TEST(SharedBlock, Store_BeyondTheLimitOfFileSizes_CopiesNevertheless) {
    EXPECT_EQ(inForkedProcess([] {
                  const std::shared_ptr<SharedBlock> block = SharedBlock::take(kLargestKeptBlock + 1);
                  const rlimit limit{1000, 1000};
                  if (block == nullptr || setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
                  const std::vector<uint8_t> bytes(5000, 7);
                  block->store(10, bytes.data(), bytes.size());
                  return std::memcmp(block->data() + 10, bytes.data(), bytes.size()) == 0 ? 0 : 2;
              }),
              0);
}

TEST(SharedBlock, Store_InABlockThatIsNotKept_MapsNoPages) {
    const std::shared_ptr<SharedBlock> block = SharedBlock::take(kLargestKeptBlock + 1);
    const std::vector<uint8_t> bytes(kLargestKeptBlock, 7);
    const auto countFaults = [] {
        rusage usage{};
        getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_minflt;
    };
    const long before = countFaults();
    block->store(0, bytes.data(), bytes.size());
    EXPECT_LT(countFaults() - before, 100);
}

namespace {

// Returns the bytes of memory that the file has.
int64_t memoryOf(const FileDescriptor& file) {
    struct stat status;
    constexpr int64_t kStatBlock = 512;
    return fstat(file.get(), &status) == 0 ? status.st_blocks * kStatBlock : -1;
}

}  // namespace

TEST(SharedBlock, Large_IsUsedAgainAtOnceAndFreedLater) {
    constexpr size_t kLarge = size_t{8} << 20;
    std::shared_ptr<SharedBlock> block = SharedBlock::take(kLarge);
    const uint64_t id = block->id();
    // A peer's descriptor. The memory is freed although the peer keeps the file.
    const FileDescriptor file(dup(block->descriptor()));
    block.reset();
    block = SharedBlock::take(kLarge);
    EXPECT_EQ(block->id(), id);
    EXPECT_GE(memoryOf(file), static_cast<int64_t>(kLarge));

    block.reset();
    EXPECT_TRUE(dovrel::test::waitUntil([&] { return memoryOf(file) == 0; }));
    EXPECT_NE(SharedBlock::take(kLarge)->id(), id);
}

TEST(SharedBlock, LargeInUse_IsNotFreed) {
    constexpr size_t kLarge = size_t{8} << 20;
    const std::shared_ptr<SharedBlock> used = SharedBlock::take(kLarge);
    used->data()[0] = 'u';
    std::shared_ptr<SharedBlock> unused = SharedBlock::take(kLarge);
    const FileDescriptor file(dup(unused->descriptor()));
    unused.reset();
    EXPECT_TRUE(dovrel::test::waitUntil([&] { return memoryOf(file) == 0; }));
    EXPECT_EQ(used->data()[0], 'u');
}

TEST(SharedBlock, LargeWhoseReuseIsForbidden_KeepsItsContent) {
    constexpr size_t kLarge = size_t{8} << 20;
    std::shared_ptr<SharedBlock> block = SharedBlock::take(kLarge);
    const FileDescriptor file(dup(block->descriptor()));
    block->disableReuse();
    block.reset();
    EXPECT_GE(memoryOf(file), static_cast<int64_t>(kLarge));
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
