#include "portability/transport/MessageMemory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace portability;

namespace {

bool appendText(MessageMemory& memory, const std::string& text) {
    uint8_t* place = memory.append(text.size());
    if (place != nullptr) std::memcpy(place, text.data(), text.size());
    return place != nullptr;
}

std::string toText(const MessageMemory& memory) {
    return std::string(reinterpret_cast<const char*>(memory.data()), memory.size());
}

const uint8_t* toBytes(const std::string& text) {
    return reinterpret_cast<const uint8_t*>(text.data());
}

}  // namespace

TEST(MessageMemory, Append_ContentSurvivesEveryMove) {
    MessageMemory memory;
    std::string expected;
    for (int i = 0; i < 300; ++i) {
        const std::string piece(static_cast<size_t>(i * 3), static_cast<char>('a' + i % 26));
        ASSERT_TRUE(appendText(memory, piece));
        expected += piece;
        ASSERT_TRUE(toText(memory) == expected) << i;
    }
}

TEST(MessageMemory, Store_CopiesToTheAppendedPlace_WhereverItIs) {
    for (const size_t size : {size_t{0}, size_t{10}, size_t{1000}, size_t{100000}, kLargestKeptBlock + 1}) {
        MessageMemory memory;
        appendText(memory, "abc");
        const std::string text(size, 'x');
        uint8_t* const place = memory.append(size);
        ASSERT_NE(place, nullptr) << size;
        memory.store(place, size == 0 ? nullptr : toBytes(text), size);
        EXPECT_TRUE(toText(memory) == "abc" + text) << size;
    }
}

TEST(MessageMemory, SharedMemory_BeginsWhereFramesEnd) {
    MessageMemory memory;
    appendText(memory, std::string(kLargestInlineImage, 'x'));
    EXPECT_EQ(memory.block(), nullptr);
    appendText(memory, "y");
    ASSERT_NE(memory.block(), nullptr);
    EXPECT_EQ(memory.block()->data(), memory.data());
}

TEST(MessageMemory, Append_BeyondTheLargestImage_IsRefusedAndChangesNothing) {
    MessageMemory memory;
    appendText(memory, "abc");
    EXPECT_EQ(memory.append(kLargestMessage), nullptr);
    EXPECT_EQ(memory.append(SIZE_MAX), nullptr);
    EXPECT_EQ(toText(memory), "abc");
}

TEST(MessageMemory, View_IsNotCopiedUntilItIsChanged) {
    const std::string text = "somebody else's";
    MessageMemory memory(toBytes(text), text.size());
    EXPECT_EQ(memory.data(), toBytes(text));
    appendText(memory, "!");
    EXPECT_NE(memory.data(), toBytes(text));
    EXPECT_EQ(toText(memory), "somebody else's!");
    EXPECT_EQ(text, "somebody else's");
}

TEST(MessageMemory, View_LetsGoOfItsKeeperWhenItIsCopied) {
    const std::string text(100, 'v');
    auto keeper = std::make_shared<int>(1);
    MessageMemory memory(toBytes(text), text.size(), keeper);
    EXPECT_EQ(keeper.use_count(), 2);
    ASSERT_NE(memory.writable(), nullptr);
    EXPECT_EQ(keeper.use_count(), 1);
    EXPECT_EQ(toText(memory), text);
}

TEST(MessageMemory, BlockThatSomebodyElseHolds_IsCopiedBeforeAChange) {
    MessageMemory memory;
    appendText(memory, std::string(50000, 'x'));
    const std::shared_ptr<SharedBlock> held = memory.block();
    uint8_t* bytes = memory.writable();
    ASSERT_NE(bytes, nullptr);
    EXPECT_NE(memory.block(), held);
    bytes[0] = 'y';
    EXPECT_EQ(held->data()[0], 'x');
    EXPECT_EQ(toText(memory), "y" + std::string(49999, 'x'));
}

TEST(MessageMemory, BlockOfItsOwn_IsChangedInPlace) {
    MessageMemory memory;
    appendText(memory, std::string(50000, 'x'));
    const uint8_t* before = memory.data();
    EXPECT_EQ(memory.writable(), before);
}

TEST(MessageMemory, Erase_ClosesTheGap) {
    MessageMemory memory;
    appendText(memory, "abcdefgh");
    ASSERT_NE(memory.writable(), nullptr);
    memory.erase(2, 3);
    EXPECT_EQ(toText(memory), "abfgh");
    memory.erase(3, 2);
    EXPECT_EQ(toText(memory), "abf");
}
