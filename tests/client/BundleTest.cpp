// The built bundle as a host sees it. This program knows only the bundle's
// path and the list of its functions.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "dovrel/pos.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel {
namespace {

const std::string kContents = DOVREL_BUNDLE_CONTENTS;
const std::string kExecutable = kContents + "/MacOS/Dovrel";
const std::string kFoundation = kContents + "/MacOS/DovrelFoundation";

std::string readOutput(const std::string& command) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    EXPECT_NE(pipe, nullptr) << command;
    std::string output;
    char part[4096];
    while (size_t size = std::fread(part, 1, sizeof part, pipe.get()))
        output.append(part, size);
    return output;
}

std::string neededBy(const std::string& library) {
    return readOutput("readelf --dynamic --wide '" + library + "' | grep NEEDED");
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << path;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::set<std::string> splitLines(const std::string& text) {
    std::istringstream stream(text);
    std::set<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        if (!line.empty()) lines.insert(line);
    return lines;
}

/// Loads the bundle with its own system root, so that no installed server is found.
class BundleTest : public testing::Test {
  protected:
    BundleTest() {
        setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
        setenv("HOME", root_.path("home").c_str(), 1);
    }

    void load() {
        bundle_ = dlopen(kExecutable.c_str(), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(bundle_, nullptr) << dlerror();
    }

    template <typename Function>
    Function* function(const char* name) {
        void* symbol = dlsym(bundle_, name);
        EXPECT_NE(symbol, nullptr) << name;
        return reinterpret_cast<Function*>(symbol);
    }

    test::TemporaryFolder root_;
    void* bundle_ = nullptr;
};

TEST_F(BundleTest, DynamicSymbols_AreExactlyTheThirteenFunctions) {
    const std::set<std::string> list = splitLines(readFile(DOVREL_EXPORT_LIST));
    EXPECT_EQ(list.size(), 13u);
    // The version of the symbols is a symbol of its own.
    std::set<std::string> expected = {"DOVREL_1"};
    for (const std::string& name : list)
        expected.insert(name + "@@DOVREL_1");
    EXPECT_EQ(splitLines(readOutput("nm -D --defined-only --format=just-symbols '" + kExecutable + "'")),
              expected);
}

TEST_F(BundleTest, EveryFunctionOfTheList_IsFoundByItsPlainName) {
    load();
    for (const std::string& name : splitLines(readFile(DOVREL_EXPORT_LIST)))
        EXPECT_NE(dlsym(bundle_, name.c_str()), nullptr) << name;
}

TEST_F(BundleTest, SecondModule_ExportsOneSymbolOnly) {
    EXPECT_EQ(readOutput("nm -D --defined-only --format=just-symbols '" + kFoundation + "'"),
              "dovrelFoundationEntries\n");
}

// The Objective-C runtime knows a class by its name only. If a host has GNUstep's windows, its classes and
// those of the library are in one process.
TEST_F(BundleTest, ClassesOfTheSecondModule_HaveNamesThatGNUstepDoesNotUse) {
    const std::set<std::string> own =
        splitLines(readOutput("nm '" + kFoundation + "' | sed -nE 's/.*_OBJC_Class_([A-Za-z0-9]+)$/\\1/p'"));
    EXPECT_EQ(own.count("DovrelPortabilityAlert"), 1u);
    for (const std::string library : {GNUSTEP_BASE_LIBRARY, GNUSTEP_GUI_LIBRARY}) {
        const std::set<std::string> classes = splitLines(readOutput(
            "nm -D --defined-only " + library + " | sed -nE 's/.* __objc_class_name_([A-Za-z0-9]+)$/\\1/p'"));
        EXPECT_GT(classes.size(), 100u) << library;
        for (const std::string& name : own)
            EXPECT_EQ(classes.count(name), 0u) << name << " is also a class of " << library;
    }
}

TEST_F(BundleTest, NeededLibraries_OfTheFirstModule_AreNotFoundation) {
    const std::string needed = neededBy(kExecutable);
    EXPECT_NE(needed.find("libstdc++"), std::string::npos) << needed;
    for (const char* library : {"libgnustep", "libobjc", "libicu", "libgnutls"})
        EXPECT_EQ(needed.find(library), std::string::npos) << needed;
}

TEST_F(BundleTest, NeededLibraries_OfTheSecondModule_AreNoneOfTheWindowSystem) {
    const std::string needed = neededBy(kFoundation);
    EXPECT_NE(needed.find("libgnustep-base"), std::string::npos) << needed;
    for (const char* library : {"libgnustep-gui", "libX11", "libcairo", "libwraster"})
        EXPECT_EQ(needed.find(library), std::string::npos) << needed;
}

TEST_F(BundleTest, LoadedAndInitialized_BringsNoLibraryOfTheWindowSystemIntoTheProcess) {
    load();
    ASSERT_NE(dlopen(kFoundation.c_str(), RTLD_NOW | RTLD_LOCAL), nullptr) << dlerror();
    ASSERT_EQ(function<decltype(InitializePOS)>("InitializePOS")(), POS_OK);
    const std::string mapped = readFile("/proc/self/maps");
    EXPECT_NE(mapped.find("libgnustep-base"), std::string::npos);
    for (const char* library : {"libgnustep-gui", "libX11", "libcairo"})
        EXPECT_EQ(mapped.find(library), std::string::npos) << library;
    EXPECT_EQ(function<decltype(TerminatePOS)>("TerminatePOS")(), POS_OK);
}

TEST_F(BundleTest, InterfaceVersion_IsAnsweredThroughTheLoadedFunctions) {
    load();
    ASSERT_EQ(function<decltype(InitializePOS)>("InitializePOS")(), POS_OK);
    uint8_t* info = nullptr;
    int32_t length = 0;
    ASSERT_EQ(function<decltype(posGetInfo)>("posGetInfo")(0, "\x60\x01", 2, &info, &length), POS_OK);
    ASSERT_EQ(length, 4);
    EXPECT_EQ(info[0], 7);
    EXPECT_EQ(function<decltype(posDeleteDLLHeapData)>("posDeleteDLLHeapData")(info), POS_OK);
    EXPECT_EQ(function<decltype(TerminatePOS)>("TerminatePOS")(), POS_OK);
}

TEST_F(BundleTest, Unloading_LeavesItInTheProcess) {
    load();
    ASSERT_EQ(dlclose(bundle_), 0);
    void* const again = dlopen(kExecutable.c_str(), RTLD_NOW | RTLD_NOLOAD);
    EXPECT_NE(again, nullptr);
    if (again != nullptr) dlclose(again);
}

TEST_F(BundleTest, PropertyListAndTexts_AreInPlace) {
    const std::string info = readFile(kContents + "/Info.plist");
    EXPECT_NE(info.find("<string>com.Tessilor.POSAccess-DLL</string>"), std::string::npos);
    EXPECT_NE(info.find("<string>" DOVREL_VERSION "</string>"), std::string::npos);
    EXPECT_EQ(info.find('@'), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(kContents + "/Resources/MultiLanguageTexts.mls"));
}

}  // namespace
}  // namespace dovrel
