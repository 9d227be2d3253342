// The loader of dovrel/pos_functions.h. Each test runs in a process of its own, which has not loaded the library.
#include "dovrel/pos_functions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <type_traits>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRoot.h"

namespace {

using dovrel::test::TemporaryFolder;
using dovrel::test::TestRoot;

#define EXPECT_TYPE_OF_HEADER(name) \
    static_assert(std::is_same_v<name##Function, std::remove_pointer_t<decltype(&::name)>>);
POS_FOR_EACH_FUNCTION(EXPECT_TYPE_OF_HEADER)

size_t countFunctions(const posFunctions& functions) {
    size_t count = 0;
#define COUNT_FUNCTION(name) count += functions.name != nullptr ? 1 : 0;
    POS_FOR_EACH_FUNCTION(COUNT_FUNCTION)
    return count;
}

uint8_t readInterfaceVersion(const posFunctions& functions) {
    uint8_t* info = nullptr;
    int32_t length = 0;
    functions.InitializePOS();
    EXPECT_EQ(functions.posGetInfo(0, "\x60\x01", 2, &info, &length), POS_OK);
    const uint8_t version = length == 4 ? info[0] : uint8_t{0};
    functions.posDeleteDLLHeapData(info);
    functions.TerminatePOS();
    return version;
}

}  // namespace

TEST(PosFunctions, Load_Bundle_FindsAllThirteenFunctions) {
    const TestRoot root;
    posFunctions functions;
    ASSERT_STREQ(posLoadFunctions(root.library().c_str(), &functions), nullptr);
    EXPECT_EQ(countFunctions(functions), 13u);
    EXPECT_EQ(readInterfaceVersion(functions), 7);
    posUnloadFunctions(&functions);
    EXPECT_EQ(countFunctions(functions), 0u);
    EXPECT_EQ(functions.library, nullptr);
}

TEST(PosFunctions, Load_WithoutABundle_FindsTheLibraryByItsName) {
    posFunctions functions;
    ASSERT_STREQ(posLoadFunctions(nullptr, &functions), nullptr);
    EXPECT_EQ(countFunctions(functions), 13u);
    posUnloadFunctions(&functions);
}

TEST(PosFunctions, Load_OfAnotherCopyOfTheBundle_TakesTheOneThatIsLoaded) {
    const TestRoot root;
    const TemporaryFolder folder;
    const std::string copy = folder.path("Dovrel.bundle");
    std::filesystem::copy(root.library(), copy, std::filesystem::copy_options::recursive);
    posFunctions first;
    posFunctions second;
    ASSERT_STREQ(posLoadFunctions(root.library().c_str(), &first), nullptr);
    ASSERT_STREQ(posLoadFunctions(copy.c_str(), &second), nullptr);
    EXPECT_EQ(second.InitializePOS, first.InitializePOS);
    posUnloadFunctions(&first);
    posUnloadFunctions(&second);
}

TEST(PosFunctions, Load_MissingBundle_TellsItsPathAndLeavesNoFunction) {
    posFunctions functions;
    const char* const failure = posLoadFunctions("/nowhere/Dovrel.bundle", &functions);
    ASSERT_NE(failure, nullptr);
    EXPECT_NE(std::string(failure).find("/nowhere/Dovrel.bundle/Contents/MacOS/Dovrel"), std::string::npos)
        << failure;
    EXPECT_EQ(countFunctions(functions), 0u);
    EXPECT_EQ(functions.library, nullptr);
    posUnloadFunctions(&functions);
}

TEST(PosFunctions, Load_PathThatIsTooLong_IsAFailureAndNotCut) {
    constexpr size_t kLongest = 4096 - sizeof "/Contents/MacOS/Dovrel";
    posFunctions functions;
    EXPECT_STREQ(posLoadFunctions(std::string(kLongest + 1, '/').c_str(), &functions),
                 "the path of the bundle is too long");
    EXPECT_EQ(countFunctions(functions), 0u);
    const char* const failure = posLoadFunctions(std::string(kLongest, '/').c_str(), &functions);
    ASSERT_NE(failure, nullptr);
    EXPECT_NE(std::string(failure).find("/Contents/MacOS/Dovrel"), std::string::npos) << failure;
}

TEST(PosFunctions, Load_LibraryThatLacksAFunction_NamesItAndLeavesNoFunction) {
    posFunctions functions;
    EXPECT_STREQ(posLoadFunctions(INCOMPLETE_BUNDLE, &functions), "the library has no function TerminatePOS");
    EXPECT_EQ(countFunctions(functions), 0u);
    EXPECT_EQ(functions.library, nullptr);
}

TEST(PosFunctions, LibraryName_IsThatOfTheMajorVersion) {
    EXPECT_EQ(POS_LIBRARY_NAME, "libdovrel.so." + std::to_string(POS_VERSION_MAJOR));
}
