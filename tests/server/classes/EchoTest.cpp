#include <gtest/gtest.h>

#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

TEST(Echo, Echo_OfAnyBytes_ReturnsThem) {
    TestObject echo("Echo");
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_EQ(echo.call("echo", all), all);
    EXPECT_EQ(echo.call("echo", ""), "");
}

TEST(Echo, AnotherMethod_IsMethodNotFound) {
    TestObject echo("Echo");
    EXPECT_EQ(echo.callRefused("shout"), 27u);
}

}  // namespace
}  // namespace merrowd::test
