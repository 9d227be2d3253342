#include "tools/properties/PropertiesJson.h"

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {
namespace {

using Json = nlohmann::ordered_json;

std::string failureOf(const char* json) {
    try {
        propertiesFromJson(Json::parse(json));
    } catch (const ToolFailure& failure) {
        return failure.what();
    }
    return "none";
}

TEST(PropertiesJson, EachType_HasItsForm) {
    const Json json = propertiesToJson(
        "//b\nINT:-5\n//a\nSTR:Gr\xC3\xB6\xC3\x9F"
        "e\n//m\nSTR:gr\x9A\n//x\nBAR:00ff\n//b\nINT:6\n",
        "");
    EXPECT_EQ(json.dump(), R"({"b":-5,"a":"Größe","m":{"string":"67729A"},"x":{"bytes":"00FF"}})");
    EXPECT_EQ(propertiesToJson("", "").dump(), "{}");
}

TEST(PropertiesJson, Sections_AreAnArray) {
    constexpr char kText[] = "//L\nSTR:x\n//a\nINT:1\n//L\nSTR:y\n//a\nINT:2\n";
    const Json json = propertiesToJson(kText, "L");
    EXPECT_EQ(json.dump(), R"([{"L":"x","a":1},{"L":"y","a":2}])");
    EXPECT_EQ(propertiesFromJson(json), "//L\nSTR:x\n//a\nINT:1\n\n//L\nSTR:y\n//a\nINT:2\n");
    EXPECT_EQ(propertiesToJson("", "L").dump(), "[]");
}

TEST(PropertiesJson, TextOfEveryByte_ComesBackUnchanged) {
    std::string value;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '\n') value += static_cast<char>(byte);
    const std::string text = "//all\nSTR:" + value + "\n//data\nBAR:0001FF\n//number\nINT:2147483647\n";
    EXPECT_EQ(propertiesFromJson(propertiesToJson(text, "")), text);
}

TEST(PropertiesJson, ValuesThatCannotBeStored_AreRefusedWithTheirKey) {
    EXPECT_EQ(failureOf(R"({"a":2147483648})"), "the value of \"a\" is not a 32-bit number: 2147483648");
    EXPECT_EQ(failureOf(R"({"a":-2147483649})"), "the value of \"a\" is not a 32-bit number: -2147483649");
    EXPECT_EQ(failureOf(R"({"a":1.5})"),
              "the value of \"a\" is neither a whole number, a string nor bytes: 1.5");
    EXPECT_EQ(failureOf(R"({"a":true})"),
              "the value of \"a\" is neither a whole number, a string nor bytes: true");
    EXPECT_EQ(failureOf(R"({"a":"x\ny"})"), "the value of \"a\" cannot be stored: it contains a line feed");
    EXPECT_EQ(failureOf(R"({"a":{"bytes":"0"}})"),
              "the value of \"a\" is not bytes in hexadecimal: line 1: \"0\" has an odd number of digits");
    EXPECT_EQ(failureOf(R"({"a":{"other":"00"}})"),
              "the value of \"a\" is neither {\"bytes\": …} nor {\"string\": …}: {\"other\":\"00\"}");
    EXPECT_EQ(failureOf(R"({"":1})"), "the key \"\" cannot be stored: it is empty");
    EXPECT_EQ(failureOf("[1]"), "the JSON is neither an object nor an array of objects");
    EXPECT_EQ(failureOf("5"), "the JSON is neither an object nor an array of objects");
}

TEST(PropertiesJson, KeyThatIsNotUTF8_IsAFailureWithItsLine) {
    try {
        propertiesToJson("//ok\nINT:1\n//gr\x9A\nINT:1\n", "");
        ADD_FAILURE();
    } catch (const ToolFailure& failure) {
        EXPECT_EQ(std::string(failure.what()),
                  "the key \"grö\" in line 3 is not UTF-8, so JSON cannot contain it");
    }
}

}  // namespace
}  // namespace dovrel::tools
