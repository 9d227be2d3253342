#include "platform/Environment.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace dovrel {
namespace {

constexpr char kName[] = "DOVREL_ENVIRONMENT_TEST";

TEST(Environment, Variable_IsThatOfTheProcess) {
    setenv(kName, "some value", 1);
    EXPECT_EQ(environmentVariable(kName), "some value");
    setenv(kName, "", 1);
    EXPECT_EQ(environmentVariable(kName), "");
    unsetenv(kName);
    EXPECT_EQ(environmentVariable(kName), "");
}

TEST(Environment, SetEnvironmentSource_ReplacesTheEnvironmentUntilItIsNull) {
    setenv(kName, "the process's", 1);
    setEnvironmentSource(
        [](const char* name) { return std::strcmp(name, kName) == 0 ? "another" : nullptr; });
    EXPECT_EQ(environmentVariable(kName), "another");
    EXPECT_EQ(environmentVariable("PATH"), "");
    setEnvironmentSource(nullptr);
    EXPECT_EQ(environmentVariable(kName), "the process's");
    unsetenv(kName);
}

}  // namespace
}  // namespace dovrel
