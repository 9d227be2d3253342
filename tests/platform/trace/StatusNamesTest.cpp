#include "platform/trace/StatusNames.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>

namespace dovrel {
namespace {

TEST(StatusNames, EveryResultCodeOfTheHeaders_HasTheNameOfItsDeclaration) {
    std::ifstream header(RESULT_CODES_HEADER);
    const std::regex declaration("^    (\\w+) = (-\\d+),?$");
    int count = 0;
    for (std::string line; std::getline(header, line);) {
        std::smatch found;
        if (!std::regex_match(line, found, declaration)) continue;
        const char* const name = statusName(std::stoi(found[2]));
        EXPECT_STREQ(name, found[1].str().c_str()) << line;
        ++count;
    }
    EXPECT_GT(count, 70);
}

TEST(StatusNames, NameAndNumber_AreThePlatforms) {
    EXPECT_STREQ(statusName(-43), "fnfErr");
    EXPECT_STREQ(statusName(-600), "procNotFound");
    EXPECT_STREQ(statusName(-609), "connectionInvalid");
    EXPECT_STREQ(statusName(-1701), "errAEDescNotFound");
    EXPECT_STREQ(statusName(-1708), "errAEEventNotHandled");
    EXPECT_STREQ(statusName(-1712), "errAETimeout");
    EXPECT_STREQ(statusName(-1743), "errAEEventNotPermitted");
    EXPECT_STREQ(statusName(-10826), "kLSNoLaunchPermissionErr");
    EXPECT_STREQ(statusName(-29296), "kMPTimeoutErr");
}

TEST(StatusNames, NumbersOutsideTheTable_HaveNoName) {
    for (const int32_t status : {0, 1, 42, 43, -1, -601, -32768, INT32_MIN, INT32_MAX})
        EXPECT_EQ(statusName(status), nullptr) << status;
}

TEST(StatusNames, Text_IsTheNumberWithWhatIsKnownAboutIt) {
    EXPECT_EQ(statusText(-600), "-600 (procNotFound)");
    EXPECT_EQ(statusText(-601), "-601");
    EXPECT_EQ(statusText(0), "0");
    EXPECT_EQ(statusText(42), "42");
    EXPECT_EQ(statusText(INT32_MIN), "-2147483648");
}

TEST(StatusNames, TextOfAStatusMadeOfErrno_NamesErrno) {
    EXPECT_EQ(statusText(100013), "100013 (errno 13)");
    EXPECT_EQ(statusText(100000), "100000");
    EXPECT_EQ(statusText(101000), "101000");
}

}  // namespace
}  // namespace dovrel
