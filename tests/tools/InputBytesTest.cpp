#include "tools/calls/InputBytes.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <fstream>

#include "tests/support/TemporaryFolder.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {
namespace {

class InputBytesOptions : public testing::Test {
  protected:
    InputBytesOptions() { input_.addOptions(app_, "data", "The data"); }

    std::string read(const std::string& arguments) {
        app_.parse(arguments);
        return input_.read();
    }

    CLI::App app_;
    InputBytes input_;
};

TEST_F(InputBytesOptions, NoArgument_IsNoBytes) {
    EXPECT_EQ(read(""), "");
}

TEST_F(InputBytesOptions, Text_IsItself) {
    EXPECT_EQ(read("'some text'"), "some text");
    EXPECT_TRUE(input_.isText());
}

TEST_F(InputBytesOptions, Hexadecimal_IsBytes) {
    EXPECT_EQ(read("'0a FF 00' --hex"), std::string("\x0A\xFF\0", 3));
    EXPECT_FALSE(input_.isText());
}

TEST_F(InputBytesOptions, File_IsReadWithAllItsBytes) {
    const test::TemporaryFolder folder;
    const std::string content("a\0b\r\n", 5);
    std::ofstream(folder.path("file"), std::ios::binary) << content;
    EXPECT_EQ(read("--file " + folder.path("file")), content);
    EXPECT_FALSE(input_.isText());
}

TEST_F(InputBytesOptions, FileAndText_AreRejected) {
    EXPECT_THROW(read("text --file /dev/null"), CLI::ParseError);
}

TEST_F(InputBytesOptions, EmptyFileName_IsRejected) {
    EXPECT_THROW(read("--file ''"), CLI::ParseError);
    EXPECT_THROW(read("--file="), CLI::ParseError);
}

TEST_F(InputBytesOptions, FileThatCannotBeOpened_Fails) {
    EXPECT_THROW(read("--file /nowhere/file"), ToolFailure);
}

TEST(ParseHexadecimal, HalfABytesAndOtherCharacters_AreRejected) {
    for (const char* const text : {"0", "000", "0x", "0G", "-1"})
        EXPECT_THROW(parseHexadecimal(text), CLI::ParseError) << text;
}

}  // namespace
}  // namespace dovrel::tools
