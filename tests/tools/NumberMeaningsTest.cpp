#include "tools/status/NumberMeanings.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>

#include "client/exceptions/ExceptionTypeNames.h"

namespace dovrel::tools {
namespace {

std::string readSource(const std::string& path) {
    std::ifstream file(SOURCE_FOLDER + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(NumberMeanings, EveryErrorSiteCodeOfTheLibrary_HasAMeaning) {
    const std::string header = readSource("/serialization/StructuredDataFormat.h");
    const std::regex code("\"([0-9A-F]{12}: )\"");
    size_t count = 0;
    for (std::sregex_iterator found(header.begin(), header.end(), code), end; found != end;
         ++found, ++count) {
        const std::vector<NumberMeaning> meanings = findSiteMeanings((*found)[1]);
        ASSERT_EQ(meanings.size(), 1u) << (*found)[1];
        EXPECT_FALSE(meanings[0].advice.empty());
    }
    EXPECT_GE(count, 13u);
}

TEST(NumberMeanings, EveryErrorCodeOfTheServer_HasItsNameAndAdvice) {
    size_t count = 0;
    for (uint32_t code = 0; code < 1000; ++code) {
        const char* const name = serverErrorName(code);
        if (name == nullptr) continue;
        ++count;
        bool isNamed = false;
        for (const NumberMeaning& meaning : findMeanings(code)) {
            EXPECT_FALSE(meaning.advice.empty()) << code;
            isNamed = isNamed || meaning.name == name;
        }
        EXPECT_TRUE(isNamed) << code;
    }
    EXPECT_EQ(count, 16u);
}

TEST(NumberMeanings, NumberWhoseSignWasLost_IsNegative) {
    for (const int64_t number : {int64_t{-1712}, int64_t{63824}, int64_t{4294965584}}) {
        const std::vector<NumberMeaning> meanings = findMeanings(number);
        ASSERT_EQ(meanings.size(), 1u) << number;
        EXPECT_EQ(meanings[0].number, -1712);
        EXPECT_EQ(meanings[0].name, "errAETimeout");
    }
}

TEST(NumberMeanings, ResultsOfConnecting_AreNamed) {
    for (const int64_t number : {42, 43}) {
        const std::vector<NumberMeaning> meanings = findMeanings(number);
        ASSERT_FALSE(meanings.empty());
        EXPECT_EQ(meanings.back().kind, "result of connecting to the server");
    }
}

TEST(NumberMeanings, OtherNumbers_HaveNone) {
    for (const int64_t number : {int64_t{4711}, int64_t{-4711}, INT64_MAX, INT64_MIN})
        EXPECT_TRUE(findMeanings(number).empty()) << number;
}

TEST(NumberMeanings, OtherTexts_AreNoErrorSiteCodes) {
    for (const char* const text :
         {"", "384269E8023", "384269E802301", "384269E80230:x", "384269E80231", "384269E8 0230"})
        EXPECT_TRUE(findSiteMeanings(text).empty()) << text;
}

}  // namespace
}  // namespace dovrel::tools
