#include "portability/tasks/HandlePool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace portability {
namespace {

struct Object {
    int value = 0;
};
using Pool = HandlePool<Object>;

constexpr size_t kCapacity = 1048576;

// On the heap, because the pool is far too large for the stack.
std::unique_ptr<Pool> newPool() {
    return std::make_unique<Pool>();
}

TEST(HandlePool, Find_ReturnsTheObjectAsItWasLeft) {
    const auto pool = newPool();
    const uintptr_t one = pool->create({1});
    const uintptr_t two = pool->create({2});
    EXPECT_NE(one, 0u);
    EXPECT_NE(one, two);
    pool->find(one)->value += 10;
    EXPECT_EQ(pool->find(one)->value, 11);
    EXPECT_EQ(pool->find(two)->value, 2);
}

TEST(HandlePool, Find_OfAnUnknownIdentifier_ReturnsNoObject) {
    const auto pool = newPool();
    EXPECT_FALSE(pool->find(0));
    EXPECT_FALSE(pool->find(1));
    const uintptr_t id = pool->create({1});
    for (const uintptr_t other : {id + 1, id - 1, ~id, ~uintptr_t{0}, id << 1})
        EXPECT_FALSE(pool->find(other)) << other;
}

TEST(HandlePool, Find_OfARemovedObject_ReturnsNoObjectHoweverManyFollow) {
    const auto pool = newPool();
    const uintptr_t stale = pool->create({1});
    pool->remove(pool->find(stale));
    std::set<uintptr_t> handedOut{stale};
    // Uses every entry of the pool's first part several times.
    for (int i = 0; i < 2000; ++i) {
        const uintptr_t id = pool->create({i});
        EXPECT_TRUE(handedOut.insert(id).second) << "given a second time";
        EXPECT_FALSE(pool->find(stale));
        pool->remove(pool->find(id));
    }
}

TEST(HandlePool, Create_BeyondAllRoom_ReturnsZeroUntilOneIsRemoved) {
    const auto pool = newPool();
    uintptr_t last = 0;
    for (size_t i = 0; i < kCapacity; ++i) {
        last = pool->create({static_cast<int>(i)});
        ASSERT_NE(last, 0u) << i;
    }
    EXPECT_EQ(pool->create({0}), 0u);
    pool->remove(pool->find(last));
    const uintptr_t next = pool->create({0});
    EXPECT_NE(next, 0u);
    EXPECT_NE(next, last);
    EXPECT_EQ(pool->create({0}), 0u);
}

TEST(HandlePool, ManyThreads_NeverSeeAnObjectOfAnother) {
    const auto pool = newPool();
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&pool, &wrong, number] {
            for (int round = 0; round < 2000; ++round) {
                const uintptr_t id = pool->create({number});
                auto found = pool->find(id);
                wrong += !found || found->value != number;
                pool->remove(std::move(found));
                wrong += static_cast<bool>(pool->find(id));
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace portability
