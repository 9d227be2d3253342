#include "tools/decode/Decode.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/TemporaryFolder.h"
#include "tests/tools/ToolRun.h"

namespace dovrel::tools {
namespace {

using test::runTool;
using test::ToolRun;

constexpr char kEmptyListText[] =
    "byte array list, 22 bytes: 0 elements\n"
    "0000  header = structured block, type number 8\n"
    "000A  0 number of elements = 0\n";
constexpr char kEmptyListDigits[] = "41 73 41 6B 00 01 00 00 00 08 00 00 00 00 00 00 00 04 00 00 00 00\n";
const std::string kEmptyList("AsAk\0\1\0\0\0\x08\0\0\0\0\0\0\0\4\0\0\0\0", 22);

TEST(Decode, BytesAndHexadecimalText_AreDetected) {
    for (const std::string& input : {kEmptyList, std::string(kEmptyListDigits)}) {
        const ToolRun run = runTool({"decode"}, input);
        EXPECT_EQ(run.output, kEmptyListText);
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(run.status, 0);
    }
}

TEST(Decode, FileOrStandardInput_IsTheInput) {
    const test::TemporaryFolder folder;
    folder.write("list", kEmptyList);
    EXPECT_EQ(runTool({"decode", folder.path("list")}).output, kEmptyListText);
    EXPECT_EQ(runTool({"decode", "-"}, kEmptyList).output, kEmptyListText);
}

TEST(Decode, FormOfTheInput_CanBeForced) {
    EXPECT_EQ(runTool({"decode", "--hex"}, kEmptyListDigits).output, kEmptyListText);
    const ToolRun wrong = runTool({"decode", "--hex"}, kEmptyList);
    EXPECT_EQ(wrong.status, 1);
    EXPECT_EQ(wrong.errors.rfind("dovrel: the input is text, but not hexadecimal: line 1: ", 0), 0u)
        << wrong.errors;
    const ToolRun asBytes = runTool({"decode", "--binary"}, kEmptyListDigits);
    EXPECT_EQ(asBytes.status, 1);
    EXPECT_EQ(asBytes.output.rfind("unknown kind, 66 bytes\n", 0), 0u) << asBytes.output;
}

TEST(Decode, TextThatIsNotHexadecimal_IsAFailureWithTheLine) {
    const ToolRun run = runTool({"decode"}, "41 73\nhello\n");
    EXPECT_EQ(run.errors,
              "dovrel: the input is text, but not hexadecimal: line 2: \"hello\" is not hexadecimal\n");
    EXPECT_EQ(run.status, 1);
}

TEST(Decode, DamagedBlock_ShowsWhatIsReadableAndExits1) {
    const ToolRun run = runTool({"decode"}, kEmptyList.substr(0, 20));
    EXPECT_EQ(run.output,
              "byte array list, 20 bytes: unknown number of elements\n"
              "0000  header = structured block, type number 8\n"
              "000A  unreadable rest = 10 bytes: 00 00 00 00 00 00 00 04 00 00\n"
              "problem at 000E: the length of part 0 is 4 bytes, but the block has only 2 bytes more\n");
    EXPECT_EQ(run.status, 1);
}

TEST(Decode, Json_HasItemsAndFindings) {
    const auto json = nlohmann::json::parse(runTool({"decode", "--json"}, kEmptyList.substr(0, 20)).output);
    EXPECT_EQ(json, nlohmann::json::parse(R"({
        "kind": "byte array list", "summary": "unknown number of elements", "size": 20,
        "items": [
            {"offset": 0, "length": 10, "name": "header", "value": 8,
             "text": "structured block, type number 8", "bytes": "4173416B000100000008"},
            {"offset": 10, "length": 10, "name": "unreadable rest",
             "text": "10 bytes: 00 00 00 00 00 00 00 04 00 00", "bytes": "00000000000000040000"}],
        "findings": [
            {"offset": 14, "severity": "problem",
             "text": "the length of part 0 is 4 bytes, but the block has only 2 bytes more"}]})"));
}

TEST(Decode, FileThatCannotBeRead_IsNamedWithTheReason) {
    EXPECT_EQ(runTool({"decode", "/nowhere/file"}).errors,
              "dovrel: cannot read /nowhere/file: No such file or directory\n");
    EXPECT_EQ(runTool({"decode", "/"}).errors, "dovrel: cannot read /: Is a directory\n");
    EXPECT_EQ(runTool({"decode", "/nowhere/file"}).status, 1);
}

TEST(Decode, UnknownKind_IsAWrongArgument) {
    EXPECT_EQ(runTool({"decode", "--kind", "other"}, kEmptyList).status, 2);
    EXPECT_EQ(runTool({"decode", "--kind", "list"}, kEmptyList).status, 0);
    EXPECT_EQ(runTool({"decode", "--kind", "object"}, kEmptyList).status, 1);
}

}  // namespace
}  // namespace dovrel::tools
