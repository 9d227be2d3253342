#include "server/Commands.h"

#include <gtest/gtest.h>

#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

class Commands : public testing::Test {
  protected:
    std::string run(const std::string& command, const std::string& argument = "") {
        return bytesToText(runCommand(server_.state(), session_, command, toBytes(argument)));
    }

    std::string information(const std::string& request) {
        return bytesToText(readInformation(server_.state(), toBytes(request)));
    }

    TestServer server_;
    const uint32_t session_ = server_.registerApplication();
};

TEST_F(Commands, Ping_ReturnsTheArgument) {
    EXPECT_EQ(run("ping", "abc"), "abc");
    EXPECT_EQ(run("ping"), "");
}

TEST_F(Commands, Version_IsTheNameAndTheVersionOfTheProject) {
    EXPECT_EQ(run("version"), "Merrowd " MERROWD_VERSION);
}

TEST_F(Commands, Classes_AreTheNamesALineEach) {
    EXPECT_EQ(run("classes"), "Clock\nCounter\nDigest\nEcho\nNotes\n");
}

TEST_F(Commands, Objects_AreThoseOfTheCallingApplication) {
    EXPECT_EQ(run("objects"), "");
    server_.instantiate(session_, "Echo");
    server_.instantiate(server_.registerApplication("Other"), "Counter");
    EXPECT_EQ(run("objects"), "01000100010000000000000000000000 Echo\n");
}

TEST_F(Commands, WithAnArgumentWhereNoneIsTaken_AreParameterFormat) {
    for (const char* command : {"version", "classes", "objects"}) {
        EXPECT_EQ(server_.send(commandRequest(session_, command, "x")).code(), 30u) << command;
    }
}

TEST_F(Commands, Information_ByNumber) {
    server_.instantiate(session_, "Echo");
    server_.instantiate(session_, "Echo");
    EXPECT_EQ(information(std::string("\x01\x00", 2)), "Merrowd " MERROWD_VERSION);
    EXPECT_EQ(information(std::string("\x02\x00", 2)), "Clock\nCounter\nDigest\nEcho\nNotes\n");
    EXPECT_EQ(information(std::string("\x03\x00", 2)), littleEndian(1));
    EXPECT_EQ(information(std::string("\x04\x00", 2)), littleEndian(2));
    EXPECT_EQ(information(std::string("\x60\x01", 2)), littleEndian(7));
}

TEST_F(Commands, Information_OfAnotherLengthOrNumber_IsParameterFormat) {
    for (const std::string& request :
         {std::string(), std::string("\x01", 1), std::string("\x01\x00\x00", 3), std::string("\x00\x00", 2),
          std::string("\x05\x00", 2), std::string("\x01\x01", 2)}) {
        EXPECT_EQ(server_.send(informationRequest(session_, request)).code(), 30u);
    }
}

}  // namespace
}  // namespace merrowd::test
