#include "macho/imports/ImportTable.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "macho/format/ByteReader.h"

namespace dovrel::macho {
namespace {

constexpr char kSystem[] = "/usr/lib/libSystem.B.dylib";
constexpr char kCppLibrary[] = "/usr/lib/libc++.1.dylib";

TEST(ImportTable, ASymbol_IsFoundInItsOwnLibraryOnly) {
    int variable = 0;
    ImportTable table;
    table.add(kSystem, "_variable", &variable);
    EXPECT_EQ(table.find(kSystem, "_variable"), std::optional<void*>(&variable));
    EXPECT_EQ(table.find(kCppLibrary, "_variable"), std::nullopt);
    EXPECT_EQ(table.find(kSystem, "variable"), std::nullopt);
}

TEST(ImportTable, ANullAddress_IsAnAddress) {
    ImportTable table;
    table.add(kSystem, "_nothing", static_cast<void*>(nullptr));
    EXPECT_TRUE(table.find(kSystem, "_nothing").has_value());
}

TEST(ImportTable, TheSameSymbolTwice_IsRefused) {
    ImportTable table;
    table.add(kSystem, "_nothing", static_cast<void*>(nullptr));
    EXPECT_THROW(table.add(kSystem, "_nothing", static_cast<void*>(nullptr)), FormatError);
}

TEST(ImportTable, TheReviewedImports_AreNotForAnySymbolOfALibrary) {
    EXPECT_TRUE(reviewedImports().find(kSystem, "_malloc").has_value());
    EXPECT_FALSE(reviewedImports().find(kSystem, "_fork").has_value());
    EXPECT_TRUE(reviewedImports().find(kCppLibrary, "___cxa_throw").has_value());
    EXPECT_FALSE(reviewedImports().find(kCppLibrary, "__ZNSt3__118condition_variableD1Ev").has_value());
}

TEST(ImportTable, TheCppLibrary_IsNotTheOneOfThisProgram) {
    void* const theirs = *reviewedImports().find(kCppLibrary, "___cxa_throw");
    EXPECT_NE(theirs, dlsym(RTLD_DEFAULT, "__cxa_throw"));
}

}  // namespace
}  // namespace dovrel::macho
