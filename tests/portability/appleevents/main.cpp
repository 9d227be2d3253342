#include <gtest/gtest.h>

#include <filesystem>

#include "TestApplication.h"

int main(int argc, char** argv) {
    if (isTestApplication()) return runTestApplication();
    testProgram() = std::filesystem::canonical(argv[0]).string();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
