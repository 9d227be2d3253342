#include "client/GetInfoCommand.h"

#include <gtest/gtest.h>

#include <cstring>

namespace dovrel {
namespace {

TEST(GetInfoCommand, Request_IsCopied) {
    char request[] = "info";
    const GetInfoCommand command(request, 4);
    request[0] = 'X';
    ASSERT_EQ(command.bytes().length, 4u);
    EXPECT_EQ(std::memcmp(command.bytes().data, "info", 4), 0);
}

TEST(GetInfoCommand, EmptyRequest_HasNoBytes) {
    const GetInfoCommand command("", 0);
    EXPECT_EQ(command.bytes().length, 0u);
    EXPECT_FALSE(command.asksForInterfaceVersion());
}

TEST(GetInfoCommand, TwoBytesOf352_AskForTheInterfaceVersion) {
    EXPECT_TRUE(GetInfoCommand("\x60\x01", 2).asksForInterfaceVersion());
}

TEST(GetInfoCommand, OtherValuesAndLengths_DoNot) {
    EXPECT_FALSE(GetInfoCommand("\x01\x60", 2).asksForInterfaceVersion());
    EXPECT_FALSE(GetInfoCommand("\x61\x01", 2).asksForInterfaceVersion());
    EXPECT_FALSE(GetInfoCommand("\x60", 1).asksForInterfaceVersion());
    EXPECT_FALSE(GetInfoCommand("\x60\x01\x00", 3).asksForInterfaceVersion());
    EXPECT_FALSE(GetInfoCommand("\x60\x01\x00\x00", 4).asksForInterfaceVersion());
}

TEST(GetInfoCommand, InterfaceVersionBlock_HoldsSevenInFourBytes) {
    const ByteBlock block = GetInfoCommand::makeInterfaceVersionBlock();
    ASSERT_EQ(block.length, 4u);
    EXPECT_EQ(std::memcmp(block.data.get(), "\x07\x00\x00\x00", 4), 0);
}

}  // namespace
}  // namespace dovrel
