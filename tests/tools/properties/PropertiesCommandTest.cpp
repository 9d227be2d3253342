#include "tools/properties/PropertiesCommand.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/ToolRun.h"

namespace dovrel::tools {
namespace {

using test::runTool;
using test::ToolRun;

constexpr char kText[] = "# comment\n//delay\nINT:5\n//name\nSTR:hello\n//data\nBAR:00FF\n";

// Runs "dovrel properties" with a file that has the text above.
class PropertiesCommandTest : public testing::Test {
  protected:
    PropertiesCommandTest() { folder_.write("settings", kText); }

    ToolRun run(std::vector<std::string> arguments, const std::string& input = "") const {
        arguments.insert(arguments.begin(), "properties");
        return runTool(arguments, input);
    }

    std::string content() const { return folder_.read("settings"); }

    const test::TemporaryFolder folder_;
    const std::string file_ = folder_.path("settings");
};

TEST_F(PropertiesCommandTest, Show_ListsTheEntries) {
    EXPECT_EQ(run({"show", file_}).output, "delay = 5\nname = \"hello\"\ndata = 2 bytes: 00 FF\n");
    EXPECT_EQ(nlohmann::json::parse(run({"show", "--json", file_}).output),
              nlohmann::json::parse(R"({"delay":5,"name":"hello","data":{"bytes":"00FF"}})"));
    EXPECT_EQ(run({"show", "-"}, "//a\nINT:1\n").output, "a = 1\n");
    EXPECT_EQ(run({"show", "--section-key", "L", "-"}, "//L\nSTR:x\n//a\nINT:1\n//L\nSTR:y\n").output,
              "L = \"x\"\na = 1\n\nL = \"y\"\n");
}

TEST_F(PropertiesCommandTest, Get_PrintsTheValue) {
    EXPECT_EQ(run({"get", file_, "delay"}).output, "5\n");
    EXPECT_EQ(run({"get", file_, "name"}).output, "hello\n");
    EXPECT_EQ(run({"get", file_, "data"}).output, "00FF\n");
    EXPECT_EQ(run({"get", "--json", file_, "name"}).output, "\"hello\"\n");
    const ToolRun missing = run({"get", file_, "other"});
    EXPECT_EQ(missing.errors, "dovrel: " + file_ + " has no entry \"other\"\n");
    EXPECT_EQ(missing.status, 1);
}

TEST_F(PropertiesCommandTest, Set_KeepsTheTypeAndTheOtherLines) {
    EXPECT_EQ(run({"set", file_, "delay", "-7"}).status, 0);
    EXPECT_EQ(run({"set", file_, "data", "01 02"}).status, 0);
    EXPECT_EQ(run({"set", file_, "new", "5"}).status, 0);
    EXPECT_EQ(run({"set", "--int", file_, "count", "5"}).status, 0);
    EXPECT_EQ(
        content(),
        "# comment\n//delay\nINT:-7\n//name\nSTR:hello\n//data\nBAR:0102\n//new\nSTR:5\n//count\nINT:5\n");
}

TEST_F(PropertiesCommandTest, Set_CreatesTheFile) {
    EXPECT_EQ(run({"set", folder_.path("new"), "a", "x"}).status, 0);
    EXPECT_EQ(folder_.read("new"), "//a\nSTR:x\n");
}

TEST_F(PropertiesCommandTest, SetWithoutAFile_CopiesStandardInputWithTheChange) {
    EXPECT_EQ(run({"set", "-", "b", "x"}, "//a\nINT:1\n").output, "//a\nINT:1\n//b\nSTR:x\n");
}

TEST_F(PropertiesCommandTest, SetWithAValueThatDoesNotFit_LeavesTheFile) {
    EXPECT_EQ(run({"set", file_, "delay", "soon"}).errors,
              "dovrel: the value of \"delay\" is not a 32-bit number: \"soon\"\n");
    EXPECT_EQ(run({"set", file_, "name", "a\nb"}).status, 1);
    EXPECT_EQ(run({"set", "--int", "--bytes", file_, "delay", "5"}).status, 2);
    EXPECT_EQ(content(), kText);
}

TEST_F(PropertiesCommandTest, SetThatCannotBeWritten_LeavesTheFile) {
    const test::FileSizeLimit limit(4096);
    const ToolRun result = run({"set", file_, "name", std::string(8000, 'x')});
    EXPECT_EQ(result.errors, "dovrel: cannot write " + file_ + ": File too large\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(content(), kText);
}

TEST_F(PropertiesCommandTest, Remove_RemovesAllKeysOrNone) {
    EXPECT_EQ(run({"remove", file_, "name", "other"}).errors,
              "dovrel: " + file_ + " has no entry \"other\"\n");
    EXPECT_EQ(content(), kText);
    EXPECT_EQ(run({"remove", file_, "name", "data"}).status, 0);
    EXPECT_EQ(content(), "# comment\n//delay\nINT:5\n");
}

TEST_F(PropertiesCommandTest, Check_NamesFileLineAndReasonAndExits1) {
    const ToolRun result = run({"check", file_});
    EXPECT_EQ(result.output, file_ + ":1: \"# comment\" is not part of an entry\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(run({"check", "--comments", file_}).status, 0);
    EXPECT_EQ(nlohmann::json::parse(run({"check", "--json", "-"}, "//a\n").output),
              nlohmann::json::parse(R"([{"file":"-","line":1,"text":"\"a\" has no value"}])"));
    EXPECT_EQ(run({"check", "--json", "-"}, "//a\nINT:1\n").output, "[]\n");
}

TEST_F(PropertiesCommandTest, Convert_GoesToJsonAndBack) {
    const std::string json = folder_.path("json");
    EXPECT_EQ(run({"convert", file_, "-o", json}).status, 0);
    EXPECT_EQ(run({"convert", json}).output, "//delay\nINT:5\n//name\nSTR:hello\n//data\nBAR:00FF\n");
    EXPECT_EQ(run({"convert", "-"}, "{oops").errors, "dovrel: the input begins like JSON, but is not JSON\n");
}

TEST_F(PropertiesCommandTest, ConvertOfSections_NeedsTheirKey) {
    constexpr char kJson[] = R"([{"L":"x","a":1},{"L":"y"}])";
    EXPECT_EQ(run({"convert", "--section-key", "L", "-"}, kJson).output,
              "//L\nSTR:x\n//a\nINT:1\n\n//L\nSTR:y\n");
    EXPECT_EQ(run({"convert", "-"}, kJson).status, 2);
    EXPECT_EQ(run({"convert", "--section-key", "L", "-"}, R"([{"L":"x"},{"a":1,"L":"y"}])").errors,
              "dovrel: not every object of the array begins with the key \"L\"\n");
}

TEST_F(PropertiesCommandTest, EncipherAndDecipher_AreInverse) {
    EXPECT_EQ(run({"encipher", "--in-place", file_}).status, 0);
    EXPECT_EQ(content().substr(0, 3), "ENC");
    EXPECT_EQ(run({"get", file_, "name"}).output, "hello\n");
    EXPECT_EQ(run({"encipher", file_}).errors, "dovrel: " + file_ + " is enciphered already\n");
    EXPECT_EQ(run({"decipher", file_}).output, kText);
    EXPECT_EQ(run({"decipher", "--in-place", file_}).status, 0);
    EXPECT_EQ(content(), kText);
    EXPECT_EQ(run({"decipher", file_}).errors, "dovrel: " + file_ + " is not enciphered\n");
}

TEST_F(PropertiesCommandTest, EncipheredFileWithDamageAtEveryByte_NeverCrashes) {
    const std::string enciphered = run({"encipher", file_}).output;
    for (size_t length = 0; length < enciphered.size(); length += 5) {
        const ToolRun result = run({"show", "-"}, enciphered.substr(0, length));
        EXPECT_TRUE(result.status == 0 || result.status == 1) << length;
    }
}

}  // namespace
}  // namespace dovrel::tools
