// Foundation reads the arguments of a host in any encoding. Each test starts a program, because Foundation
// chooses its encoding once in a process.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/support/ChildProcess.h"

namespace {

constexpr char kLatin1[] = "Gr\xF6\xDF\x65";

std::string textSeenFor(const std::string& argument) {
    return dovrel::test::ChildProcess({PROBE, argument}).readLine();
}

TEST(ReadableHostTexts, ArgumentsInUTF8_AreReadInUTF8) {
    EXPECT_EQ(textSeenFor("Größe"), "Größe");
}

TEST(ReadableHostTexts, ArgumentsThatAreNotUTF8_AreReadInLatin1WithoutAChangeOfTheEnvironment) {
    EXPECT_EQ(textSeenFor(kLatin1), "Größe");
}

TEST(ReadableHostTexts, EnvironmentThatIsNotUTF8_LeavesArgumentsReadable) {
    setenv("FILE_OF_THE_USER", kLatin1, 1);
    EXPECT_EQ(textSeenFor("Size"), "Size");
    unsetenv("FILE_OF_THE_USER");
}

}  // namespace
