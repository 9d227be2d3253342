#include "tools/texts/TextsCommand.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "settings/TextKeys.h"
#include "tests/tools/ToolRun.h"

namespace dovrel::tools {
namespace {

using test::runTool;
using test::ToolRun;

constexpr char kText[] =
    "//LANGUAGE\nSTR:German\n//a\nSTR:_Ja SDNLnein\n//b\nSTR:gr\x9A\n//LANGUAGE\nSTR:English\n//a\nSTR:Yes\n";

TEST(TextsCommand, List_CountsTheTextsOfEachLanguage) {
    EXPECT_EQ(runTool({"texts", "list", "-"}, kText).output, "German: 2 texts\nEnglish: 1 text\n");
    EXPECT_EQ(nlohmann::json::parse(runTool({"texts", "list", "--json", "-"}, kText).output),
              nlohmann::json::parse(R"({"German":{"a":"Ja \nnein","b":"grö"},"English":{"a":"Yes"}})"));
}

TEST(TextsCommand, ListOfALanguage_HasOneLineForEachText) {
    EXPECT_EQ(runTool({"texts", "list", "-", "German"}, kText).output, "a = Ja \\nnein\nb = grö\n");
    EXPECT_EQ(runTool({"texts", "list", "--stored", "-", "German"}, kText).output,
              "a = _Ja SDNLnein\nb = grö\n");
    EXPECT_EQ(nlohmann::json::parse(runTool({"texts", "list", "--json", "-", "English"}, kText).output),
              nlohmann::json::parse(R"({"a":"Yes"})"));
    EXPECT_EQ(runTool({"texts", "list", "-", "french"}, kText).errors,
              "dovrel: there are no texts in french; the languages are German, English\n");
}

TEST(TextsCommand, Get_PrintsOneText) {
    EXPECT_EQ(runTool({"texts", "get", "-", "German", "a"}, kText).output, "Ja \nnein\n");
    EXPECT_EQ(runTool({"texts", "get", "--stored", "-", "German", "a"}, kText).output, "_Ja SDNLnein\n");
    EXPECT_EQ(runTool({"texts", "get", SHIPPED_TEXTS, "German", kGeneralButtonCancel}).output, "Abbrechen\n");
    const ToolRun missing = runTool({"texts", "get", "-", "English", "b"}, kText);
    EXPECT_EQ(missing.errors, "dovrel: there is no text for b in English\n");
    EXPECT_EQ(missing.status, 1);
}

TEST(TextsCommand, Check_NamesFileAndLineAndExits1) {
    const ToolRun run = runTool({"texts", "check", "-"}, kText);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output.rfind("-: there are no texts in Francais\n-:1: German has no text for ", 0), 0u)
        << run.output;
    EXPECT_NE(run.output.find("-:3: the library does not use a\n"), std::string::npos);
    const ToolRun shipped = runTool({"texts", "check", SHIPPED_TEXTS});
    EXPECT_EQ(shipped.output, "");
    EXPECT_EQ(shipped.status, 0);
    EXPECT_EQ(runTool({"texts", "check", "--json", SHIPPED_TEXTS}).output, "[]\n");
}

}  // namespace
}  // namespace dovrel::tools
